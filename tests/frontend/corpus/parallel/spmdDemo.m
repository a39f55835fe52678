%% Distributed arrays with spmd
% Each worker builds part of a matrix, then the parts are combined.
pool = gcp('nocreate');
if isempty(pool)
    pool = parpool(4);
end

spmd
    fprintf('worker %d of %d\n', spmdIndex, spmdSize);
    part = spmdIndex * ones(2, 3);
    total = spmdPlus(sum(part(:)));
end
disp(total{1})

spmd (4)
    if spmdIndex == 1
        data = magic(4);
        spmdSend(data, 2:spmdSize);
    else
        data = spmdReceive(1);
    end
    colSum = sum(data(:, spmdIndex));
end
colSums = [colSum{:}]

spmd (2, 4)
    D = codistributed(rand(100));
    localNorm = norm(getLocalPart(D), 'fro');
end

%% Cleanup
delete(pool)
