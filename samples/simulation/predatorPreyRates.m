function rates = predatorPreyRates(population)
%PREDATORPREYRATES The rates of change of [prey, predators].

global SIMULATION_PARAMETERS
p = SIMULATION_PARAMETERS;
prey = population(1);
predators = population(2);
rates = [p.birth * prey - p.predation * prey * predators, ...
         p.efficiency * prey * predators - p.death * predators];
end
