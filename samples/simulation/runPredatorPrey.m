% RUNPREDATORPREY Simulate rabbits and foxes with the Lotka-Volterra
% equations and plot both populations and the phase portrait.

global SIMULATION_PARAMETERS
SIMULATION_PARAMETERS = struct('birth', 1.1, 'predation', 0.4, 'efficiency', 0.1, 'death', 0.4);

%% Integrate
days = 60;
dt = 0.01;
steps = round(days / dt);
population = zeros(steps + 1, 2);
population(1, :) = [10, 5];
for k = 1:steps
    population(k + 1, :) = population(k, :) + dt * predatorPreyRates(population(k, :));
end
t = (0:steps) * dt;

%% Plot
figure('Name', 'Predator and prey');
subplot(1, 2, 1);
plot(t, population(:, 1), t, population(:, 2), LineWidth=1.5);
legend('rabbits', 'foxes');
xlabel('days');
subplot(1, 2, 2);
plot(population(:, 1), population(:, 2));
xlabel('rabbits');
ylabel('foxes');
title(sprintf('Peak fox population %.1f', max(population(:, 2))))
