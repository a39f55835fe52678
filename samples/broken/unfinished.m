function report = summariseRun(results)
%SUMMARISERUN Work in progress: a summary of one run's results.

report = struct('mean', mean(results), 'spread', std(results);
report.count = numel(results);
end
