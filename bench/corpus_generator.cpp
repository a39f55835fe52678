#include "bench/corpus_generator.hpp"

#include <array>
#include <cstdio>
#include <span>
#include <string_view>
#include <utility>

#include "tests/support/seeded_random.hpp"

namespace plexus::bench {
namespace {

using Pool = std::span<char const* const>;

using Random = plexus::testing::SeededRandom;

// ---------------------------------------------------------------------------
// Words

constexpr char const* kStems[] = {
    "signal", "sample", "weight", "value",  "state",  "buffer", "lattice", "mesh",    "node",    "edge",
    "point",  "vec",    "filter", "kernel", "window", "offset", "scale",  "limit",   "count",   "index",
    "result", "data",   "param",  "coeff",  "gain",   "phase",  "freq",   "time",    "step",    "err",
    "resid",  "model",  "option", "config", "label",  "record", "item",   "entry",   "table",   "image",
    "pixel",  "chan",   "frame",  "block",  "seg",    "track",  "path",   "angle",   "radius",  "height",
    "width",  "depth",  "mass",   "force",  "speed",  "accel",  "temp",   "press",   "volt",    "current",
    "demand", "cost",   "score",  "rank",   "level",  "mode",   "flag",   "mask",    "center",  "bound",
    "row",    "col",    "lambda", "sigma",  "mu",     "alpha",  "beta",   "gamma",   "theta",   "omega",
};
constexpr char const* kSuffixes[] = {"",    "",    "",    "",    "s",   "1",   "2",   "Tmp", "Out", "In",  "Max",
                                     "Min", "Idx", "New", "Old", "Sum", "Avg", "Est", "Ref", "Vec", "Mat", "Len"};
constexpr char const* kVerbs[] = {
    "compute", "estimate", "update",    "build",  "read",     "apply",   "filter",  "normalize", "resample",
    "project", "solve",    "evaluate",  "interp", "integrate", "smooth", "detect",  "find",      "merge",
    "split",   "convert",  "parse",     "check",  "render",   "plot",    "export",  "fit",       "predict",
    "train",   "score",    "rank",      "sort",   "group",    "align",   "scale",   "clip",      "pad",
    "crop",    "rotate",   "transform", "encode", "decode",   "pack",    "unpack",  "collect",   "summarize",
};
constexpr char const* kNouns[] = {
    "Signal", "Filter",   "Sensor", "Model",  "Solver",  "Mesh",   "Node",      "Graph",   "Tracker", "Buffer",
    "Channel", "Device",  "Logger", "Engine", "Dataset", "Layer",  "Network",   "Plotter", "Report",  "Matrix",
    "Spectrum", "Window", "Kernel", "Image",  "Frame",   "Path",   "Trajectory", "Scene",  "Camera",  "Motor",
    "Battery", "Sample",  "Record", "Queue",  "Cache",   "Config", "Profile",   "Session", "Task",    "Job",
};
constexpr char const* kClassSuffixes[] = {"", "", "", "Base", "Impl", "Manager", "Set", "View", "Store", "Info"};
constexpr char const* kPackages[] = {"dsp", "io", "util", "core", "viz", "stats", "geom", "ctrl", "sim", "app"};
constexpr char const* kWords[] = {
    "the",     "value",    "of",      "each",     "sample",  "is",      "scaled",   "by",      "a",       "factor",
    "so",      "that",     "sum",     "matches",  "input",   "result",  "returned", "as",      "column",  "vector",
    "when",    "empty",    "default", "used",     "instead", "computes", "estimate", "from",   "data",    "points",
    "uses",    "method",   "with",    "fixed",    "step",    "size",    "and",      "checks",  "limits",  "before",
    "writing", "output",   "rows",    "columns",  "matrix",  "order",   "fast",     "path",    "for",     "small",
    "inputs",  "tolerance", "loop",   "over",     "all",     "entries", "keeps",    "track",   "best",    "fit",
};
constexpr char const* kFields[] = {"Name",  "Value", "Size",  "Type",  "Count",  "Offset", "Scale", "Limits",
                                   "Data",  "Mode",  "Units", "Label", "Weight", "Enabled", "Order", "Rate",
                                   "Start", "Stop",  "Step",  "Tol",   "Color",  "Style",  "Id",    "Tag"};
constexpr char const* kNumbers[] = {"0.5", "1e-3", "2.5", "10",  "0.25", "3",   "1.5e2", ".75", "100",  "1e-6",
                                    "0.01", "2",   "4",   "0.1", "1e3",  "pi",  "0.9",   "12",  "2.0",  "1.5E-4",
                                    "360",  "0.05", "8",  "64",  "1024", "1.",  "0.001", "5",   "1e-9", "eps"};
constexpr char const* kClasses[] = {"double", "single", "char", "string", "logical", "uint8", "int32", "cell", "struct"};
constexpr char const* kValidators[] = {"mustBePositive", "mustBeNonnegative", "mustBeFinite", "mustBeInteger",
                                       "mustBeNumeric",  "mustBeReal",        "mustBeNonempty"};

// ---------------------------------------------------------------------------
// Snippets. Placeholders: $A to $E are variable names and $F, $G function
// names, fixed within one snippet; $N (2 to 9), $M (10 to 500), $X and $Y
// (numbers), $S (a word), $T (a field name) and $W (a few words) are drawn
// afresh at each use. Four blanks at the start of a line are one indent.

// Statements for function bodies and scripts alike.
constexpr char const* kBodySnippets[] = {
    R"($A = zeros($N, $M);
for k = 1:$N
    $A(k, :) = $B(k) * linspace(0, $X, $M);
end)",
    R"($A = 1./(1 + exp(-$B));
$C = $A.^2 - 2*$A.*$B + $B.^2;)",
    R"(% Normalise the columns so that each sums to one.
$A = $B ./ sum($B, 1);
$A($A < $X) = 0;)",
    R"([~, $A] = max(abs($B(:)));
[$C, $D] = ind2sub(size($B), $A);)",
    R"(switch lower($A)
    case '$S'
        $B = $X;
    case {'$S', '$S'}
        $B = $Y;
    otherwise
        error('$F:unknownMode', 'Unknown mode ''%s''.', $A);
end)",
    R"(try
    $A = $F($B, $C);
catch err
    warning('$F:failed', 'Falling back: %s', err.message);
    $A = [];
end)",
    R"($A = struct('$T', $X, ...
            '$T', zeros(1, $N), ...
            '$T', '$S');)",
    R"($A = cellfun(@(x) x * $X, $B, 'UniformOutput', false);
$C = cellfun(@numel, $A);)",
    R"(fprintf('%s: %d of %d done (%.1f%%)\n', '$S', $A, $B, 100*$A/$B);)",
    R"(if any(~isfinite($A(:)))
    error('$F:nonFinite', ...
        'Input contains %d non-finite values.', nnz(~isfinite($A)));
end)",
    R"($A = $B' * $C;
$D = ($A + $A.') / 2;)",
    R"($A(end+1) = $B(end) + $X;
$C = $A(2:end) - $A(1:end-1);)",
    R"(k = 0;
while k < $M
    k = k + 1;
    $A = $A - $X * $B(mod(k - 1, numel($B)) + 1);
    if abs($A) < $Y
        break
    end
end)",
    R"($A = @(t, y) [y(2); -$X*y(1) - $Y*y(2)];
$B = $A(0, [1; 0]);)",
    R"($A = {'$S', '$S', '$S'};
$B = strjoin(upper($A), ', ');)",
    R"(for $A = 1:numel($B)
    if $B($A) > $X, continue, end
    $C = $C + $B($A)^2;
end)",
    R"($A = [$B(:); $C(:)];
$D = reshape($A, [], 2).';)",
    R"($A = sprintf('It''s %d o''clock', $N);
$B = "Value of ""$S"" is " + string($X);)",
    R"($A.$T = $X;
$A.$T = [$N $N $N];
$A.('$S') = '$S';)",
    R"($A = regexp($B, '(\w+)=(\d+)', 'tokens');
for k = 1:numel($A)
    $C.($A{k}{1}) = str2double($A{k}{2});
end)",
    R"(%{
$W
    $W
%}
$A = $B;)",
    R"($A = [$X, $Y, $X; ...
      $Y, $X, $Y; ... $W
      $X, $Y, $X];)",
    R"($A = $B;  % $W
$A(isnan($A)) = mean($A(~isnan($A)));)",
    R"([$A, $B] = meshgrid(linspace(-$N, $N, $M));
$C = exp(-($A.^2 + $B.^2) / $X);)",
    R"($A = arrayfun(@(k) $F(k, $B), 1:$N);)",
    R"(if isstruct($A) && isfield($A, '$T')
    $B = $A.$T;
elseif iscell($A)
    $B = $A{1};
else
    $B = $A;
end)",
    R"($A = mat2str(round($B * 100) / 100);
disp(['Result: ' $A]);)",
    R"(fid = fopen('$S.txt', 'w');
cleanup = onCleanup(@() fclose(fid));
fprintf(fid, '%g\t%g\n', [$A(:) $B(:)].');)",
    R"($A = $B - mean($B);
$C = $A' * $A / (size($A, 1) - 1);
[$D, $E] = eig($C);)",
    R"($A = bitand(uint32($B), 0xFFu32);
$C = bitshift($A, -$N) + 0b101u32;)",
    R"($A = $B(:, [1 end]);
$C = [$A, -$D; -$D, $A];)",
    R"($A = [$B - $C, $C - $B, $B -$C];)",
    R"(if $A > $X, $B = $A; else, $B = $X; end)",
    R"($A = num2cell($B);
[$A{:}] = deal(0);)",
    R"($A = ~any($B > $X, 2) & all($C, 2);
$D = find($A, 1, 'first');)",
    R"($A = $B(end:-1:1, :)';)",
    R"($A = $X * eye($N) + diag(ones($N - 1, 1), 1) ...
    + diag(ones($N - 1, 1), -1);
$B = $A \ ones($N, 1);)",
    R"(% $W
$A = interp1($B, $C, linspace(min($B), max($B), $M), 'linear', 'extrap');)",
    R"($A = optimset('TolX', $X, ...
              'MaxIter', $M, ...
              'Display', 'off');
[$B, $C] = fminsearch(@(p) sum(($D - p(1)*exp(-p(2)*$E)).^2), [1 $X], $A);)",
    R"($A = $F($B, Tolerance=$X, MaxIterations=$M);)",
    R"($A = ["$S", "$S"; "$S", "$S"];
$B = join($A, "-");)",
    R"($A = $B.';
$C = [$A' $B'];)",
    R"($A = -$B.^2 + 2^-$N;
$C = abs($X + $Ni) * exp(1j*$Y);)",
    R"(for $A = $B'
    $C = $C + $A.' * $A;
end)",
    R"(if ~exist('$A', 'var') || isempty($A)
    $A = $F();
end)",
    R"($A = containers.Map();
$A('$S') = $X;
$A('$S') = {$N, '$S'};
$B = keys($A);)",
    R"($A = sortrows([$B(:), $C(:)], -2);
$D = $A(1:min($N, end), :);)",
    R"($A = accumarray($B(:), $C(:), [], @mean);)",
    R"($A = min(max($B, -$X), $X);  % clip to the range)",
    R"($A = cumsum($B, 2) ./ (1:size($B, 2));)",
    R"(while true
    [$A, $B] = $F($A);
    if $B < $X || ~isfinite($B), break; end
end)",
};

// Statements that only make sense inside a function.
constexpr char const* kFunctionSnippets[] = {
    R"(persistent cache
if isempty(cache)
    cache = containers.Map('KeyType', 'char', 'ValueType', 'any');
end)",
    R"(if nargin < $N || isempty($A)
    $A = $X;
end)",
    R"(narginchk(1, $N);
if nargout > 1
    varargout{1} = $A;
end)",
    R"(if isempty($A)
    return;
end)",
    R"(validateattributes($A, {'numeric'}, {'nonempty', 'finite'}, mfilename, '$S', 1);)",
    R"(global $B
if isempty($B), $B = $X; end)",
};

// Statements of scripts: commands, printing statements, plots.
constexpr char const* kScriptSnippets[] = {
    R"($A = $X
$B = $A * $N)",
    R"($A = [1 2 3; 4 5 6]
size($A)
$A')",
    R"(disp '$W'
fprintf('The value is %d\n', $N);)",
    R"(hold on
plot($A, $B, 'LineWidth', $N, ...
    'Color', [0.2 0.4 0.6], ...
    'DisplayName', '$S');
hold off)",
    R"(figure('Name', '$W', 'NumberTitle', 'off');
plot($A, $B, 'o-', MarkerSize=$N)
xlabel('$S'), ylabel('$S')
title(sprintf('$S (n = %d)', numel($A)))
grid on
axis tight)",
    R"(format long g
$A = pi * $X
format short)",
    R"(load $S.mat $A $B
whos $A $B)",
    R"(save $S.mat $A $B
clear $A $B)",
    R"(warning off all
$A = str2double('$N.5')
warning on all)",
    R"($A
$B = numel($A))",
    R"(close all
clc)",
    R"(fprintf('%-10s %8.3f\n', '$S', $X);
fprintf('%-10s %8.3f\n', '$S', $Y);)",
    R"(!echo $W)",
    R"($A = input('Enter a value: ');
if isempty($A), $A = $N; end)",
    R"(subplot(2, 1, 1)
plot($A)
subplot(2, 1, 2)
histogram($A, $M)
drawnow)",
};

// ---------------------------------------------------------------------------
// Filling and writing

/// The text of one file, line by line, at an indentation depth.
class Writer {
 public:
  explicit Writer(std::string indentUnit) : unit_(std::move(indentUnit)) {}

  void line(std::string_view text) {
    if (!text.empty()) {
      for (int i = 0; i < depth_; ++i) out_ += unit_;
      out_ += text;
    }
    out_ += '\n';
  }
  void blank() { out_ += '\n'; }
  void open() { ++depth_; }
  void close() { --depth_; }

  /// Writes a filled snippet: each leading group of four blanks is one indent.
  void block(std::string_view text) {
    while (!text.empty()) {
      std::size_t const end = text.find('\n');
      std::string_view row = text.substr(0, end);
      text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
      int extra = 0;
      while (row.starts_with("    ")) {
        row.remove_prefix(4);
        ++extra;
      }
      depth_ += extra;
      line(row);
      depth_ -= extra;
    }
  }

  std::string take() { return std::move(out_); }
  std::size_t size() const noexcept { return out_.size(); }

 private:
  std::string unit_;
  std::string out_;
  int depth_ = 0;
};

std::string capitalised(std::string text) {
  if (!text.empty() && text[0] >= 'a' && text[0] <= 'z') text[0] = static_cast<char>(text[0] - 'a' + 'A');
  return text;
}

std::string upper(std::string text) {
  for (char& c : text) {
    if (c >= 'a' && c <= 'z') c = static_cast<char>(c - 'a' + 'A');
  }
  return text;
}

class Generator {
 public:
  explicit Generator(std::uint64_t seed) : random_(seed) {}

  GeneratedFile nextFile();
  std::string longFunctionFile(std::size_t minimumBytes);

 private:
  // Names and values.
  std::string variable() { return std::string(random_.pick(kStems)) + random_.pick(kSuffixes); }
  std::string functionName() { return std::string(random_.pick(kVerbs)) + capitalised(random_.pick(kStems)); }
  std::string className() { return std::string(random_.pick(kNouns)) + random_.pick(kClassSuffixes); }
  std::string package() { return random_.pick(kPackages); }
  std::string number() {
    if (random_.chance(0.5)) return random_.pick(kNumbers);
    char text[32];
    std::snprintf(text, sizeof text, "%d.%d", random_.between(0, 99), random_.between(0, 999));
    return text;
  }
  std::string words(int low, int high) {
    std::string text;
    int const count = random_.between(low, high);
    for (int i = 0; i < count; ++i) {
      if (i > 0) text += ' ';
      text += random_.pick(kWords);
    }
    return text;
  }
  std::string sentence() { return capitalised(words(4, 11)) + '.'; }
  std::string fill(std::string_view snippet);
  void snippets(Writer& out, Pool pool, int count, Pool extra = {});

  // Files.
  std::string functionHeader(std::string const& name, std::vector<std::string> const& inputs,
                             std::vector<std::string> const& outputs);
  void helpText(Writer& out, std::string const& name);
  void functionFile(Writer& out, std::string const& name);
  void function(Writer& out, std::string const& name, bool terminated, bool main);
  void argumentsBlock(Writer& out, std::vector<std::string>& inputs);
  void classFile(Writer& out, std::string const& name);
  void enumerationFile(Writer& out, std::string const& name);
  void scriptFile(Writer& out);
  void guiFile(Writer& out, std::string const& name);
  void parallelFile(Writer& out, std::string const& name);
  void codegenFile(Writer& out, std::string const& name);
  void tableFile(Writer& out, std::string const& name);

  Random random_;
  std::size_t serial_ = 0;
};

std::string Generator::fill(std::string_view snippet) {
  std::array<std::string, 5> vars;
  for (std::size_t i = 0; i < vars.size(); ++i) {
    bool distinct = false;
    while (!distinct) {
      vars[i] = variable();
      distinct = true;
      for (std::size_t j = 0; j < i; ++j) distinct = distinct && vars[j] != vars[i];
    }
  }
  std::string const f = functionName();
  std::string const g = functionName();

  std::string text;
  text.reserve(snippet.size() + 64);
  for (std::size_t i = 0; i < snippet.size(); ++i) {
    char const c = snippet[i];
    if (c != '$' || i + 1 == snippet.size()) {
      text += c;
      continue;
    }
    char const key = snippet[++i];
    switch (key) {
      case 'A': case 'B': case 'C': case 'D': case 'E': text += vars[static_cast<std::size_t>(key - 'A')]; break;
      case 'F': text += f; break;
      case 'G': text += g; break;
      case 'N': text += std::to_string(random_.between(2, 9)); break;
      case 'M': text += std::to_string(random_.between(10, 500)); break;
      case 'X': case 'Y': text += number(); break;
      case 'S': text += random_.pick(kWords); break;
      case 'T': text += random_.pick(kFields); break;
      case 'W': text += words(3, 9); break;
      default: text += '$'; text += key; break;
    }
  }
  return text;
}

void Generator::snippets(Writer& out, Pool pool, int count, Pool extra) {
  for (int i = 0; i < count; ++i) {
    Pool const from = !extra.empty() && random_.chance(0.15) ? extra : pool;
    out.block(fill(random_.pick(from)));
    if (random_.chance(0.4)) out.blank();
    if (random_.chance(0.1)) out.line("% " + sentence());
  }
}

std::string Generator::functionHeader(std::string const& name, std::vector<std::string> const& inputs,
                                      std::vector<std::string> const& outputs) {
  std::string header = "function ";
  if (outputs.size() == 1) {
    header += outputs[0] + " = ";
  } else if (outputs.size() > 1) {
    header += '[';
    for (std::size_t i = 0; i < outputs.size(); ++i) header += (i > 0 ? ", " : "") + outputs[i];
    header += "] = ";
  }
  header += name;
  if (!inputs.empty() || random_.chance(0.5)) {
    header += '(';
    for (std::size_t i = 0; i < inputs.size(); ++i) {
      // A long list breaks over a continuation line now and then.
      if (i > 0) header += (i % 3 == 0 && random_.chance(0.5)) ? ", ...\n        " : ", ";
      header += inputs[i];
    }
    header += ')';
  }
  return header;
}

void Generator::helpText(Writer& out, std::string const& name) {
  out.line("%" + upper(name) + " " + sentence());
  int const lines = random_.between(0, 5);
  for (int i = 0; i < lines; ++i) out.line("%   " + sentence());
  if (random_.chance(0.4)) {
    out.line("%");
    out.line("%   Example:");
    out.line("%       r = " + name + "(" + variable() + ", " + number() + ");");
  }
  if (random_.chance(0.3)) {
    out.line("%");
    out.line("%   See also " + upper(functionName()) + ", " + upper(functionName()) + ".");
  }
}

void Generator::argumentsBlock(Writer& out, std::vector<std::string>& inputs) {
  out.line(random_.chance(0.2) ? "arguments (Input)" : "arguments");
  out.open();
  for (auto const& input : inputs) {
    std::string entry = input;
    if (random_.chance(0.7)) entry += random_.chance(0.5) ? " (1,1)" : (random_.chance(0.5) ? " (1,:)" : " (:,:)");
    if (random_.chance(0.8)) entry += std::string(" ") + random_.pick(kClasses);
    if (random_.chance(0.4)) entry += std::string(" {") + random_.pick(kValidators) + "}";
    out.line(entry);
  }
  if (random_.chance(0.6)) {
    inputs.push_back("opts");
    int const count = random_.between(1, 4);
    for (int i = 0; i < count; ++i) {
      out.line("opts." + std::string(random_.pick(kFields)) + std::to_string(i) + " (1,1) double {" +
               random_.pick(kValidators) + "} = " + number());
    }
    if (random_.chance(0.3)) out.line("opts.Verbose (1,1) logical = false  % print progress");
  }
  out.close();
  out.line("end");
}

void Generator::function(Writer& out, std::string const& name, bool terminated, bool main) {
  std::vector<std::string> inputs;
  int const inputCount = random_.between(0, 5);
  for (int i = 0; i < inputCount; ++i) inputs.push_back(variable() + std::to_string(i));
  std::vector<std::string> outputs;
  int const outputCount = random_.between(0, 3);
  for (int i = 0; i < outputCount; ++i) outputs.push_back(variable() + "Out" + std::to_string(i));

  bool const arguments = terminated && main && inputCount > 0 && random_.chance(0.3);
  bool const varargs = !arguments && random_.chance(0.15);
  if (varargs) inputs.push_back("varargin");

  // The header is written after the arguments block decides on `opts`.
  Writer body(std::string(4, ' '));
  if (arguments) argumentsBlock(body, inputs);
  out.line(functionHeader(name, inputs, outputs));
  if (terminated) out.open();
  if (main || random_.chance(0.5)) helpText(out, name);
  out.block(body.take());

  int const statements = main ? random_.between(2, 22) : random_.between(1, 8);
  snippets(out, kBodySnippets, statements, kFunctionSnippets);
  for (auto const& output : outputs) out.line(output + " = " + variable() + ";");

  if (terminated && random_.chance(0.2)) {
    int const nested = random_.between(1, 3);
    for (int i = 0; i < nested; ++i) {
      out.blank();
      function(out, functionName(), true, false);
    }
  }
  if (terminated) {
    out.close();
    out.line(random_.chance(0.2) ? "end % " + name : "end");
  }
}

void Generator::functionFile(Writer& out, std::string const& name) {
  bool const terminated = random_.chance(0.6);
  if (random_.chance(0.15)) {
    out.line("% Copyright " + std::to_string(random_.between(1995, 2024)) + " " + words(2, 4));
    out.blank();
  }
  function(out, name, terminated, true);
  int const locals = random_.between(0, 3);
  for (int i = 0; i < locals; ++i) {
    out.blank();
    function(out, functionName(), terminated, false);
  }
}

void Generator::classFile(Writer& out, std::string const& name) {
  bool const handle = random_.chance(0.6);
  bool const abstract = random_.chance(0.15);
  std::string base;
  if (random_.chance(0.45)) base = package() + "." + className();
  std::string header = "classdef ";
  if (abstract) {
    header += "(Abstract) ";
  } else if (random_.chance(0.2)) {
    header += random_.chance(0.5) ? "(Sealed) " : "(Sealed, Hidden = false) ";
  }
  header += name;
  if (!base.empty() && handle) {
    header += " < " + base + " & handle";
  } else if (!base.empty()) {
    header += " < " + base;
  } else if (handle) {
    header += " < handle";
  }
  out.line(header);
  out.open();
  out.line("%" + upper(name) + " " + sentence());
  int const helpLines = random_.between(0, 4);
  for (int i = 0; i < helpLines; ++i) out.line("%   " + sentence());
  out.blank();

  // Properties, some with validation.
  std::vector<std::string> properties;
  int const blocks = random_.between(1, 3);
  for (int b = 0; b < blocks; ++b) {
    static constexpr char const* kAttributes[] = {"",
                                                  " (Access = private)",
                                                  " (SetAccess = protected)",
                                                  " (Constant)",
                                                  " (Hidden, Transient)",
                                                  " (SetAccess = private, GetAccess = public)",
                                                  " (SetObservable, AbortSet)"};
    std::string const attributes = random_.pick(kAttributes);
    out.line("properties" + attributes);
    out.open();
    int const count = random_.between(1, 8);
    for (int i = 0; i < count; ++i) {
      std::string const property = std::string(random_.pick(kFields)) + capitalised(random_.pick(kStems));
      properties.push_back(property);
      std::string entry = property;
      if (random_.chance(0.5)) {
        entry += random_.chance(0.5) ? " (1,1) double" : " (1,:) double";
        if (random_.chance(0.5)) entry += std::string(" {") + random_.pick(kValidators) + "}";
        entry += " = " + number();
      } else if (random_.chance(0.3)) {
        entry += " = [" + number() + " " + number() + "; ...\n" + "        " + number() + " " + number() + "]";
      } else if (random_.chance(0.3)) {
        entry += " = '" + words(1, 3) + "'";
      } else if (attributes == " (Constant)") {
        entry += " = " + number();
      }
      if (random_.chance(0.3)) entry += "  % " + words(2, 6);
      out.block(entry);
    }
    out.close();
    out.line("end");
    out.blank();
  }
  if (random_.chance(0.4)) {
    out.line("properties (Dependent)");
    out.open();
    out.line("Derived" + capitalised(random_.pick(kStems)));
    out.close();
    out.line("end");
    out.blank();
  }
  if (handle && random_.chance(0.5)) {
    out.line(random_.chance(0.3) ? "events (ListenAccess = public, NotifyAccess = protected)" : "events");
    out.open();
    int const count = random_.between(1, 4);
    for (int i = 0; i < count; ++i) out.line(std::string(random_.pick(kFields)) + "Changed");
    out.close();
    out.line("end");
    out.blank();
  }

  // Methods: the constructor, accessors, ordinary methods.
  out.line("methods");
  out.open();
  {
    std::string const arg = variable();
    out.line("function obj = " + name + "(" + arg + ", varargin)");
    out.open();
    if (!base.empty()) out.line("obj@" + base + "(varargin{:});");
    out.line("if nargin > 0");
    out.open();
    out.line("obj." + properties[random_.below(properties.size())] + " = " + arg + ";");
    out.close();
    out.line("end");
    snippets(out, kBodySnippets, random_.between(0, 3));
    out.close();
    out.line("end");
    out.blank();
  }
  std::string const accessed = properties[random_.below(properties.size())];
  if (random_.chance(0.5)) {
    out.line("function value = get." + accessed + "(obj)");
    out.open();
    out.line("value = obj." + accessed + ";");
    out.close();
    out.line("end");
    out.blank();
  }
  if (random_.chance(0.5)) {
    out.line(handle ? "function set." + accessed + "(obj, value)" : "function obj = set." + accessed + "(obj, value)");
    out.open();
    out.line("validateattributes(value, {'numeric', 'char'}, {});");
    out.line("obj." + accessed + " = value;");
    out.close();
    out.line("end");
    out.blank();
  }
  int const methods = random_.between(1, 7);
  for (int i = 0; i < methods; ++i) {
    std::string const method = functionName();
    std::string const arg = variable();
    out.line(handle ? "function " + method + "(obj, " + arg + ")"
                    : "function obj = " + method + "(obj, " + arg + ")");
    out.open();
    snippets(out, kBodySnippets, random_.between(1, 6));
    out.line("obj." + properties[random_.below(properties.size())] + " = " + arg + ";");
    if (handle && random_.chance(0.3)) out.line("notify(obj, '" + std::string(random_.pick(kFields)) + "Changed');");
    out.close();
    out.line("end");
    if (i + 1 < methods) out.blank();
  }
  // Signatures of methods that live in files of their own.
  if (random_.chance(0.3)) {
    out.blank();
    out.line("% Defined in separate files.");
    out.line("r = " + functionName() + "(obj, " + variable() + ")");
    out.line(functionName() + "(obj)");
  }
  out.close();
  out.line("end");

  if (random_.chance(0.4)) {
    out.blank();
    out.line(random_.chance(0.5) ? "methods (Static)" : "methods (Static, Access = protected)");
    out.open();
    std::string const method = functionName();
    out.line("function obj = " + method + "(" + variable() + ")");
    out.open();
    snippets(out, kBodySnippets, random_.between(1, 4));
    out.line("obj = " + name + "();");
    out.close();
    out.line("end");
    out.close();
    out.line("end");
  }
  if (abstract) {
    out.blank();
    out.line("methods (Abstract)");
    out.open();
    int const count = random_.between(1, 4);
    for (int i = 0; i < count; ++i) out.line("r = " + functionName() + "(obj, " + variable() + ")");
    out.close();
    out.line("end");
  }
  out.close();
  out.line("end");

  if (random_.chance(0.25)) {
    out.blank();
    function(out, functionName(), true, false);
  }
}

void Generator::enumerationFile(Writer& out, std::string const& name) {
  // Plain members, members built by a constructor, or members of an integer
  // class with their values.
  std::size_t const variant = random_.below(3);
  out.line(variant == 2 ? "classdef " + name + " < int32" : "classdef " + name);
  out.open();
  out.line("%" + upper(name) + " " + sentence());
  if (variant == 1) {
    out.line("properties (SetAccess = immutable)");
    out.open();
    out.line("Factor");
    out.line("Label");
    out.close();
    out.line("end");
    out.blank();
  }
  out.line("enumeration");
  out.open();
  int const count = random_.between(2, 12);
  for (int i = 0; i < count; ++i) {
    std::string entry = std::string(random_.pick(kNouns)) + std::to_string(i);
    if (variant == 1) entry += " (" + number() + ", '" + std::string(random_.pick(kWords)) + "')";
    if (variant == 2) entry += " (" + std::to_string(i * random_.between(1, 4)) + ")";
    if (random_.chance(0.2)) entry += "  % " + words(2, 5);
    out.line(entry);
  }
  out.close();
  out.line("end");
  if (variant == 1) {
    out.blank();
    out.line("methods");
    out.open();
    out.line("function obj = " + name + "(factor, label)");
    out.open();
    out.line("obj.Factor = factor;");
    out.line("obj.Label = label;");
    out.close();
    out.line("end");
    out.close();
    out.line("end");
  }
  out.close();
  out.line("end");
}

void Generator::scriptFile(Writer& out) {
  out.line("%% " + capitalised(words(2, 6)));
  out.line("% " + sentence());
  static constexpr char const* kOpenings[] = {"clear all", "close all", "clc", "clear; clc", "clear variables",
                                              "format compact"};
  int const openings = random_.between(0, 3);
  for (int i = 0; i < openings; ++i) out.line(random_.pick(kOpenings));
  out.blank();
  int const sections = random_.between(2, 10);
  for (int s = 0; s < sections; ++s) {
    out.line("%% " + capitalised(words(1, 5)));
    if (random_.chance(0.5)) out.line("% " + sentence());
    snippets(out, kBodySnippets, random_.between(1, 5), kScriptSnippets);
    int const printed = random_.between(0, 3);
    for (int i = 0; i < printed; ++i) out.block(fill(random_.pick(kScriptSnippets)));
    out.blank();
  }
  if (random_.chance(0.25)) {
    out.line("%% Local functions");
    function(out, functionName(), true, false);
  }
}

void Generator::guiFile(Writer& out, std::string const& name) {
  out.line("function fig = " + name + "(" + variable() + ")");
  out.open();
  helpText(out, name);
  out.blank();
  out.line("state = struct('count', 0, 'selected', 1, 'items', {{}});");
  out.line("fig = figure('Name', '" + words(1, 3) + "', ...");
  out.line("    'NumberTitle', 'off', ...");
  out.line("    'MenuBar', 'none', ...");
  out.line("    'Position', [" + std::to_string(random_.between(50, 400)) + " " +
           std::to_string(random_.between(50, 400)) + " 640 480], ...");
  out.line("    'CloseRequestFcn', @onClose);");
  std::vector<std::string> callbacks;
  int const controls = random_.between(2, 8);
  for (int i = 0; i < controls; ++i) {
    static constexpr char const* kStyles[] = {"pushbutton", "edit", "checkbox", "popupmenu", "slider", "listbox"};
    std::string const handleName = "h" + capitalised(random_.pick(kStems)) + std::to_string(i);
    std::string const callback = "on" + capitalised(random_.pick(kVerbs)) + std::to_string(i);
    callbacks.push_back(callback);
    out.line(handleName + " = uicontrol(fig, 'Style', '" + random_.pick(kStyles) + "', ...");
    out.line("    'String', '" + capitalised(random_.pick(kWords)) + "', ...");
    out.line("    'Units', 'normalized', ...");
    out.line("    'Position', [0.05 " + std::to_string(i) + "/10 0.3 0.08], ...");
    out.line("    'FontSize', " + std::to_string(random_.between(8, 14)) + ");");
    switch (random_.below(3)) {
      case 0: out.line("set(" + handleName + ", 'Callback', @(src, evt) " + callback + "(src, evt));"); break;
      case 1: out.line("set(" + handleName + ", 'Callback', @" + callback + ");"); break;
      default: out.line("set(" + handleName + ", 'Callback', {@" + callback + ", " + std::to_string(i) + "});"); break;
    }
  }
  out.line("ax = axes('Parent', fig, 'Position', [0.45 0.1 0.5 0.8]);");
  out.line("refresh();");
  for (std::size_t i = 0; i < callbacks.size(); ++i) {
    out.blank();
    out.line("function " + callbacks[i] + "(src, ~, varargin)");
    out.open();
    out.line("state.count = state.count + 1;");
    out.line("state.items{end+1} = get(src, 'String');");
    snippets(out, kBodySnippets, random_.between(0, 3));
    out.line("refresh();");
    out.close();
    out.line("end");
  }
  out.blank();
  out.line("function refresh()");
  out.open();
  out.line("cla(ax);");
  out.line("plot(ax, 1:state.count, (1:state.count).^2, '.-');");
  out.line("title(ax, sprintf('%d events', state.count));");
  out.close();
  out.line("end");
  out.blank();
  out.line("function onClose(src, ~)");
  out.open();
  out.line("if state.count > 0");
  out.open();
  out.line("fprintf('%d events handled\\n', state.count);");
  out.close();
  out.line("end");
  out.line("delete(src);");
  out.close();
  out.line("end");
  out.close();
  out.line("end");
}

void Generator::parallelFile(Writer& out, std::string const& name) {
  std::string const data = variable();
  std::string const result = variable() + "Out";
  out.line("function " + result + " = " + name + "(" + data + ", nWorkers)");
  out.open();
  helpText(out, name);
  out.line("n = numel(" + data + ");");
  out.line(result + " = zeros(size(" + data + "));");
  switch (random_.below(3)) {
    case 0: out.line("parfor k = 1:n"); break;
    case 1: out.line("parfor (k = 1:n, nWorkers)"); break;
    default:
      out.line("opts = parforOptions(gcp, 'RangePartitionMethod', 'fixed', 'SubrangeSize', " +
               std::to_string(random_.between(2, 64)) + ");");
      out.line("parfor (k = 1:n, opts)");
      break;
  }
  out.open();
  out.line("x = " + data + "(k);");
  snippets(out, kBodySnippets, random_.between(1, 4));
  out.line(result + "(k) = x^2;");
  out.close();
  out.line("end");
  if (random_.chance(0.5)) {
    out.line(random_.chance(0.5) ? "spmd" : "spmd (" + std::to_string(random_.between(2, 8)) + ")");
    out.open();
    out.line("part = " + result + "(spmdIndex:spmdSize:end);");
    out.line("total = spmdPlus(sum(part));");
    out.close();
    out.line("end");
    out.line(result + "(1) = total{1};");
  }
  out.close();
  out.line("end");
}

void Generator::codegenFile(Writer& out, std::string const& name) {
  bool const directiveFirst = random_.chance(0.3);
  if (directiveFirst) out.line("%#codegen");
  out.line("function y = " + name + "(x, n)" + (directiveFirst ? "" : " %#codegen"));
  out.line("%" + upper(name) + " " + sentence());
  out.line("assert(isa(x, 'double'));");
  out.line("y = zeros(size(x));");
  out.line("acc = 0;");
  out.line("for k = 1:numel(x)");
  out.open();
  out.line("acc = acc * " + number() + " + x(k);");
  out.line("if acc > n, acc = n; elseif acc < -n, acc = -n; end");
  out.line("y(k) = acc;");
  out.close();
  out.line("end");
  snippets(out, kBodySnippets, random_.between(0, 4));
}

void Generator::tableFile(Writer& out, std::string const& name) {
  out.line("function T = " + name + "()");
  out.line("%" + upper(name) + " Coefficient table, " + words(3, 6) + ".");
  out.line("% Generated from measurements; do not edit by hand.");
  int const rows = random_.between(8, 80);
  int const columns = random_.between(3, 10);
  out.line("T = [");
  for (int r = 0; r < rows; ++r) {
    std::string row = "    ";
    bool continued = false;
    for (int c = 0; c < columns; ++c) {
      if (c > 0 && !continued) row += random_.chance(0.5) ? " " : ", ";
      continued = false;
      if (random_.chance(0.2)) row += '-';
      char value[32];
      std::snprintf(value, sizeof value, "%d.%04d", random_.between(0, 999), random_.between(0, 9999));
      row += value;
      if (c + 1 < columns && c == columns / 2 && random_.chance(0.1)) {
        row += random_.chance(0.5) ? ", ...\n        " : " ...\n        ";
        continued = true;
      }
    }
    if (random_.chance(0.1)) row += "  % row " + std::to_string(r + 1);
    out.block(row);
    if (random_.chance(0.03)) out.blank();
  }
  out.line("];");
}

std::string Generator::longFunctionFile(std::size_t minimumBytes) {
  Writer out(std::string(4, ' '));
  function(out, "main" + capitalised(random_.pick(kStems)), true, true);
  while (out.size() < minimumBytes) {
    out.blank();
    function(out, functionName(), true, false);
  }
  return out.take();
}

GeneratedFile Generator::nextFile() {
  ++serial_;
  std::string const indent = random_.chance(0.08) ? "\t" : std::string(random_.chance(0.2) ? 2 : 4, ' ');
  Writer out(indent);
  std::string const project = "project" + std::to_string(serial_ % 37);
  std::string path;

  std::size_t const kind = random_.below(100);
  if (kind < 33) {
    std::string const name = functionName();
    path = project + "/+" + package() + "/" + name + ".m";
    functionFile(out, name);
  } else if (kind < 51) {
    std::string const name = className();
    path = project + "/+" + package() + "/" + name + ".m";
    classFile(out, name);
  } else if (kind < 55) {
    std::string const name = className();
    path = project + "/" + name + ".m";
    enumerationFile(out, name);
  } else if (kind < 73) {
    path = project + "/scripts/" + functionName() + "_demo.m";
    scriptFile(out);
  } else if (kind < 81) {
    std::string const name = functionName() + "App";
    path = project + "/gui/" + name + ".m";
    guiFile(out, name);
  } else if (kind < 86) {
    std::string const name = functionName() + "Parallel";
    path = project + "/parallel/" + name + ".m";
    parallelFile(out, name);
  } else if (kind < 91) {
    std::string const name = functionName() + "Kernel";
    path = project + "/codegen/" + name + ".m";
    codegenFile(out, name);
  } else {
    std::string const name = random_.pick(kStems) + std::string("Table") + std::to_string(serial_);
    path = project + "/private/" + name + ".m";
    tableFile(out, name);
  }

  std::string text = out.take();
  // Line ends and byte-order marks as editors on other systems leave them.
  if (random_.chance(0.1)) {
    std::string crlf;
    crlf.reserve(text.size() + text.size() / 16);
    for (char c : text) {
      if (c == '\n') crlf += '\r';
      crlf += c;
    }
    text = std::move(crlf);
  }
  if (random_.chance(0.05) && !text.empty()) text.pop_back();  // no line end after the last line
  if (random_.chance(0.02)) text.insert(0, "\xEF\xBB\xBF");
  return {std::move(path), std::move(text)};
}

}  // namespace

GeneratedCorpus generateCorpus(std::size_t minimumBytes, std::uint64_t seed) {
  Generator generator(seed);
  GeneratedCorpus corpus;
  while (corpus.bytes < minimumBytes) {
    corpus.files.push_back(generator.nextFile());
    corpus.bytes += corpus.files.back().source.size();
  }
  return corpus;
}

std::string generateFunctionFile(std::size_t minimumBytes, std::uint64_t seed) {
  return Generator(seed).longFunctionFile(minimumBytes);
}

}  // namespace plexus::bench
