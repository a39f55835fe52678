classdef Stats
    methods
        function [m, s, n, lo, hi, med] = describe(obj)  % expect: too-many-outputs
            [m, s, n, lo, hi, med] = deal(0);
        end
        function [m, s] = moments(obj)
            [m, s] = deal(0);
        end
    end
    methods (Static)
        [a, b, c, d, e, f] = declaredOnly(x)  % expect: too-many-outputs
    end
end
