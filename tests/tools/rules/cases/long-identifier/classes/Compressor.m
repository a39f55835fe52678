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
      notify(obj, 'valueOfThePressureMeasuredAtTheInletHasChangedByMoreThanTheLimit');
    end
  end
end
