function total = hides_functions(values, line)  % expect: shadowed-function
% Variables named like functions of the language and of this file.
  sum = 0;  % expect: shadowed-function
  for i = 1:numel(values)  % expect: shadowed-function
    sum = sum + values(i);
  end
  total = sum + numel(line);
  [max, idx] = deal(values(1), 1);  % expect: shadowed-function
  helper = idx + max;  % expect: shadowed-function
  total = total + helper;
  disp(total)
end

function r = helper(x)
  r = x;
end

function r = other(x)
  % Here helper is the function again: no variable of that name.
  r = helper(x);
  try
    r = r + 1;
  catch error  % expect: shadowed-function
    disp(error.message);
  end
end
