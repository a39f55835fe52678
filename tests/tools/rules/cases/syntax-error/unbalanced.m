function y = scale(x)
  y = (x * 2;  % expect: syntax-error
end
