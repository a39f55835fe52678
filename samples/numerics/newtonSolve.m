function [root, iterations] = newtonSolve(f, x0, tolerance)
%NEWTONSOLVE A root of F near X0 by Newton's method, with the derivative
%   estimated by central differences.
%
%   r = newtonSolve(@(x) x.^3 - 2*x - 5, 2)

if nargin < 3
    tolerance = 1e-10;
end
maxIterations = 50;
root = x0;
for iterations = 1:maxIterations
    step = f(root) / slope(root);
    root = root - step;
    if abs(step) < tolerance * max(1, abs(root))
        return
    end
end
warning('newtonSolve:noConvergence', 'No convergence after %d iterations.', maxIterations);

    function d = slope(x)
        % The step scales with x, so that it stays above rounding noise.
        h = sqrt(eps) * max(1, abs(x));
        d = (f(x + h) - f(x - h)) / (2 * h);
    end
end
