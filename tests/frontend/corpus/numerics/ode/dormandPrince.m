function [t, y, stats] = dormandPrince(f, tspan, y0, opts)
%DORMANDPRINCE Adaptive Runge-Kutta 5(4) integrator with error control.
arguments
    f function_handle
    tspan (1,2) double
    y0 (:,1) double
    opts.RelTol (1,1) double {mustBePositive} = 1e-6
    opts.AbsTol (1,1) double {mustBePositive} = 1e-9
    opts.InitialStep (1,1) double = 0
    opts.MaxSteps (1,1) double {mustBeInteger, mustBePositive} = 1e5
end

% Butcher tableau
c = [0, 1/5, 3/10, 4/5, 8/9, 1, 1];
A = [0           0           0           0        0           0      0
     1/5         0           0           0        0           0      0
     3/40        9/40        0           0        0           0      0
     44/45      -56/15       32/9        0        0           0      0
     19372/6561 -25360/2187  64448/6561 -212/729  0           0      0
     9017/3168  -355/33      46732/5247  49/176  -5103/18656  0      0
     35/384      0           500/1113    125/192 -2187/6784   11/84  0];
b5 = [35/384, 0, 500/1113, 125/192, -2187/6784, 11/84, 0];
b4 = [5179/57600, 0, 7571/16695, 393/640, ...
      -92097/339200, 187/2100, 1/40];

t0 = tspan(1);
tf = tspan(2);
h = opts.InitialStep;
if h <= 0
    h = 0.01 * (tf - t0);
end

t = t0;
y = y0.';
K = zeros(numel(y0), 7);
stats = struct('accepted', 0, 'rejected', 0);
yn = y0;
tn = t0;
while tn < tf && stats.accepted + stats.rejected < opts.MaxSteps
    h = min(h, tf - tn);
    for s = 1:7
        K(:, s) = f(tn + c(s)*h, yn + h*K(:, 1:s-1)*A(s, 1:s-1).');
    end
    y5 = yn + h*K*b5.';
    y4 = yn + h*K*b4.';
    scale = opts.AbsTol + opts.RelTol*max(abs(yn), abs(y5));
    err = sqrt(mean(((y5 - y4)./scale).^2));
    if err <= 1
        tn = tn + h;
        yn = y5;
        t(end+1, 1) = tn; %#ok<AGROW>
        y(end+1, :) = yn.'; %#ok<AGROW>
        stats.accepted = stats.accepted + 1;
    else
        stats.rejected = stats.rejected + 1;
    end
    h = h * min(5, max(0.2, 0.9*err^(-1/5)));
end
end
