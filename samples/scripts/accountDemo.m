% ACCOUNTDEMO A few transactions on an account, then its statement.

account = Account('Ada Lovelace', 100);
account = deposit(account, 250);
[account, ok] = withdraw(account, 400);
if ~ok
    disp('Withdrawal refused: not enough money.');
end
[account, ok] = withdraw(account, 400, 100);
statement(account, 1, 'GBP');
