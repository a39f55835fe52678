function measure(device, opts)
  arguments
    device
    opts.optionThatControlsHowManyTimesTheMeasurementIsRepeatedBeforeGivingUp (1,1) double = 3  % expect: long-identifier
  end
  for k = 1:opts.optionThatControlsHowManyTimesTheMeasurementIsRepeatedBeforeGivingUp
    read(device, k);
  end
end
