function [total, count, s, m, e, g] = set_outputs(values)
% Every output is set somehow: whole, in part, in a multiple assignment, in
% a loop, in a catch or by a nested function.
  total = sum(values);
  [~, count] = size(values);
  s.first = values(1);
  fill();
  for m = values
  end
  try
    error('x');
  catch e
  end

  function fill()
    g = 1;
  end
end

function x = in_and_out(x)
  disp(x);
end

function varargout = variable_count(varargin)
  disp(nargin);
end

function y = stub(x)
end

function [y, z] = on_some_paths(x)
  if x > 0
    y = 1;
  else
    z = 2;
  end
end
