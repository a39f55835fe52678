function validatePolygon(vertices)
%VALIDATEPOLYGON Stop with a clear error unless VERTICES is an N-by-2
%   matrix of finite numbers with at least three rows.

if ~isnumeric(vertices) | size(vertices, 2) ~= 2
    error('geometry:polygon:shape', 'Vertices must be an N-by-2 numeric matrix.');
end
if size(vertices, 1) < 3
    error('geometry:polygon:tooFew', 'A polygon needs at least three vertices, not %d.', size(vertices, 1));
end
if any(~isfinite(vertices(:)))
    error('geometry:polygon:finite', 'Vertices must be finite.');
end
end
