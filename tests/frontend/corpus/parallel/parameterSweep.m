function results = parameterSweep(model, grid, maxWorkers)
%PARAMETERSWEEP Runs MODEL for every row of GRID, in parallel.
%   RESULTS = PARAMETERSWEEP(MODEL, GRID, MAXWORKERS) limits the number of
%   workers; pass 0 to run in the client.

nRuns = size(grid, 1);
results = cell(nRuns, 1);
elapsed = zeros(nRuns, 1);

parfor (k = 1:nRuns, maxWorkers)
    t0 = tic;
    params = grid(k, :);
    try
        results{k} = model(params);
    catch err
        results{k} = err.message;
    end
    elapsed(k) = toc(t0);
end

opts = parforOptions(gcp, 'RangePartitionMethod', 'fixed', 'SubrangeSize', 8);
checksums = zeros(nRuns, 1);
parfor (k = 1:nRuns, opts)
    checksums(k) = sum(double(results{k}(:)));
end

fprintf('%d runs, %.2f s in total, slowest %.2f s\n', ...
    nRuns, sum(elapsed), max(elapsed));
end
