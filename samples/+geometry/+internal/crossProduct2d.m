function z = crossProduct2d(a, b)
%CROSSPRODUCT2D The z component of the cross product of the rows of A and B.
%   Both are N-by-2; Z is N-by-1.
z = a(:, 1) .* b(:, 2) - a(:, 2) .* b(:, 1);
end
