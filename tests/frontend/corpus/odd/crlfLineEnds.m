function [m, s] = crlfLineEnds(x)
%CRLFLINEENDS Saved on a system that ends lines with CR LF.
%   Continuations, block comments and matrices must all cope with it.
%{
    block comment with CRLF line ends
%}
m = mean(x(:));
s = sqrt(sum((x(:) - m).^2) / ...
    (numel(x) - 1));
T = [1 2
     3 4];
if s > 0, s = s + T(1) * 0; end
label = 'it''s done';
disp(label)
end
