function r = shadowing_variable(v)
% A variable named eval is indexed, not called.
  eval = v * 2;
  r = eval(1);
end
