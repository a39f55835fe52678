function [total, mean, minimum, maximum, spread, count] = many_results(values)  % expect: too-many-outputs
total = sum(values);
count = numel(values);
mean = total / count;
minimum = min(values);
maximum = max(values);
spread = maximum - minimum;
[a, b, c, d, e, f, g] = seven();
end

function [a, b, c, d, e, f, g] = seven()  % expect: too-many-outputs
[a, b, c, d, e, f, g] = deal(1);
    function [p, q, r, s, t, u] = nested()  % expect: too-many-outputs
        [p, q, r, s, t, u] = deal(0);
    end
end

function [a, b, c, d, e, f, varargout] = open()  % expect: too-many-outputs
[a, b, c, d, e, f] = deal(1);
varargout = {};
end
