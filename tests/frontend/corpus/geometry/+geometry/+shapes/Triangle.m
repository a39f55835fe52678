classdef Triangle < geometry.shapes.Polygon
    %TRIANGLE Polygon with three vertices.

    methods
        function obj = Triangle(a, b, c)
            obj@geometry.shapes.Polygon([a; b; c], Name="triangle");
        end

        function angles = interiorAngles(obj)
            v = obj.Vertices;
            angles = zeros(1, 3);
            for k = 1:3
                p = v(k, :);
                q = v(mod(k, 3) + 1, :);
                r = v(mod(k + 1, 3) + 1, :);
                u = q - p; w = r - p;
                angles(k) = acos(dot(u, w) / (norm(u)*norm(w)));
            end
        end

        function tf = isRight(obj)
            tf = any(abs(obj.interiorAngles() - pi/2) < 1e-9);
        end
    end
end
