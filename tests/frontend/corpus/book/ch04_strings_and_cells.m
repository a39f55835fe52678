%% Chapter 4: Text, cell arrays and string arrays
clear; clc;

%% Character vectors
word = 'matrix';
upper(word)
fliplr(word)
word([1 end])
length(word)
quote = 'It''s a ''quoted'' word';
disp(quote)
padded = ['[', blanks(3), word, ']']
num2str(pi, 8)
sprintf('%d%%', 42)

%% Cell arrays
c = {1, 'two', [3 4 5]; {6}, @sin, "seven"}
class(c{1, 2})
c{2, 1}{1}
c(:, 2)
names = {'alice', 'bob', 'carol'};
lengths = cellfun(@length, names)
shouted = cellfun(@(s) [upper(s) '!'], names, 'UniformOutput', false)
[names{:}]
joined = strjoin(names, ', ')

%% String arrays
s = ["one", "two", "three"];
s(2)
s + " apples"
strlength(s)
contains(s, "o")
replace("a-b-c", "-", "+")
t = "He said ""no"" twice";
u = "it's a string";
v = 'a char vector with "double quotes"';
numbers = string(1:3)
join(numbers, "|")

%% Conversions
str2double('3.75') * 2
str2num('[1 2 3]')
int2str(7.6)
mat2str([1 2; 3 4])
char(65:70)
double('AZ')

%% Regular expressions
line = 'x = 12, y = 7, z = 100';
tokens = regexp(line, '(\w) = (\d+)', 'tokens');
for k = 1:numel(tokens)
    fprintf('%s -> %s\n', tokens{k}{1}, tokens{k}{2});
end
regexprep('hello world', '(\w+) (\w+)', '$2 $1')
