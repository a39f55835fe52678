function [x, info] = conjugateGradient(A, b, tol, maxIter, x0)
%CONJUGATEGRADIENT Iterative solver for symmetric positive definite systems.
%   A may be a matrix or a function handle that returns A*x.

if nargin < 3 || isempty(tol),     tol = 1e-8;          end
if nargin < 4 || isempty(maxIter), maxIter = 10*numel(b); end
if nargin < 5 || isempty(x0),      x0 = zeros(size(b)); end

if isnumeric(A)
    applyA = @(v) A*v;
else
    applyA = A;
end

x = x0;
r = b - applyA(x);
p = r;
rsOld = r'*r;
normB = norm(b);
info = struct('iterations', 0, 'residuals', zeros(maxIter, 1), ...
              'converged', false);

for it = 1:maxIter
    Ap = applyA(p);
    alpha = rsOld / (p'*Ap);
    x = x + alpha*p;
    r = r - alpha*Ap;
    rsNew = r'*r;
    info.residuals(it) = sqrt(rsNew) / normB;
    if info.residuals(it) < tol
        info.converged = true;
        break;
    end
    p = r + (rsNew/rsOld)*p;
    rsOld = rsNew;
end

info.iterations = it;
info.residuals = info.residuals(1:it);
end
