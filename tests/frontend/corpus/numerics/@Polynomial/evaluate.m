function y = evaluate(p, x)
%EVALUATE Value of the polynomial at the points X, by Horner's scheme.
%   Works element-wise on arrays of any shape.
c = p.Coefficients;
y = c(1) * ones(size(x));
for k = 2:numel(c)
    y = y .* x + c(k);
end
