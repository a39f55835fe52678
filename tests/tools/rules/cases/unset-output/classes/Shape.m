classdef Shape
  % A constructor's object exists from the start; declarations have no body.
  properties
    Sides = 0
  end
  methods
    function obj = Shape(n)
      obj.Sides = n;
    end
    function a = area(obj)  % expect: unset-output
      disp(obj.Sides);
    end
    p = perimeter(obj)
  end
  methods (Abstract)
    d = describe(obj)
  end
end
