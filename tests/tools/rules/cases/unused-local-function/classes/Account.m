classdef Account < handle
  % Methods are not local functions; a local function after the class is.
  properties
    Balance = 0
  end
  methods
    function deposit(obj, amount)
      obj.Balance = obj.Balance + checked(amount);
    end
    function neverCalledMethod(obj)
      disp(obj.Balance);
      function innerHelper()  % expect: unused-local-function
        disp('inner');
      end
    end
  end
end

function a = checked(a)
  assert(a > 0);
end

function unusedAfterClass()  % expect: unused-local-function
end
