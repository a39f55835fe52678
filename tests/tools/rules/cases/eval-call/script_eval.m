% A script: its calls are only potential, and still reported.
setup = 'x = 1;';
eval(setup);  % expect: eval-call
y = cellfun(@(s) evalin('base', s), {'a', 'b'}, 'UniformOutput', false);  % expect: eval-call
