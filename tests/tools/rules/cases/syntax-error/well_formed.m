function y = scale(x)
  y = (x * 2);
end
