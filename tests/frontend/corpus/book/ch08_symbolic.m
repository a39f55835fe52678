%% Chapter 8: symbolic variables
% Symbolic variables are declared with command syntax. A symbolic function
% is written with its arguments in parentheses, and the blanks inside the
% parentheses do not split the word.
syms a b(t) real
syms f(x, y) g
syms u(t) v(t)
assume a positive

%% A first-order equation
eqn = diff(b(t), t) == -a*b(t);
sol = dsolve(eqn, b(0) == 1);
disp(sol)

%% A system of two equations
odes = [diff(u, t) == v; diff(v, t) == -u];
conds = [u(0) == 0, v(0) == 1];
[uSol, vSol] = dsolve(odes, conds);
fplot(uSol, [0 2*pi]); hold on
fplot(vSol, [0 2*pi]); hold off
legend show
