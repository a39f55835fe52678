% A script: the workspace's variables hide functions too.
data = rand(3);
table = data';  % expect: shadowed-function
disp(table)
