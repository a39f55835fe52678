% A script whose local functions count their own arguments.
total = addAll(1, 2, 3);
count = nargin('addAll');
g = @(a, b) a + b;
n = nargin(g);

function s = addAll(varargin)
s = 0;
for k = 1:nargin
    s = s + varargin{k};
end
if nargout == 0
    disp(s);
end
end
