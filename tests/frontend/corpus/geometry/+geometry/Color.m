classdef Color
    %COLOR Named colours with their RGB triples.

    properties (SetAccess = immutable)
        R
        G
        B
    end

    enumeration
        Black   (0, 0, 0)
        White   (1, 1, 1)
        Red     (1, 0, 0)
        Green   (0, 0.5, 0)
        Blue    (0, 0, 1)
        Orange  (1, 0.55, 0)
    end

    methods
        function c = Color(r, g, b)
            c.R = r;
            c.G = g;
            c.B = b;
        end

        function rgb = triple(c)
            rgb = [c.R c.G c.B];
        end

        function h = hex(c)
            h = sprintf('#%02X%02X%02X', round(255*c.triple()));
        end
    end
end
