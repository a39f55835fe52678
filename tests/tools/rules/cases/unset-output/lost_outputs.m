function [total, count] = lost_outputs(values)  % expect: unset-output
% count was renamed in the body but not in the signature.
  total = sum(values);
  n = numel(values);
  disp(n)
end

function [a, b, varargout] = partly(x)  % expect: unset-output
  a = x;
  if a > 0
    disp(b);
  end
end

function result = only_read(x)  % expect: unset-output
  disp(result);
  x = 2;
end
