function n = scalar_conditions(opts, n, done, retries)
if isfield(opts, 'limit') & opts.limit > 0  % expect: elementwise-logical-in-condition
    n = min(n, opts.limit);
elseif n < 0 | isempty(opts)  % expect: elementwise-logical-in-condition
    n = 0;
end
while ~done | retries < 3  % expect: elementwise-logical-in-condition
    [done, retries] = step(retries);
end
if (n > 1 & n < 10)  % expect: elementwise-logical-in-condition
    n = n + 1;
end
if n > 1 & n < 10 | n == 20  % expect: elementwise-logical-in-condition
    n = 2 * n;
end
if ((n > 0) | (n < -5)) & done  % expect: elementwise-logical-in-condition
    n = -n;
end
    function tf = nestedCheck(a, b)
        tf = false;
        if a | ...  % expect: elementwise-logical-in-condition
                b
            tf = true;
        end
    end
end
