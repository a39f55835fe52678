% Mixed line ends: this line ends with LF,
% this one with CRLF,
% and this one with CR.x = 1;
y = 2;z = x + y;
w = [x y
     z 0];
