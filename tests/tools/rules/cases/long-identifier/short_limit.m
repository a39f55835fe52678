% test-options: max-length = 8
total = 0;
accumulated = 0;  % expect: long-identifier
for k = 1:3
  accumulated = accumulated + k;
  total = total + k;
end
s.count = total;
s.countOfAll = accumulated;  % expect: long-identifier
disp(s.countOfAll)
