function count = tick(count)
  % State passed in and out; a persistent cache and a field named global.
  persistent calls
  if isempty(calls)
    calls = 0;
  end
  calls = calls + 1;
  options.global = true;  % a field, not a declaration
  count = count + 1;
  disp('global counter')
end
