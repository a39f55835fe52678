% A script of comparisons that are meant as written.
lo = 0; hi = 10; x = 5; flag = true; a = 1; b = 2; c = 3;
matches = (a < b) == flag;
between = lo < x && x < hi;
elementwise = lo < x & x < hi;
explicit = (lo < x) < hi;
grouped = a < (b < c);
sums = a + b < c - 1;
negated = ~(a < b) == flag;
ranges = 1:3 == [1 2 3];
text = 'abc' == 'abd';
equalTo = isequal(a < b, c > b);
cells = cellfun(@(v) v > 0, {a, b});
if (lo < x) == (x < hi)
    disp('both or neither');
end
% Command syntax passes words, not comparisons.
disp lo<x<hi
message = "lo < x < hi must hold";
