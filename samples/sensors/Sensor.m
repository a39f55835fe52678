classdef Sensor < handle
    %SENSOR A named source of readings in some physical unit.

    properties (SetAccess = protected)
        Name
        Units
        Readings = zeros(1, 0)
    end

    events
        NewReading
    end

    methods
        function obj = Sensor(name, units)
            obj.Name = name;
            obj.Units = units;
        end

        function record(obj, value)
            obj.Readings(end + 1) = value;
            notify(obj, 'NewReading');
        end

        function value = latest(obj)
            if isempty(obj.Readings)
                value = NaN;
            else
                value = obj.Readings(end);
            end
        end

        function m = movingAverage(obj, window)
            m = filter(ones(1, window) / window, 1, obj.Readings);
        end
    end
end
