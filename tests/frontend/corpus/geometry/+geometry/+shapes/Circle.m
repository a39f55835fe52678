classdef Circle < geometry.shapes.Shape
    %CIRCLE A circle given by its radius and centre.

    properties
        Radius (1,1) double {mustBePositive} = 1
    end

    methods
        function obj = Circle(radius, varargin)
            obj@geometry.shapes.Shape(varargin{:});
            if nargin > 0
                obj.Radius = radius;
            end
        end

        function set.Radius(obj, r)
            obj.Radius = r;
            notify(obj, 'Resized');
        end

        function a = area(obj)
            a = pi * obj.Radius.^2;
        end

        function p = perimeter(obj)
            p = 2*pi*obj.Radius;
        end

        function xy = outline(obj, n)
            if nargin < 2, n = 64; end
            theta = linspace(0, 2*pi, n + 1).';
            xy = obj.Position + obj.Radius*[cos(theta) sin(theta)];
        end
    end
end
