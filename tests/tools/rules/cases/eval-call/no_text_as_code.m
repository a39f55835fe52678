function out = no_text_as_code(name, x)
% Calls by name and dynamic fields instead of code in text.
  f = str2func(name);
  out.(name) = f(x);
  out.value = feval(name, x);
  out.sum = feval('sum', x);
  out.evalResult = 1;        % a field that is merely named like it
  s.eval = 2;
  out.other = s.eval;
  disp('eval(x) in a text is only text')  % eval(x) in a comment
  out.handle = @evaluate;
  out.m = x.evalin;
end

function h = package_handle()
  % A package function's handle names another function than eval.
  h = @tools.eval;
end
