%% Chapter 3: Plotting
% Line plots, several curves on one axes, subplots and surfaces.
close all

%% A first plot
x = linspace(0, 2*pi, 200);
figure
plot(x, sin(x))
xlabel('x'), ylabel('sin(x)')
title('The sine function')
grid on

%% Several curves
figure
hold on
plot(x, sin(x), 'r-', 'LineWidth', 2)
plot(x, cos(x), 'b--', 'LineWidth', 2)
plot(x, sin(x).*cos(x), 'k:', LineWidth=1.5)
hold on, plot(x, cos(x).^2, 'g-.')
hold off
legend('sin', 'cos', 'sin\cdot cos', 'Location', 'southwest')
axis tight
box on

%% Subplots
figure('Name', 'Subplots')
for k = 1:4
    subplot(2, 2, k)
    plot(x, sin(k*x))
    title(sprintf('sin(%dx)', k))
    axis([0 2*pi -1.1 1.1])
end

%% Surfaces
[X, Y] = meshgrid(-2:0.1:2);
Z = X .* exp(-X.^2 - Y.^2);
figure
surf(X, Y, Z)
shading interp
colormap parula
colorbar
view(-37.5, 30)
axis equal
rotate3d on

%% Saving
print -dpng surface.png
savefig('surface.fig')
