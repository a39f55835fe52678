% A script whose last statement is a command without a line end.
x = linspace(0, 1, 11);
y = x.^2
hold on