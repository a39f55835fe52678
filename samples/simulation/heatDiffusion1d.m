function [u, x] = heatDiffusion1d(initial, diffusivity, rodLength, duration)
%HEATDIFFUSION1D Temperature along a rod whose ends are held at zero, by
%   the explicit finite-difference scheme. INITIAL is a function of x.

cells = 100;
x = linspace(0, rodLength, cells + 1);
dx = x(2) - x(1);
maximumStableTimeStepForTheExplicitForwardEulerSchemeOnAUniformGrid = dx ^ 2 / (2 * diffusivity);
dt = 0.9 * maximumStableTimeStepForTheExplicitForwardEulerSchemeOnAUniformGrid;
steps = ceil(duration / dt);
dt = duration / steps;
r = diffusivity * dt / dx ^ 2;
u = initial(x);
u([1, end]) = 0;
for n = 1:steps
    u(2:end-1) = u(2:end-1) + r * (u(3:end) - 2 * u(2:end-1) + u(1:end-2));
end
end
