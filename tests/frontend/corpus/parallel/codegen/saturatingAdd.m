%#codegen
function z = saturatingAdd(a, b)
% Adds two int16 vectors, clamping at the limits of the type.
z = zeros(size(a), 'int16');
lo = int32(intmin('int16'));
hi = int32(intmax('int16'));
mask = 0xFFFFu32;
flags = 0b0101u8;
for k = 1:numel(a)
    s = int32(a(k)) + int32(b(k));
    if s > hi
        s = hi;
    elseif s < lo
        s = lo;
    end
    z(k) = int16(bitand(uint32(s), mask) > 0) * int16(s);
end
if bitget(flags, 1)
    fprintf('saturating add of %d elements\n', numel(a));
end
end
