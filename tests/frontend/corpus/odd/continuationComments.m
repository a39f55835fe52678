function total = continuationComments(a, b, c)
% Continuations with comments after the dots, in calls, matrices and cells.
total = a + ... first operand
        b + ...   second operand, then a blank continuation line
        ...
        c;
M = [1, 2, ... row one continues
     3; ... % comment with a percent sign
     4, 5, 6];
names = {'alpha', ... Greek
         'beta', ...
         'gamma'};
result = max(total, ... comment with 'quotes' and "strings" and (brackets
             numel(M) + numel(names));
if result > 0 && ...
        total < 100 % comment after the condition
    total = total + result;
end
fprintf(['%d elements in M, ', ... join two pieces of the format
         '%d names\n'], numel(M), numel(names));
x = 1 ...
    + 2;
x = x + 1...
    + 2;          % a number directly before the dots
v = [1...
     2];
x = x + v(end)'...
    * 2;
total = total + x;
end
