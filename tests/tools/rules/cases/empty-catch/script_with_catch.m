% A script: catch blocks at the top level of a script.
try
    x = str2double(input('x? ', 's'));
catch  % expect: empty-catch
end
try
    y = x * 2;
catch reason
    disp(reason.message)
end
