classdef TemperatureSensor < Sensor
    %TEMPERATURESENSOR A sensor whose raw readings are corrected by a
    %   linear calibration: temperature = Gain * raw + Offset.

    properties
        Offset (1,1) double = 0
        Gain (1,1) double {mustBePositive} = 1
    end

    methods
        function obj = TemperatureSensor(name, offset, gain)
            obj@Sensor(name, 'degC');
            if nargin >= 2
                obj.Offset = offset;
            end
            if nargin >= 3
                obj.Gain = gain;
            end
        end

        function record(obj, raw)
            record@Sensor(obj, obj.Gain * raw + obj.Offset);
        end

        function calibrate(obj, reference, measured)
            % Least-squares fit of the reference temperatures to the raw values.
            coefficients = polyfit(measured, reference, 1);
            obj.Gain = coefficients(1);
            obj.Offset = coefficients(2);
        end

        function rename(obj, newName)
            % Meant to start the sensor afresh under a new name.
            obj@Sensor(newName, obj.Units);
        end
    end
end
