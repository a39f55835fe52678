classdef Shape < geometry.Base
    properties
        Sides
    end
    methods
        function obj = Shape(sides, varargin)
            obj = obj@geometry.Base(varargin{:});
            obj.Sides = sides;
        end
        function area = area(obj)
            area = area@geometry.Base(obj) * obj.Sides;
        end
        function delete(obj)
            delete@geometry.Base(obj);
        end
    end
end
