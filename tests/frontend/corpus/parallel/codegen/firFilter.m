function y = firFilter(b, x) %#codegen
%FIRFILTER Direct-form FIR filter, written for code generation.
%   Fixed-size state and explicit loops; no dynamic memory.
assert(isa(b, 'double') && isvector(b));
assert(isa(x, 'double') && size(x, 2) == 1);

persistent state
nTaps = numel(b);
if isempty(state)
    state = zeros(nTaps, 1);
end

y = zeros(size(x));
for n = 1:numel(x)
    state(2:end) = state(1:end-1);
    state(1) = x(n);
    acc = 0;
    for k = 1:nTaps
        acc = acc + b(k) * state(k);
    end
    y(n) = acc;
end
end
