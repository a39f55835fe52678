function out = transformPoints(xy, opts)
%TRANSFORMPOINTS Rotates, scales and translates 2-D points.
%
%   out = geometry.util.transformPoints(xy, Angle=pi/4, Scale=[2 1])

arguments (Input)
    xy (:,2) double
    opts.Angle (1,1) double = 0
    opts.Scale (1,2) double {mustBePositive} = [1 1]
    opts.Offset (1,2) double = [0 0]
    opts.Origin (1,2) double = [0 0]
end
arguments (Output)
    out (:,2) double
end

R = [cos(opts.Angle) -sin(opts.Angle)
     sin(opts.Angle)  cos(opts.Angle)];
S = diag(opts.Scale);
centred = xy - opts.Origin;
out = (R*S*centred.').' + opts.Origin + opts.Offset;
end
