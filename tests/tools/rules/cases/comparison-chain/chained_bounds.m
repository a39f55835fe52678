function inside = chained_bounds(x, lo, hi)
% Chains written as in mathematics, each one comparing a logical result.
inside = lo < x < hi;  % expect: comparison-chain
if 0 <= x <= 1  % expect: comparison-chain
    inside = true;
elseif x >= hi > lo  % expect: comparison-chain
    inside = false;
end
allSame = x == lo == hi;  % expect: comparison-chain
longer = lo < x < hi < 10;  % expect: comparison-chain
mixed = x ~= lo >= hi;  % expect: comparison-chain
near = @(v) -1 < v < 1;  % expect: comparison-chain
both = lo < x < hi & x > 0;  % expect: comparison-chain
disp(lo < ...  % expect: comparison-chain
     x < hi)
while 0 < x < hi  % expect: comparison-chain
    x = x - 1;
end
end
