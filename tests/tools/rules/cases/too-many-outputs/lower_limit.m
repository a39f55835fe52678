% test-options: max-outputs = 1
function [a, b] = lower_limit()  % expect: too-many-outputs
a = 1;
b = single_output();
end

function a = single_output()
a = 2;
end

function varargout = any_number()
varargout = {1, 2};
end

function no_output()
disp('nothing');
end
