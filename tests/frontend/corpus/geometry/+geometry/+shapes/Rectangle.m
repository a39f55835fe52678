classdef Rectangle < geometry.shapes.Shape
    % RECTANGLE Axis-aligned rectangle, positioned by its lower left corner.

    properties
        Width (1,1) double {mustBeNonnegative} = 1
        Height (1,1) double {mustBeNonnegative} = 1
    end

    properties (Dependent)
        AspectRatio
    end

    methods
        function obj = Rectangle(width, height, name, position)
            arguments
                width (1,1) double = 1
                height (1,1) double = width
                name (1,1) string = "rectangle"
                position (1,2) double = [0 0]
            end
            obj@geometry.shapes.Shape(name, position);
            obj.Width = width;
            obj.Height = height;
        end

        function r = get.AspectRatio(obj)
            r = obj.Width / obj.Height;
        end

        function set.AspectRatio(obj, r)
            obj.Width = r * obj.Height;
        end

        function a = area(obj)
            a = obj.Width * obj.Height;
        end

        function p = perimeter(obj)
            p = 2*(obj.Width + obj.Height);
        end

        function xy = outline(obj, ~)
            w = obj.Width; h = obj.Height;
            xy = obj.Position + [0 0; w 0; w h; 0 h; 0 0];
        end
    end

    methods (Access = protected)
        function c = centroidOffset(obj)
            c = [obj.Width, obj.Height] / 2;
        end
    end
end
