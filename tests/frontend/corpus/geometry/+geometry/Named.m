classdef (Abstract, HandleCompatible) Named
    %NAMED Mixin for anything that carries a display name.
    methods (Abstract)
        s = displayName(obj)
    end

    methods
        function s = describe(obj)
            s = sprintf('<%s "%s">', class(obj), obj.displayName());
        end
    end
end
