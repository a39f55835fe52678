function monitor = progressMonitor(total, varargin)
%PROGRESSMONITOR Wait bar with cancel button and time estimate.
%   M = PROGRESSMONITOR(N, 'Title', T) returns a struct of function handles:
%       M.step()       advance by one
%       M.cancelled()  true once the user pressed Cancel
%       M.close()      remove the window
opts = struct('Title', 'Working...', 'UpdateEvery', 1);
for k = 1:2:numel(varargin)
    opts.(varargin{k}) = varargin{k+1};
end

count = 0;
stopRequested = false;
started = tic;
h = waitbar(0, 'Starting...', 'Name', opts.Title, ...
    'CreateCancelBtn', @(src, evt) requestStop());
setappdata(h, 'total', total);

monitor.step = @step;
monitor.cancelled = @() stopRequested;
monitor.close = @() delete(h);

    function step()
        count = count + 1;
        if mod(count, opts.UpdateEvery) ~= 0 && count < total
            return
        end
        elapsed = toc(started);
        remaining = elapsed / count * (total - count);
        waitbar(count / total, h, sprintf('%d of %d, about %s left', ...
            count, total, formatSeconds(remaining)));
    end

    function requestStop()
        stopRequested = true;
    end
end

function s = formatSeconds(t)
if t < 60
    s = sprintf('%.0f s', t);
elseif t < 3600
    s = sprintf('%d min %02.0f s', floor(t/60), mod(t, 60));
else
    s = sprintf('%.1f h', t/3600);
end
end
