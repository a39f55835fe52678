classdef Account < Base & handle
    properties
        Balance = 0
    end
    methods
        function obj = Account(balance)
            obj@Base(balance);
            obj.Balance = balance;
            other = Base(0);
            other@Base(0);  % expect: superclass-constructor-outside-constructor
            later = @() obj@Base(1);  % expect: superclass-constructor-outside-constructor
            helper();
            function helper()
                obj@Base(2);  % expect: superclass-constructor-outside-constructor
            end
        end
        function obj = reset(obj)
            obj@Base(0);  % expect: superclass-constructor-outside-constructor
            obj.Balance = 0;
        end
        function deposit(obj, amount)
            obj@Base(amount);  % expect: superclass-constructor-outside-constructor
        end
        function disp(obj)
            disp@Base(obj);
        end
    end
end

function reopen(account)
account@Base(1);  % expect: superclass-constructor-outside-constructor
end
