function n = checkSquare(A, name)
%CHECKSQUARE Errors unless A is a square numeric matrix; returns its order.
if nargin < 2
    name = 'A';
end
if ~isnumeric(A) || ndims(A) ~= 2 || size(A, 1) ~= size(A, 2)
    error('numerics:notSquare', ...
          'Input %s must be a square matrix, got %dx%d.', ...
          name, size(A, 1), size(A, 2));
end
n = size(A, 1);
