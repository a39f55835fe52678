% A script written as though it were a function.
if nargin < 1  % expect: nargin-in-script
    data = load('results.mat');
end
if nargout > 0  % expect: nargin-in-script
    disp('no outputs here');
end
fprintf('%d inputs\n', nargin);  % expect: nargin-in-script
inputsOfPlot = nargin('plot');
handler = @(varargin) numel(varargin) + nargin(@disp);
plot(data.t, data.y);

function show(varargin)
if nargin > 0
    disp(varargin{1});
end
end
