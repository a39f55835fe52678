function [average, deviation] = movingStatistics(signal, window)
%MOVINGSTATISTICS Mean and standard deviation of SIGNAL over a sliding
%   window of WINDOW samples, centred; the ends use the samples there are.

n = numel(signal);
average = zeros(size(signal));
deviation = zeros(size(signal));
half = floor(window / 2);
for k = 1:n
    first = max(1, k - half);
    last = min(n, k + half);
    part = signal(first:last);
    average(k) = mean(part);
    deviation(k) = sampleDeviation(part);
end
end

function s = sampleDeviation(values)
if numel(values) < 2
    s = 0;
else
    s = sqrt(sum((values - mean(values)) .^ 2) / (numel(values) - 1));
end
end
