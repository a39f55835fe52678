function pp = cubicSpline(x, y)
%CUBICSPLINE Natural cubic spline through the points (x, y).
%   Returns a struct with fields breaks and coefs, one row of coefficients
%   per interval, highest power first.
x = x(:); y = y(:);
n = numel(x);
h = diff(x);
% tridiagonal system for the second derivatives
A = diag([1; 2*(h(1:end-1) + h(2:end)); 1]) + ...
    diag([0; h(2:end)], 1) + ...
    diag([h(1:end-1); 0], -1);
rhs = [0; 6*(diff(y(2:end))./h(2:end) - diff(y(1:end-1))./h(1:end-1)); 0];
M = A \ rhs;
coefs = [ (M(2:n) - M(1:n-1)) ./ (6*h), ...
          M(1:n-1)/2, ...
          diff(y)./h - h.*(2*M(1:n-1) + M(2:n))/6, ...
          y(1:n-1) ];
pp = struct('breaks', x.', 'coefs', coefs);
end
