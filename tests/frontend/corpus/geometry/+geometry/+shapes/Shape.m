classdef (Abstract) Shape < handle & geometry.Named
    %SHAPE Base of all shapes in a scene.
    %   A shape has a position, a colour and a name. Subclasses supply the
    %   area, the perimeter and the outline.

    properties
        Name (1,1) string = "shape"
        Color (1,1) geometry.Color = geometry.Color.Black
    end

    properties (SetObservable, AbortSet)
        Position (1,2) double {mustBeFinite} = [0 0]
    end

    properties (Access = protected)
        Id (1,1) uint32
    end

    properties (Constant, Hidden)
        Tolerance = 1e-12
    end

    properties (Dependent, SetAccess = private)
        Centroid
    end

    events
        Moved
        Resized
    end

    events (ListenAccess = protected, NotifyAccess = private)
        Destroyed
    end

    methods
        function obj = Shape(name, position)
            if nargin >= 1
                obj.Name = name;
            end
            if nargin >= 2
                obj.Position = position;
            end
            obj.Id = geometry.shapes.Shape.nextId();
        end

        function set.Position(obj, value)
            old = obj.Position;
            obj.Position = value;
            if any(abs(old - value) > obj.Tolerance) %#ok<MCSUP>
                notify(obj, 'Moved');
            end
        end

        function c = get.Centroid(obj)
            c = obj.centroidOffset() + obj.Position;
        end

        function move(obj, delta)
            arguments
                obj
                delta (1,2) double
            end
            obj.Position = obj.Position + delta;
        end

        function delete(obj)
            notify(obj, 'Destroyed');
        end

        function s = displayName(obj)
            s = char(obj.Name);
        end

        function tf = isLargerThan(obj, other)
            tf = obj.area() > other.area();
        end
    end

    methods (Abstract)
        a = area(obj)
        p = perimeter(obj)
        xy = outline(obj, n)
    end

    methods (Access = protected)
        function c = centroidOffset(~)
            c = [0 0];
        end
    end

    methods (Static, Access = private)
        function id = nextId()
            persistent counter
            if isempty(counter)
                counter = uint32(0);
            end
            counter = counter + 1;
            id = counter;
        end
    end
end
