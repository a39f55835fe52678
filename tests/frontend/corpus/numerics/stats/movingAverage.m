function out = movingAverage(x, window, varargin)
%MOVINGAVERAGE Centred moving average with a choice of edge handling.
%   OUT = MOVINGAVERAGE(X, WINDOW, 'Edges', MODE) where MODE is 'shrink'
%   (default) or 'fill'.
p = inputParser;
p.addRequired('x', @isnumeric);
p.addRequired('window', @(w) isscalar(w) && w >= 1 && mod(w, 1) == 0);
p.addParameter('Edges', 'shrink', @(s) any(strcmpi(s, {'shrink', 'fill'})));
p.parse(x, window, varargin{:});
edges = lower(p.Results.Edges);

half = floor(window/2);
n = numel(x);
out = zeros(size(x));
for k = 1:n
    lo = max(1, k - half);
    hi = min(n, k + half);
    switch edges
        case 'shrink'
            out(k) = mean(x(lo:hi));
        case 'fill'
            if k - half < 1 || k + half > n
                out(k) = NaN;
            else
                out(k) = mean(x(lo:hi));
            end
    end
end
end
