classdef Counter
  % The object of a method may go unread; other inputs are checked.
  properties
    Count = 0
  end
  methods
    function obj = Counter(start)
      obj.Count = start;
    end
    function name = label(obj)
      name = 'counter';
    end
    function obj = reset(obj, value)  % expect: unused-input
      obj.Count = 0;
    end
    r = declaredOnly(obj, x)
  end
  methods (Static)
    function c = make(n)
      c = Counter(n);
    end
  end
end
