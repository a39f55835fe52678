function [x, P] = kalmanStep(x, P, z, dt) %#codegen
% One predict/update step of a constant-velocity Kalman filter in 2-D.
F = [1 0 dt 0
     0 1 0  dt
     0 0 1  0
     0 0 0  1];
H = [1 0 0 0
     0 1 0 0];
q = 0.05;
Q = q * [dt^3/3  0       dt^2/2  0
         0       dt^3/3  0       dt^2/2
         dt^2/2  0       dt      0
         0       dt^2/2  0       dt];
R = 0.1 * eye(2);

% predict
x = F * x;
P = F * P * F' + Q;

% update
y = z - H * x;
S = H * P * H.' + R;
K = P * H' / S;
x = x + K * y;
P = (eye(4) - K * H) * P;
end
