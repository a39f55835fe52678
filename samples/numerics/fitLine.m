function [slope, intercept, rSquared, residuals, standardError, count] = fitLine(x, y)
%FITLINE Least-squares straight line through the points (X, Y), with the
%   goodness of fit, the residuals and the standard error of the slope.

x = x(:);
y = y(:);
count = numel(x);
if count ~= numel(y)
    error('fitLine:size', 'X and Y must have the same number of elements.');
end
design = [x, ones(count, 1)];
coefficients = design \ y;
slope = coefficients(1);
intercept = coefficients(2);
residuals = y - design * coefficients;
totalSquares = sum((y - mean(y)) .^ 2);
rSquared = 1 - sum(residuals .^ 2) / totalSquares;
standardError = sqrt(sum(residuals .^ 2) / (count - 2)) / sqrt(sum((x - mean(x)) .^ 2));
end
