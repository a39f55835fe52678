classdef (Sealed, Abstract) ShapeFactory
    %SHAPEFACTORY Creates shapes from descriptions.

    methods (Static)
        function s = fromStruct(desc)
            switch lower(desc.type)
                case 'circle'
                    s = geometry.shapes.Circle(desc.radius);
                case {'rectangle', 'rect'}
                    s = geometry.shapes.Rectangle(desc.width, desc.height);
                case 'square'
                    s = geometry.shapes.Square(desc.side);
                case 'polygon'
                    s = geometry.shapes.Polygon(desc.vertices);
                otherwise
                    error('geometry:ShapeFactory:unknownType', ...
                        'Unknown shape type ''%s''.', desc.type);
            end
            if isfield(desc, 'name')
                s.Name = desc.name;
            end
        end

        function shapes = fromFile(fileName)
            text = fileread(fileName);
            descs = jsondecode(text);
            shapes = geometry.shapes.Circle.empty;
            for k = 1:numel(descs)
                shapes(k) = geometry.ShapeFactory.fromStruct(descs(k));
            end
        end

        function s = random(n)
            kinds = {@geometry.shapes.Circle, @geometry.shapes.Square};
            s = cell(1, n);
            for k = 1:n
                make = kinds{randi(numel(kinds))};
                s{k} = make(rand() + 0.1);
            end
        end

        function tf = isShapeClass(name)
            mc = meta.class.fromName(name);
            tf = ~isempty(mc) && (mc <= ?geometry.shapes.Shape);
        end
    end
end
