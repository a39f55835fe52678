classdef Plotter
    methods
        function obj = Plotter(a, b, c, d, e, f, g, h)  % expect: too-many-inputs
            obj = obj.configure(a, b, c, d, e, f, g);
        end
        function obj = configure(obj, a, b, c, d, e, f, g)  % expect: too-many-inputs
        end
        function obj = tune(obj, a, b, c, d, e, f)
        end
    end
    methods (Abstract)
        r = render(obj, x, y, z, color, style, width, alpha)  % expect: too-many-inputs
        r = clear(obj)
    end
end
