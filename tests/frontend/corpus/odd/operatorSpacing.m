function r = operatorSpacing(a, b, x)
% Blanks decide inside brackets; outside they do not.
r1 = [a -b];        % two elements
r2 = [a - b];       % one element
r3 = [a-b];         % one element
r4 = [a -b -1];     % three elements
r5 = [a' b'];       % two transposes
r6 = [a 'x'];       % a and a char vector
r7 = [x (1)];       % two elements
r8 = [x(1)];        % one index
r9 = [a, -b; -a, b];
r10 = {a -b, 'c' 'd'};
r11 = [1./x 2.^x];
r12 = [a.' b.'];
r13 = [a + b, a +b];
r14 = [x(end) x(end - 1)];
r15 = [~a ~b];
r16 = [a ~= b];
r17 = [@sin @cos];
inv1 = 1./x;
sq = x.^2;
sq2 = 1.^2;
ct = x';
pt = x.';
d = 1.5e-3./x.^-1;
n = -2^2;
m = 2^-1;
t = a'*b';
u = a''';
r = {r1, r2, r3, r4, r5, r6, r7, r8, r9, r10, r11, r12, r13, r14, r15, r16, r17, ...
     inv1, sq, sq2, ct, pt, d, n, m, t, u};
end
