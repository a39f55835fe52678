function r = byteOrderMark(v)
%BYTEORDERMARK This file starts with a UTF-8 byte-order mark.
%   Non-ASCII text in comments and strings: café, Ærøskøbing, μ = 1.2 µm.
r = v * 2;
unit = 'µm';
greeting = "grüß dich";
fprintf('%g %s, %s\n', r, unit, greeting);
end
