%% Chapter 6: Reading and writing data
clear all
close all

%% MAT files
x = 1:10;
y = x.^2;
save results.mat x y
clear x y
load results.mat x y
whos x y
save('-ascii', 'y.txt', 'y')
load('results.mat', 'x');

%% Text files
fid = fopen('table.csv', 'w');
fprintf(fid, '%s,%s\n', 'x', 'y');
fprintf(fid, '%d,%d\n', [x; y]);
fclose(fid);

data = readmatrix('table.csv', 'NumHeaderLines', 1);
size(data)

fid = fopen('table.csv', 'r');
header = fgetl(fid);
count = 0;
while ~feof(fid)
    line = fgetl(fid);
    values = sscanf(line, '%d,%d');
    count = count + 1;
end
fclose(fid);
fprintf('read %d data lines after header "%s"\n', count, header);

%% Tables
T = table((1:5)', ["a"; "b"; "c"; "d"; "e"], rand(5, 1), ...
    'VariableNames', {'Id', 'Label', 'Score'});
T(T.Score > 0.5, :)
writetable(T, 'scores.xlsx', 'Sheet', 'Run 1');

%% Tidying up
delete table.csv y.txt
warning off all
delete scores.xlsx
warning on all
dir *.mat
type results.mat
