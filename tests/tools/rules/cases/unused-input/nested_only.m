function total = nested_only(values, scale)
% scale is read only by the nested function; values by a loop.
  total = 0;
  for v = values
    total = total + weigh(v);
  end

  function w = weigh(v)
    w = v * scale;
  end
end
