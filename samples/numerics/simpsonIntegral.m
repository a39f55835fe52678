function total = simpsonIntegral(f, a, b, intervals)
%SIMPSONINTEGRAL The integral of F from A to B by the composite Simpson
%   rule on INTERVALS (even, default 100) subintervals.

if nargin < 4
    intervals = 100;
end
if mod(intervals, 2) ~= 0
    intervals = intervals + 1;
end
x = linspace(a, b, intervals + 1);
weights = 2 * ones(1, intervals + 1);
weights(2:2:end) = 4;
weights([1, end]) = 1;
total = (b - a) / (3 * intervals) * sum(weights .* f(x));
end
