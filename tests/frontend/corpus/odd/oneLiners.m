function y = oneLiners(x)
% Compact statements: several on a line, blocks written on one line.
y = 0; if x > 0, y = 1, end
if x < 0, y = -1; elseif x == 0, y = 0; else, y = 2; end
for k = 1:3, y = y + k; end
while y > 100, y = y / 2; end
switch x, case 1, y = y + 1; case {2, 3}, y = y + 2; otherwise, y = y + 3; end
try, z = x(10); catch, z = 0; end, y = y + z;
if x, y = 1, end
try, z = x(20); catch, end
if x; y = y + 1; end
a = 1, b = 2; c = 3
y = y + a + b + c;
end
