function r = mtimes(a, b)
%MTIMES Product of polynomials by convolution of their coefficients.
a = Polynomial(a);
b = Polynomial(b);
ca = a.Coefficients;
cb = b.Coefficients;
m = numel(ca);
n = numel(cb);
c = zeros(1, m + n - 1);
for i = 1:m
    for j = 1:n
        c(i+j-1) = c(i+j-1) + ca(i)*cb(j);
    end
end
r = Polynomial(c);
