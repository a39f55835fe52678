function d = distance(p, q, options)
%DISTANCE Distances between the rows of P and Q.
%   D = geometry.util.distance(P, Q, Metric="manhattan")
arguments
    p (:,2) double
    q (:,2) double
    options.Metric (1,1) string {mustBeMember(options.Metric, ["euclidean", "manhattan", "chebyshev"])} = "euclidean"
    options.Squared (1,1) logical = false
end
delta = p - q;
switch options.Metric
    case "euclidean"
        d = sum(delta.^2, 2);
        if ~options.Squared
            d = sqrt(d);
        end
    case "manhattan"
        d = sum(abs(delta), 2);
    case "chebyshev"
        d = max(abs(delta), [], 2);
end
end
