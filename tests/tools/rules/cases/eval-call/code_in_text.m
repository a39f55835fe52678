function results = code_in_text(names, values)
% Builds variables from text and reads them back in several ways.
  for k = 1:numel(names)
    eval([names{k} ' = values(k);']);  % expect: eval-call
  end
  listing = evalc('whos');  % expect: eval-call
  total = evalin('base', 'total');  % expect: eval-call
  assignin('caller', 'lastNames', names);  % expect: eval-call
  eval clear  % expect: eval-call
  runner = @eval;  % expect: eval-call
  runner('disp(1)');
  results = {listing, total};
  try
    eval(['check_' names{1} '()'], ...  % expect: eval-call
         'disp(lasterr)');
  catch
  end
end
