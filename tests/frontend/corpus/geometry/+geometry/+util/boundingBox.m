function box = boundingBox(shapes)
% BOUNDINGBOX  Smallest axis-aligned box holding all given shapes.
%   Returns [xmin ymin xmax ymax].
import geometry.shapes.*
box = [Inf Inf -Inf -Inf];
for k = 1:numel(shapes)
    xy = shapes(k).outline();
    box = [min(box(1:2), min(xy, [], 1)), max(box(3:4), max(xy, [], 1))];
end
if any(isinf(box))
    box = zeros(1, 4);
end
end
