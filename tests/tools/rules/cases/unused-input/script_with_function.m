% A script whose local function ignores an input.
result = combine(1, 2);
disp(result)

function c = combine(a, b)  % expect: unused-input
  c = a * 2;
end
