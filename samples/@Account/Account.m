function obj = Account(owner, openingBalance)
%ACCOUNT A bank account: an owner, a balance and the history of its
%   transactions, one row per transaction: [date number, amount].
%
%   a = Account('Ada Lovelace', 100);
%   a = deposit(a, 25);
%   balance(a)

if nargin < 1
    owner = '';
end
if nargin < 2
    openingBalance = 0;
end
if ~ischar(owner)
    error('Account:owner', 'The owner must be given as text.');
end
data.owner = owner;
data.balance = openingBalance;
data.history = zeros(0, 2);
obj = class(data, 'Account');
end
