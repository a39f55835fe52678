function [a, b, c, d, e] = within_limits()
[a, b, c, d, e] = deal(1);
[x, varargout] = options();
end

function [a, b, c, d, e, varargout] = options()
[a, b, c, d, e] = deal(1);
varargout = {};
end
