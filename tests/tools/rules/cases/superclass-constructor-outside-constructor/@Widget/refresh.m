function obj = refresh(obj)
% A method in its own file of the class folder.
obj@Control(obj.Parent);  % expect: superclass-constructor-outside-constructor
obj = refresh@Control(obj);
end
