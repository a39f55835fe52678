function obj = Widget(parent)
% The constructor of a class folder's class.
obj@Control(parent);
end
