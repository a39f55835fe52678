function [q, nEval] = adaptiveSimpson(f, a, b, tol)
% ADAPTIVESIMPSON  Recursive adaptive Simpson quadrature.
%   Counts the evaluations of F in NEVAL.
if nargin < 4, tol = 1e-10; end
fa = f(a); fb = f(b); m = (a + b)/2; fm = f(m);
whole = (b - a)/6 * (fa + 4*fm + fb);
nEval = 3;
q = recurse(a, b, fa, fm, fb, whole, tol, 50);

    function q = recurse(a, b, fa, fm, fb, whole, tol, depth)
        m = (a + b)/2;
        lm = (a + m)/2;  rm = (m + b)/2;
        flm = f(lm);     frm = f(rm);
        nEval = nEval + 2;
        left  = (m - a)/6 * (fa + 4*flm + fm);
        right = (b - m)/6 * (fm + 4*frm + fb);
        delta = left + right - whole;
        if depth <= 0 || abs(delta) <= 15*tol
            q = left + right + delta/15;
        else
            q = recurse(a, m, fa, flm, fm, left, tol/2, depth-1) + ...
                recurse(m, b, fm, frm, fb, right, tol/2, depth-1);
        end
    end
end
