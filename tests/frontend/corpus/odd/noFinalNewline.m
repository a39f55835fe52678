function y = noFinalNewline(x)
% The last line of this file has no line end.
y = x;
if y > 1
    y = y - 1;
end
end