function out = self_named(x)
% A variable named like the main function and like a nested function.
  self_named = x;  % expect: shadowed-function
  out = inner() + self_named;

  function v = inner()
    v = 1;
  end
  function r = g()
    inner = 2;  % expect: shadowed-function
    r = inner;
  end
end
