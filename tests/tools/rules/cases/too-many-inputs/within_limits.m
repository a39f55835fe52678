function r = within_limits(a, b, c, d, e, f, g)
r = a + b + c + d + e + f + g + options(1, 2, 3, 4, 5, 6, 7, 'Mode', 'fast');
f = @(p1, p2, p3, p4, p5, p6, p7, p8, p9) p1 + p9;
r = r + f(1, 2, 3, 4, 5, 6, 7, 8, 9);
end

function r = options(a, b, c, d, e, f, g, varargin)
r = a + b + c + d + e + f + g + numel(varargin);
end
