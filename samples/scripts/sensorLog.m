% SENSORLOG Calibrate a temperature sensor against a reference
% thermometer, then log readings and show a moving average.

sensor = TemperatureSensor('boiler inlet');
reference = [20.0, 40.0, 60.0, 80.0];
measured = [19.1, 38.8, 58.9, 78.2];
sensor.calibrate(reference, measured);

for raw = 18 + 60 * rand(1, 200)
    sensor.record(raw);
end
smooth = sensor.movingAverage(10);
plot(smooth);
title(sprintf('%s (%s)', sensor.Name, sensor.Units));

samples = sensor.Readings;
if any(samples > 70) & mean(samples) > 40
    warning('sensorLog:hot', 'The inlet ran hot.');
end
