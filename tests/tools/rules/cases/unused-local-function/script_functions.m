% A script with local functions: the script's statements call one of them.
data = load_data();
plot_data(data)

function d = load_data()
  d = 1:10;
end

function plot_data(d)
  plot(d);
end

function leftover()  % expect: unused-local-function
  disp('left over');
end
