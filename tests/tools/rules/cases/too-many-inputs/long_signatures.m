function h = long_signatures(ax, x, y, width, height, color, style, lineWidth)  % expect: too-many-inputs
h = drawBox(ax, x, y, width, height, color, style, lineWidth);
h = withIgnored(1, 2, 3, 4, 5, 6, 7, 8);
end

function h = drawBox(ax, x, y, width, height, color, style, lineWidth, varargin)  % expect: too-many-inputs
h = rectangle(ax, 'Position', [x y width height], 'EdgeColor', color, 'LineStyle', style, 'LineWidth', lineWidth, varargin{:});
end

function r = withIgnored(a, ~, c, ~, e, f, g, ~)  % expect: too-many-inputs
r = a + c + e + f + g;
    function inner(p1, p2, p3, p4, p5, p6, p7, p8, p9)  % expect: too-many-inputs
        disp(p1 + p2 + p3 + p4 + p5 + p6 + p7 + p8 + p9);
    end
end
