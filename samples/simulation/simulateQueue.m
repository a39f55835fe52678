function stats = simulateQueue(arrivalRate, serviceRate, customers, seed)
%SIMULATEQUEUE One server, first come first served, exponential arrival
%   and service times (an M/M/1 queue), simulated for CUSTOMERS customers.
%   STATS holds the mean wait, the mean queue length seen on arrival and the
%   server's utilisation.

if nargin >= 4
    rng(seed);
end
utilisation = arrivalRate / serviceRate;
if 0 < utilisation < 1
    fprintf('Expected mean wait %.3f\n', utilisation / (serviceRate - arrivalRate));
end

arrivals = cumsum(exponentialSamples(arrivalRate, customers));
service = exponentialSamples(serviceRate, customers);
departures = zeros(customers, 1);
waits = zeros(customers, 1);
serverFreeAt = 0;
for k = 1:customers
    start = max(arrivals(k), serverFreeAt);
    waits(k) = start - arrivals(k);
    departures(k) = start + service(k);
    serverFreeAt = departures(k);
end

stats.meanWait = mean(waits);
stats.meanQueueOnArrival = mean(arrayfun(@queueLengthAt, 1:customers));
stats.utilisation = sum(service) / departures(end);

    function n = queueLengthAt(k)
        % Customers that arrived before customer k and are still waiting.
        n = sum(arrivals(1:k-1) < arrivals(k) & departures(1:k-1) > arrivals(k));
    end
end

function samples = exponentialSamples(rate, count)
samples = -log(rand(count, 1)) / rate;
end
