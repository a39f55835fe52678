% test-options: max-inputs = 2
function r = lower_limit(a, b, c)  % expect: too-many-inputs
r = a + b + c + pair(a, b) + rest(a, b, c) + none();
end

function r = pair(a, b)
r = a * b;
end

function r = rest(a, b, varargin)
r = a + b + numel(varargin);
end

function r = none
r = 0;
end
