function [cx, cy] = centroid(vertices)
%CENTROID Centre of mass of a simple polygon of uniform density.
%   [CX, CY] = geometry.centroid(V) for the N-by-2 vertex matrix V.

geometry.internal.validatePolygon(vertices);
x = vertices(:, 1);
y = vertices(:, 2);
next = [2:numel(x), 1];
cross = geometry.internal.crossProduct2d([x, y], [x(next), y(next)]);
signedArea = sum(cross) / 2;
if abs(signedArea) < eps
    error('geometry:centroid:degenerate', 'The polygon has no area.');
end
cx = sum((x + x(next)) .* cross) / (6 * signedArea);
cy = sum((y + y(next)) .* cross) / (6 * signedArea);
end
