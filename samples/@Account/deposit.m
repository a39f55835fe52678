function obj = deposit(obj, amount)
%DEPOSIT Pay AMOUNT into the account.

if ~isscalar(amount) | amount <= 0
    error('Account:deposit:amount', 'A deposit must be one positive number.');
end
obj.balance = obj.balance + amount;
obj.history(end + 1, :) = [now, amount];
end
