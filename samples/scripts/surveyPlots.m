% SURVEYPLOTS Areas and centroids of the surveyed plots, read from a CSV
% file (one vertex per line: plot id, x, y in metres), plots.csv unless
% fileName is set.

if nargin == 0
    fileName = 'plots.csv';
end
raw = readmatrix(fileName);
ids = unique(raw(:, 1));
areas = zeros(numel(ids), 1);
centres = zeros(numel(ids), 2);
for k = 1:numel(ids)
    vertices = raw(raw(:, 1) == ids(k), 2:3);
    areas(k) = geometry.polygonArea(vertices);
    [centres(k, 1), centres(k, 2)] = geometry.centroid(vertices);
end

fprintf('%d plots, %.1f m^2 in all\n', numel(ids), sum(areas));
[~, largest] = max(areas);
fprintf('The largest is plot %d: %.1f m^2 around (%.1f, %.1f)\n', ...
    ids(largest), areas(largest), centres(largest, 1), centres(largest, 2));

hull = geometry.convexHull(raw(:, 2:3));
fprintf('The survey covers %.1f m^2\n', geometry.polygonArea(hull));
