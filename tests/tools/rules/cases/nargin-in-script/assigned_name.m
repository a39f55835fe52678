% A script that keeps its own variable called nargin.
nargin = 3;
for k = 1:nargin
    disp(k);
end
