function r = ignored_inputs(a, b, ~, varargin)  % expect: unused-input
% b is only overwritten, varargin never read.
  b = 2;
  r = a + b;
end

function r = uses_all(x, opts, list, s, varargin)
% Reads of every sort: in a nested function, an anonymous function, a partial
% assignment, a field assignment, and varargin through an index.
  r = apply();
  list(2) = 0;
  s.count = numel(list);
  f = @(k) k + opts.offset;
  r = r + f(1) + s.count + numel(varargin{1});

  function y = apply()
    y = x * 2;
  end
end

function on_event(src, event)  % expect: unused-input, unused-input
  disp('event');
end

function r = validated(x, y)  % expect: unused-input
  arguments
    x double
    y double
  end
  r = x;
end

function keep(~, ~)
  disp('callback that ignores both');
end

function placeholder(a, b)
end
