% Matrices and cells laid out over several lines, with blank lines and
% comments between the rows.
A = [
    1  2  3

    4  5  6   % second row

    % a comment line between rows
    7  8  9
];
B = [ 1, 2, 3 ;
      4, 5, 6 ;
    ];
C = {
    'first'

    'second'
};
P = blkdiag([1 2
             3 4], 5);
Q = cellfun(@numel, {'ab'
                     'cde'});
E = [];
F = {};
G = [ ];
H = [;;];
K = [1 2
3 4];
L = [A(1, :)
     B(2, :)];
M = [A; B; ...
     K(1, :) 0];
N = {A, ...
     B
     C, {}};
total = numel(A) + numel(B) + numel(C) + numel(E) + numel(F) + numel(G) ...
      + numel(H) + numel(K) + numel(L) + numel(M) + numel(N)
