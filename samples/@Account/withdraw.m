function [obj, approved] = withdraw(obj, amount, overdraftLimit)
%WITHDRAW Take AMOUNT out of the account unless that would overdraw it by
%   more than OVERDRAFTLIMIT (0 when not given). APPROVED says which.

if nargin < 3
    overdraftLimit = 0;
end
approved = obj.balance - amount >= -overdraftLimit;
if approved
    obj.balance = obj.balance - amount;
    obj.history(end + 1, :) = [now, -amount];
end
end
