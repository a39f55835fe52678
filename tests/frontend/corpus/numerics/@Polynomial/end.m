function e = end(p, k, n)
%END Last index into a polynomial, so that p(end) is its constant term.
%   Indexing a polynomial indexes its coefficients, highest power first;
%   END gives the number of coefficients along dimension K of N.
if n == 1
    e = numel(p.Coefficients);
else
    e = size(p.Coefficients, k);
end
