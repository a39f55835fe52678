classdef (Sealed) Square < geometry.shapes.Rectangle
    %SQUARE A rectangle whose sides stay equal.

    methods
        function obj = Square(side, varargin)
            if nargin == 0
                side = 1;
            end
            obj@geometry.shapes.Rectangle(side, side, varargin{:});
            addlistener(obj, 'Resized', @(src, ~) src.checkSides());
        end

        function resize(obj, side)
            obj.Width = side;
            obj.Height = side;
        end
    end

    methods (Access = private)
        function checkSides(obj)
            assert(abs(obj.Width - obj.Height) < obj.Tolerance, ...
                'geometry:Square:sides', ...
                'Sides of a square differ: %g and %g.', obj.Width, obj.Height);
        end
    end
end
