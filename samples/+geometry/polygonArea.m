function area = polygonArea(vertices)
%POLYGONAREA Area of a simple polygon by the shoelace formula.
%   AREA = geometry.polygonArea(V) takes the vertices as the rows of an
%   N-by-2 matrix, in either winding order, and returns a non-negative area.

geometry.internal.validatePolygon(vertices);
x = vertices(:, 1);
y = vertices(:, 2);
next = [2:numel(x), 1];
area = abs(sum(x .* y(next) - x(next) .* y)) / 2;
end
