function [x, detA] = gaussElimination(A, b)
%GAUSSELIMINATION Solve A*x = b with partial pivoting.
%   [X, DETA] = GAUSSELIMINATION(A, B) also returns the determinant of A.
%
%   Example:
%       A = [4 -2 1; -2 4 -2; 1 -2 4];
%       x = gaussElimination(A, [11; -16; 17])

n = checkSquare(A);
if size(b, 1) ~= n
    error('gaussElimination:size', 'b must have %d rows.', n);
end
Ab = [A b];
detA = 1;
for k = 1:n-1
    [~, p] = max(abs(Ab(k:n, k)));
    p = p + k - 1;
    if p ~= k
        Ab([k p], :) = Ab([p k], :);
        detA = -detA;
    end
    if Ab(k, k) == 0
        error('gaussElimination:singular', 'Matrix is singular.');
    end
    for i = k+1:n
        factor = Ab(i, k) / Ab(k, k);
        Ab(i, k:end) = Ab(i, k:end) - factor*Ab(k, k:end);
    end
end
detA = detA * prod(diag(Ab(:, 1:n)));
x = backSubstitute(Ab(:, 1:n), Ab(:, n+1:end));

function x = backSubstitute(U, y)
% Solves the upper triangular system U*x = y, column by column.
n = size(U, 1);
x = zeros(n, size(y, 2));
for i = n:-1:1
    x(i, :) = (y(i, :) - U(i, i+1:n)*x(i+1:n, :)) ./ U(i, i);
end
