function [x, y, t] = simulateProjectile(mass, dragCoefficient, area, airDensity, speed, angle, height, timeStep)
%SIMULATEPROJECTILE Flight of a ball with quadratic air drag, by explicit
%   Euler steps until it lands. ANGLE is in degrees.

g = 9.81;
k = 0.5 * airDensity * dragCoefficient * area / mass;
vx = speed * cosd(angle);
vy = speed * sind(angle);
x = 0;
y = height;
t = 0;
while y(end) >= 0
    v = hypot(vx, vy);
    vx = vx - k * v * vx * timeStep;
    vy = vy - (g + k * v * vy) * timeStep;
    x(end + 1) = x(end) + vx * timeStep; %#ok<AGROW>
    y(end + 1) = y(end) + vy * timeStep; %#ok<AGROW>
    t(end + 1) = t(end) + timeStep; %#ok<AGROW>
end
end
