function r = dead_helpers(x)
% Helpers that nothing calls, or that only call themselves.
  r = twice(x);

  function unusedNested(y)  % expect: unused-local-function
    disp(y);
  end
end

function y = twice(x)
  y = 2 * x;
end

function y = old_twice(x)  % expect: unused-local-function
  y = x + x;
end

function n = countdown(n)  % expect: unused-local-function
  if n > 0
    n = countdown(n - 1);
  end
end

function label = describe(x)  % expect: unused-local-function
  label = 'describe';  % a text naming it is no call
  disp(x)
end

function callback_only(src, ~)  % expect: unused-local-function
  % Named in text only: a known limit.
  set(src, 'Callback', 'callback_only');
end
