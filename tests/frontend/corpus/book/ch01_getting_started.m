%% Chapter 1: Getting started
% This script follows the first chapter. Run it section by section and
% watch the command window: statements without a semicolon print their
% result.

clear all
close all
clc

%% Numbers and variables
a = 3
b = 4.5;
c = a * b
d = a^2 + b^2
r = sqrt(d)

% Several statements on one line
x = 1; y = 2, z = x + y

%% Display formats
format long
pi
format short
pi
format long g
1/3
format compact
format

%% Text
disp 'Hello from the first chapter'
disp('It''s easy to print text.')
name = 'Ada';
fprintf('Hello, %s! You have %d new messages.\n', name, 3);
fprintf('%5.2f | %-8s | %e\n', 2.5, 'left', 12345.678);
s = "a string array";
t = "She said ""hello""";
disp(s)
disp(t)
greeting = ['Dear ' name ', welcome.']

%% Built-in constants
eps
realmax
Inf - Inf
1/0
z1 = 3 + 4i
abs(z1)
angle(z1)

%% Getting help
help sqrt
doc plot
lookfor inverse
which sin
