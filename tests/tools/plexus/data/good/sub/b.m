function r = b(v)
  r = v.^2;
end
