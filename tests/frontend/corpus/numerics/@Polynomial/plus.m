function r = plus(a, b)
%PLUS Sum of two polynomials, or of a polynomial and a scalar.
a = Polynomial(a);
b = Polynomial(b);
ca = a.Coefficients;
cb = b.Coefficients;
n = max(numel(ca), numel(cb));
ca = [zeros(1, n - numel(ca)) ca];
cb = [zeros(1, n - numel(cb)) cb];
r = Polynomial(ca + cb);
