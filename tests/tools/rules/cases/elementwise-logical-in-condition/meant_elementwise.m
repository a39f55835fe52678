% Element-wise operators where they belong, and short-circuit ones in
% conditions.
values = [1 -2 3];
mask = values > 0 & values < 3;
either = values < 0 | values > 2;
if values(1) > 0 && values(2) < 0
    disp('mixed signs');
end
while isempty(mask) || ~any(mask)
    mask = true;
end
if any(values > 0 & values < 3)
    disp('some in range');
end
if all(mask | either)
    disp('covered');
end
if isequal(mask, values > 0 | either)
    disp('same');
end
if ~(mask(1) & either(1))
    disp('not both');
end
switch numel(values)
    case 3
        x = values(1) & values(2);
end
y = values(values > 0 & values < 3);
f = @(a, b) a | b;
% Command syntax passes words, not operators.
if ~isempty(values)
    disp a|b
end
% Under && or || the rule stays out: only a condition made of & and | alone
% is reported.
if numel(values) == 3 && (mask(1) | either(1))
    disp('first flagged');
end
while ~isempty(values) && (values(1) < 0 | mask(1))
    values = values(2:end);
end
