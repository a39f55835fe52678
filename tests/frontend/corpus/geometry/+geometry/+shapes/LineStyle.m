classdef LineStyle
    %LINESTYLE How outlines are drawn.
    enumeration
        Solid, Dashed, Dotted, DashDot
    end

    methods
        function marker = toLineMarker(style)
            switch style
                case geometry.shapes.LineStyle.Solid
                    marker = '-';
                case geometry.shapes.LineStyle.Dashed
                    marker = '--';
                case geometry.shapes.LineStyle.Dotted
                    marker = ':';
                otherwise
                    marker = '-.';
            end
        end
    end
end
