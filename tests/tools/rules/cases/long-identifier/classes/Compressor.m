classdef Compressor < handle
  properties
    pressureMeasuredAtTheInletOfTheSecondStageOfTheCompressorInPascal  % expect: long-identifier
    temperatureMeasuredAtTheOutletOfTheSecondStageOfTheCompressorN = 0
  end
  events
    valueOfThePressureMeasuredAtTheInletHasChangedByMoreThanTheLimit  % expect: long-identifier
  end
  methods
    function set.temperatureMeasuredAtTheOutletOfTheSecondStageOfTheCompressorN(obj, value)
      obj.temperatureMeasuredAtTheOutletOfTheSecondStageOfTheCompressorN = value;
    end
    function update(obj, value)
      obj.pressureMeasuredAtTheInletOfTheSecondStageOfTheCompressorInPascal = value;  % expect: long-identifier
      obj.resetThePressureMeasurementsOfAllStagesToTheirFactoryDefaultValues();
      notify(obj, 'valueOfThePressureMeasuredAtTheInletHasChangedByMoreThanTheLimit');
    end
    function resetThePressureMeasurementsOfAllStagesToTheirFactoryDefaultValues(obj)  % expect: long-identifier
      obj.pressureMeasuredAtTheInletOfTheSecondStageOfTheCompressorInPascal = 0;  % expect: long-identifier
    end
    text = describeTheStateOfEveryStageOfTheCompressorInAFormatForTheOperator(obj)  % expect: long-identifier
  end
end
