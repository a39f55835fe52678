function show(name, verbose)  % expect: unused-input
% In command syntax the words are text: `disp verbose` does not read the
% input verbose.
  disp verbose
  fprintf('%s\n', name);
end
