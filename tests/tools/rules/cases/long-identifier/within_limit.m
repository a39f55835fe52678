function result = within_limit(samples)
% Names of up to 63 characters, and long text that is no name.
  xxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxx = samples;
  result.xxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxx = xxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxx;
  label = 'measuredValuesScaledByTheCalibrationFactorOfTheSensorInTheFirstRun';
  disp(label)
  % measuredValuesScaledByTheCalibrationFactorOfTheSensorInTheFirstRun
end
