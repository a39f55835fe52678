classdef Polygon < geometry.shapes.Shape
    %POLYGON Simple polygon given by its vertices in order.

    properties (SetAccess = protected)
        Vertices (:,2) double = zeros(0, 2)
    end

    methods
        function obj = Polygon(vertices, props)
            arguments
                vertices (:,2) double = zeros(0, 2)
                props.?geometry.shapes.Shape
            end
            obj@geometry.shapes.Shape();
            obj.Vertices = vertices;
            names = fieldnames(props);
            for k = 1:numel(names)
                obj.(names{k}) = props.(names{k});
            end
        end

        function a = area(obj)
            v = obj.Vertices;
            x = v(:, 1); y = v(:, 2);
            a = abs(sum(x.*circshift(y, -1) - circshift(x, -1).*y)) / 2;
        end

        function p = perimeter(obj)
            d = diff([obj.Vertices; obj.Vertices(1, :)]);
            p = sum(sqrt(sum(d.^2, 2)));
        end

        function xy = outline(obj, ~)
            xy = obj.Position + [obj.Vertices; obj.Vertices(1, :)];
        end

        function tf = isConvex(obj)
            v = obj.Vertices;
            n = size(v, 1);
            crossZ = zeros(n, 1);
            for k = 1:n
                a = v(k, :);
                b = v(mod(k, n) + 1, :);
                c = v(mod(k + 1, n) + 1, :);
                crossZ(k) = (b(1) - a(1))*(c(2) - b(2)) - (b(2) - a(2))*(c(1) - b(1));
            end
            tf = all(crossZ >= 0) || all(crossZ <= 0);
        end
    end
end
