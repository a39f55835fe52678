function value = balance(obj)
%BALANCE The current balance of the account.
value = obj.balance;
end
