function total = addToTotal(amount)
  % Keeps a running total in state shared with other functions.
  global runningTotal  % expect: global-declaration
  global lastAmount auditTrail  % expect: global-declaration
  if isempty(runningTotal)
    runningTotal = 0;
  end
  runningTotal = runningTotal + amount;
  lastAmount = amount;
  auditTrail{end + 1} = amount;
  total = runningTotal;
end
