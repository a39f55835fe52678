function result = long_names(samples)
% Long names are reported where they are first written, not at every use.
  factor = computeTheCalibrationFactorOfTheSensorFromTheReferenceMeasurements(samples);
  measuredValuesScaledByTheCalibrationFactorOfTheSensorInTheFirstRun = samples * factor;  % expect: long-identifier
  result.values = measuredValuesScaledByTheCalibrationFactorOfTheSensorInTheFirstRun;
  result.calibrationFactorOfTheSensorAsMeasuredAgainstTheReferenceStandard = factor;  % expect: long-identifier
  copy = result.calibrationFactorOfTheSensorAsMeasuredAgainstTheReferenceStandard;
  [result.calibrationFactorOfTheSensorAsMeasuredAgainstTheReferenceStandard, count] = deal(copy, 2);  % expect: long-identifier
  result.runs(2).calibrationFactorOfTheSensorAsMeasuredAgainstTheReferenceStandard = count;  % expect: long-identifier
  xxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxx = 1;
  result.total = xxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxx;
end

function factor = computeTheCalibrationFactorOfTheSensorFromTheReferenceMeasurements(samples)  % expect: long-identifier
  factor = mean(samples);
end

function r = other(samples)
  % A variable of another function is another declaration.
  measuredValuesScaledByTheCalibrationFactorOfTheSensorInTheFirstRun = samples;  % expect: long-identifier
  r = measuredValuesScaledByTheCalibrationFactorOfTheSensorInTheFirstRun;
end
