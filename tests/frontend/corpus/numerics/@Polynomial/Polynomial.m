classdef Polynomial
    %POLYNOMIAL Dense polynomial with real coefficients.
    %   P = Polynomial([1 -3 2]) represents x^2 - 3x + 2. Coefficients are
    %   stored highest power first, the way the toolbox functions expect.
    %
    %   The arithmetic methods live in separate files of this folder.

    properties (SetAccess = private)
        Coefficients (1,:) double = 0
    end

    properties (Dependent)
        Degree
    end

    methods
        function p = Polynomial(coefficients)
            if nargin == 0
                return
            end
            if isa(coefficients, 'Polynomial')
                p = coefficients;
                return
            end
            c = coefficients(:).';
            first = find(c ~= 0, 1);
            if isempty(first)
                c = 0;
            else
                c = c(first:end);
            end
            p.Coefficients = c;
        end

        function d = get.Degree(p)
            d = numel(p.Coefficients) - 1;
        end

        % Implemented in their own files.
        r = plus(a, b)
        r = mtimes(a, b)
        y = evaluate(p, x)
        disp(p)
    end

    methods (Static)
        function p = fromRoots(r)
            c = 1;
            for k = 1:numel(r)
                c = conv(c, [1, -r(k)]);
            end
            p = Polynomial(real(c));
        end
    end
end
