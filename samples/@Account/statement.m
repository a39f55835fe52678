function statement(obj, fid, currency)
%STATEMENT Print the account's transactions to the file FID (1 for the
%   screen), one line each, then the balance.

if nargin < 2
    fid = 1;
end
fprintf(fid, 'Statement for %s\n', obj.owner);
for k = 1:size(obj.history, 1)
    fprintf(fid, '%s  %10.2f\n', datestr(obj.history(k, 1), 'yyyy-mm-dd'), obj.history(k, 2));
end
fprintf(fid, 'Balance: %10.2f\n', obj.balance);
end
