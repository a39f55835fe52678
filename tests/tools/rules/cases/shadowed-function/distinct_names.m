function result = distinct_names(values)
% Names of its own for every variable; functions and fields named like
% functions are fine.
  total = sum(values);
  biggest = max(values);
  s.sum = total;
  s.max = biggest;
  s.line = helper(values);
  result = s;
  for k = 1:numel(values)
    disp(values(k));
  end
  z = 3 + 2i;
  disp(z * i)
end

function r = helper(v)
  r = length(v);
end
