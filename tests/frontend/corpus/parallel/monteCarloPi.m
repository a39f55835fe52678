function [estimate, stderr] = monteCarloPi(nSamples, nWorkers)
%MONTECARLOPI Estimates pi by throwing darts, spread over workers.
if nargin < 2
    nWorkers = 4;
end
chunk = ceil(nSamples / nWorkers);
hits = zeros(1, nWorkers);
parfor w = 1:nWorkers
    stream = RandStream('Threefry', 'Seed', w);
    xy = rand(stream, chunk, 2);
    hits(w) = sum(sum(xy.^2, 2) <= 1);
end
p = sum(hits) / (chunk * nWorkers);
estimate = 4 * p;
stderr = 4 * sqrt(p * (1 - p) / (chunk * nWorkers));
end
