// The snippets that every reference pipeline runs over: each shows the
// vocabulary something (a sort of file, a construct, an edge of a question),
// and together they give most pipelines both hits and misses.

#include "tests/rulesystem/reference/reference_pipelines.hpp"

namespace plexus::testing {

std::vector<ReferenceSnippet> referenceSnippets() {
  return {
      {"ScriptWithCallsAndCommands", "script.m", R"(x = 3;
y = max(x, 4, 'omitnan');
disp(y)
hold on
format long g
z = numel(y) + size(x, 1);
(disp(z));
w = [numel(x), sum(y)]
)"},
      {"FunctionWithOutputsAndInputs", "compute.m", R"(function [total, count, varargout] = compute(values, ~, varargin)
total = sum(values);
count = numel(values);
varargout{1} = total / count;
[a, b, c] = deal(values);
[~, idx] = max(values);
d = @() disp(total);
fprintf('%d\n', a + b + c + idx);
end
)"},
      {"LocalAndNestedFunctions", "outer.m", R"(function r = outer(n)
shared = 2;
r = inner(n) + helper(n);
    function q = inner(m)
        q = m * shared;
    end
end

function h = helper(k)
h = k - 1;
end
)"},
      {"GlobalsPersistentsAndUndefined", "state.m", R"(function v = state(x)
global counter
persistent cache
if isempty(cache)
    cache = 0;
end
counter = counter + 1;
v = x + cache + unknownThing;
end
)"},
      {"RestrictedExternals", "dynamic.m", R"(function dynamic(name)
eval(['x = ' name ';']);
evalin('base', 'clear');
assignin('caller', 'y', 2);
f = str2func(name);
feval(f, 1);
load data.mat
eval = 3;
end
)"},
      {"LongAndOddIdentifiers", "names.m", R"(function names()
averyveryveryveryveryveryveryveryveryveryveryveryverylongname12345 = 1;
abcde = 2;
ABCDE = 3;
abcdef = abcde + ABCDE;
disp(averyveryveryveryveryveryveryveryveryveryveryveryverylongname12345 + abcdef);
end
)"},
      {"OperatorsOfAllSorts", "ops.m", R"(function r = ops(a, b)
r = -a + b * 2;
t = ~a & b | a && ~b || a == b;
h = @sin;
m = ?handle;
n = a.' + a' - +b;
k = a < b < 3;
if ~isempty(a) && b ~= 0
    r = r ./ b;
end
end
)"},
      {"FieldsAndDots", "fields.m", R"(function s = fields(s)
s.name = 'x';
s.Name = 'y';
s.averylongfieldname = 3;
v = s.name;
s.inner.deeper.value = v;
w = s.(v);
obj.method(1, 2);
obj.method;
pkg.sub.func(3);
end
)"},
      {"DotCallsAndMethods", "useobj.m", R"(function useobj(obj)
obj.update(1);
update(obj, 2);
x = obj.value;
obj.value = x + 1;
[p, q] = obj.pair();
r = obj.compute(x)(2);
end
)"},
      {"ControlFlow", "flow.m", R"(function r = flow(x)
r = 0;
for i = 1:x
    if i > 3
        break
    elseif i == 2
        continue
    else
        r = r + i;
    end
end
while r > 10
    r = r - 1;
end
switch x
    case 1
        r = 1;
    otherwise
        r = 2;
end
try
    error('bad');
catch err
    disp(err.message);
end
return
end
)"},
      {"ClassWithAttributes", "Account.m", R"(classdef (Sealed, Abstract = false, InferiorClasses = {?Other}) Account < handle & Base
    properties (Access = private, SetAccess = immutable, Constant)
        Balance = 0
        Owner
    end
    properties (SetAccess = protected, GetAccess = public, Description = 'text', Nontunable, Unheard)
        Limit (1,1) double {mustBePositive} = 100
    end
    methods
        function obj = Account(owner)
            obj@Base(owner);
            obj.Owner = owner;
        end
        function deposit(obj, amount)
            obj.Balance = obj.Balance + amount;
            notify(obj, 'Changed');
        end
        function v = get.Limit(obj)
            v = obj.Limit;
        end
        r = declared(obj, x)
    end
    methods (Static, Access = protected, Mystery = 3)
        function r = create(n)
            r = Account(n);
        end
    end
    events (ListenAccess = public, NotifyAccess = private)
        Changed
    end
end
)"},
      {"EnumerationClass", "Color.m", R"(classdef Color
    properties
        R
        G
    end
    methods
        function c = Color(r, g)
            c.R = r;
            c.G = g;
        end
    end
    enumeration
        Red (1, 0)
        Green (0, 1)
    end
end
)"},
      {"MethodInAtFolder", "@Account/withdraw.m", R"(function obj = withdraw(obj, amount)
if amount > obj.Balance
    error('Account:overdrawn', 'not enough');
end
obj.Balance = obj.Balance - amount;
end
)"},
      {"ConstructorInAtFolder", "@Account/Account.m", R"(function obj = Account(owner)
obj = obj@Base(owner);
obj.Owner = owner;
end
)"},
      {"FileDeepBelowAtFolder", "@Account/private/check.m", R"(function ok = check(obj)
ok = obj.Balance >= 0;
end
)"},
      {"PackageFunction", "+finance/+rates/annual.m", R"(function r = annual(p, varargin)
import finance.rates.*
import finance.tools.round2
r = round2(p * 12, varargin{:});
r = finance.rates.monthly(r) + finance.tools.round2(r);
end
)"},
      {"ArgumentsBlocks", "validated.m", R"(function out = validated(a, b, opts)
arguments
    a (1,:) double
    b {mustBeNumeric} = 0
    opts.Scale (1,1) double = 1
    opts.?matrixOptions
end
arguments (Output)
    out double
end
out = a * b * opts.Scale;
end
)"},
      {"RepeatingArguments", "repeated.m", R"(function repeated(varargin)
arguments (Repeating)
    x double
    ~
end
disp(numel(varargin));
end
)"},
      {"PrintedAndAnonymous", "printed.m", R"(function printed(x)
numel(x)
y = numel(x)
f = @(v) numel(v) + x;
g = @(v) disp(v);
cellfun(@(c) numel(c), {x});
end
)"},
      {"MultiAssignmentsAndIgnored", "multi.m", R"(function multi()
[a, ~, c] = size(ones(2, 3, 4));
[m] = max([1 2 3]);
[s.first, s.second] = deal(1, 2);
[x{1:2}] = deal(3, 4);
disp(a + c + m);
end
)"},
      {"CellsAndBraces", "cells.m", R"(function cells()
c = {1, 'two', "three"};
d = c{2};
c{end + 1} = numel(c);
e = [c{:}];
fprintf("%s\n", d);
end
)"},
      {"ScriptWithLocalFunctions", "scriptlocal.m", R"(total = addOne(1);
disp(total)
printResult total

function r = addOne(x)
r = x + 1;
end

function printResult(name)
fprintf('%s\n', name);
end
)"},
      {"SuperclassMethodCalls", "Derived.m", R"(classdef Derived < Base & mixinOne
    methods
        function obj = Derived(x)
            obj = obj@Base(x);
            obj@mixinOne();
        end
        function show(obj)
            show@Base(obj);
            h = @(o) helper@Base(o);
        end
    end
end
)"},
      {"NestedCallsAndIndexes", "nested.m", R"(function r = nested(data)
r = max(min(data(1:end), [], 2), abs(data(end)));
q = data(2, 3);
t = size(data, ndims(data));
u = cat(1, data{:});
end
)"},
      {"CommandSyntaxForms", "commands.m", R"(function commands()
warning off all
hold on
axis equal tight
clear x
close all
end
)"},
      {"SpmdParforAndImports", "parallel.m", R"(function total = parallel(n)
total = 0;
parfor i = 1:n
    total = total + compute(i);
end
spmd
    x = labindex;
end
end
)"},
      {"EmptyFunction", "empty.m", R"(function empty
end
)"},
      {"ClassAndMethodLabels", "LedgerTest.m", R"(classdef (TestTags = {'unit'}) LedgerTest < handle
    methods (ParameterCombination = 'pairwise', Static)
        function r = check(a, b, varargin)
            r = a + b;
        end
    end
end
)"},
      {"OutputReadButNeverAssigned", "unset.m", R"(function [y, z] = unset(x)
disp(y);
z = x;
end
)"},
  };
}

}  // namespace plexus::testing
