classdef Scene < handle
    %SCENE A collection of shapes that can be drawn and queried.

    properties (SetAccess = private)
        Shapes geometry.shapes.Shape = geometry.shapes.Circle.empty
        Listeners = {}
    end

    properties
        Title (1,:) char = 'Untitled'
        ShowGrid (1,1) logical = true
    end

    properties (Constant)
        Defaults = struct('LineWidth', 1.5, ...
                          'Markers', {{'o', 's', '^'}}, ...
                          'Background', [1 1 1])
        Palette = {
            'Primary',   [0 0.45 0.74]
            'Secondary', [0.85 0.33 0.1]
        }
    end

    events
        ShapeAdded
        ShapeRemoved
    end

    methods
        function add(obj, shape)
            obj.Shapes(end+1) = shape;
            obj.Listeners{end+1} = addlistener(shape, 'Moved', ...
                @(src, evt) obj.onShapeMoved(src, evt));
            notify(obj, 'ShapeAdded');
        end

        function remove(obj, name)
            keep = [obj.Shapes.Name] ~= name;
            delete([obj.Listeners{~keep}]);
            obj.Shapes = obj.Shapes(keep);
            obj.Listeners = obj.Listeners(keep);
            notify(obj, 'ShapeRemoved');
        end

        function total = totalArea(obj)
            total = 0;
            for s = obj.Shapes
                total = total + s.area();
            end
        end

        function s = largest(obj)
            areas = arrayfun(@(x) x.area(), obj.Shapes);
            [~, k] = max(areas);
            s = obj.Shapes(k);
        end

        function ax = draw(obj, ax)
            if nargin < 2 || isempty(ax)
                ax = gca;
            end
            hold(ax, 'on');
            for k = 1:numel(obj.Shapes)
                s = obj.Shapes(k);
                xy = s.outline();
                plot(ax, xy(:, 1), xy(:, 2), ...
                    'Color', s.Color.triple(), ...
                    'LineWidth', 1.5, ...
                    'DisplayName', char(s.Name));
            end
            hold(ax, 'off');
            axis(ax, 'equal');
            if obj.ShowGrid, grid(ax, 'on'); end
            title(ax, obj.Title);
        end
    end

    methods (Access = {?geometry.ShapeFactory, ?geometry.Scene})
        function replaceAll(obj, shapes)
            obj.Shapes = shapes;
            obj.Listeners = cell(size(shapes));
        end
    end

    methods (Hidden)
        function disp(obj)
            disp@handle(obj);
            fprintf('  %d shapes, total area %g\n', numel(obj.Shapes), obj.totalArea());
            fprintf('  largest: %s\n', describeShape(obj.largest()));
        end
    end

    methods (Access = private)
        function onShapeMoved(obj, src, ~)
            fprintf('%s: shape "%s" moved to (%g, %g)\n', obj.Title, src.Name, src.Position);
        end
    end
end

function s = describeShape(shape)
% Local helper of the class file.
if isempty(shape)
    s = '(none)';
else
    s = sprintf('%s with area %.3g', shape.Name, shape.area());
end
end
