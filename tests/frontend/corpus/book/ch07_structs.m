%% Chapter 7: Structures
clear; clc

%% Creating structures
patient.name = 'John Doe';
patient.billing = 127.00;
patient.test = [79, 75, 73; 180, 178, 177.5; 220, 210, 205];
patient

patient(2).name = 'Ann Lane';
patient(2).billing = 28.50;
patient(2).test = [68, 70, 68; 118, 118, 119; 172, 170, 169];
size(patient)

s = struct('a', {1, 2, 3}, 'b', 'shared')
s(2)

%% Dynamic field names
fields = fieldnames(patient);
for k = 1:numel(fields)
    f = fields{k};
    fprintf('%-8s %s\n', f, class(patient(1).(f)));
end
config = struct();
key = 'maxIterations';
config.(key) = 100;
config.('tolerance') = 1e-6;
config

%% Nested structures
model.layers{1}.type = 'dense';
model.layers{1}.units = 64;
model.layers{2}.type = 'dropout';
model.layers{2}.rate = 0.5;
model.optimizer.name = "adam";
model.optimizer.params.lr = 1e-3;
model.optimizer.params.betas = [0.9 0.999];
model.layers{end}
model.optimizer.params.betas(2)

%% Arrays of structures
bills = [patient.billing]
total = sum([patient.billing])
names = {patient.name}
[patient.billing] = deal(0);
isfield(patient, {'name', 'age'})
patient = rmfield(patient, 'test');
orderfields(patient(1))
