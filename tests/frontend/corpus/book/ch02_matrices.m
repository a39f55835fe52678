%% Chapter 2: Vectors and matrices
clear variables; clc

%% Building matrices
row = [1 2 3 4]
col = [1; 2; 3; 4]
M = [1 2 3
     4 5 6
     7 8 10]
I = eye(3);
Z = zeros(2, 3)
O = ones(3, 2)
R = rand(3);

%% Ranges
v = 0:0.25:1
w = 10:-2:0
n = numel(v)

%% Indexing
M(2, 3)
M(end, :)
M(:, 1)'
M(2:end, [1 3])
v(end:-1:1)
M(M > 5)'

%% Element-wise arithmetic
x = linspace(0, 1, 5);
y = x.^2
y2 = x.*x - 2*x + 1
r = 1./(1 + x)
q = 2.^x
p = x.'
C = M' * M
D = M .\ 2

%% Solving systems
b = [1; 2; 3];
sol = M \ b
residual = norm(M*sol - b)
[Q, Rf] = qr(M);
[V, E] = eig(C)

%% Concatenation
A = [M, zeros(3, 1); ones(1, 4)]
B = [A; A(end, :) * 2]
neg = [1 -2 +3]
diffs = [x(2) - x(1), x(3)-x(2)]
