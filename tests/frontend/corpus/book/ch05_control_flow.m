%% Chapter 5: Control flow
clc

%% if / elseif / else
t = 37.2;
if t < 36
    disp('too cold')
elseif t <= 37.5
    disp('normal')
else
    disp('fever')
end

%% for loops
total = 0;
for k = 1:10
    total = total + k^2;
end
total

for col = magic(3)
    disp(col')
end

for name = {'x', 'y', 'z'}
    fprintf('axis %s\n', name{1});
end

%% while loops with break and continue
n = 27;
steps = 0;
while n ~= 1
    if mod(n, 2) == 0
        n = n / 2;
    else
        n = 3*n + 1;
    end
    steps = steps + 1;
    if steps > 1000, break, end
end
fprintf('Collatz sequence of 27 reaches 1 after %d steps\n', steps);

k = 0;
while true
    k = k + 1;
    if mod(k, 3) == 0
        continue
    end
    if k > 10
        break
    end
    fprintf('%d ', k);
end
fprintf('\n');

%% switch
for day = ["Mon", "Sat", "Wed", "Sun"]
    switch day
        case {"Sat", "Sun"}
            kind = 'weekend';
        case "Wed"
            kind = 'midweek';
        otherwise
            kind = 'weekday';
    end
    fprintf('%s is a %s\n', day, kind);
end

%% try / catch
try
    A = [1 2; 3 4];
    A(3, 3)
catch err % index out of range
    fprintf('Caught: %s\n', err.message);
    disp(err.identifier)
end

try
    error('book:demo', 'Custom error with code %d', 7);
catch
    disp('caught without a variable')
end

%% A variable followed by a signed number is arithmetic, not a command
n = 5;
n -1
n +1

%% Logical short-circuit
x = [];
if ~isempty(x) && x(1) > 0
    disp('positive first element')
end
if isempty(x) || x(1) < 0, disp('empty or negative'), end
