function hull = convexHull(points)
%CONVEXHULL Convex hull of points in the plane (Andrew's monotone chain).
%   HULL = geometry.convexHull(P) returns the rows of P on the hull, in
%   counter-clockwise order, starting from the lowest-leftmost point.

if size(points, 1) < 3
    hull = points;
    return
end
points = sortrows(unique(points, 'rows'));
lower = buildChain(points);
upper = buildChain(flipud(points));
hull = [lower(1:end-1, :); upper(1:end-1, :)];
end

function chain = buildChain(points)
chain = zeros(0, 2);
for k = 1:size(points, 1)
    while size(chain, 1) >= 2 && turn(chain(end-1, :), chain(end, :), points(k, :)) <= 0
        chain(end, :) = [];
    end
    chain(end+1, :) = points(k, :); %#ok<AGROW>
end
end

function t = turn(o, a, b)
t = (a(1) - o(1)) * (b(2) - o(2)) - (a(2) - o(2)) * (b(1) - o(1));
end

function d = squaredDistance(p, q)
% Left over from an earlier version that dropped collinear points by distance.
d = sum((p - q) .^ 2);
end
