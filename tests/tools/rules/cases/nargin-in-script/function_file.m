function function_file(a, b)
if nargin < 2
    b = 0;
end
disp(a + b + nargout);
end
