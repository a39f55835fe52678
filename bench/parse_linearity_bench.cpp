// Parse cost of inputs whose cost once grew faster than their size: files
// dense with syntax errors, one very long line of command syntax, one very
// long line of statements holding non-ASCII text, and scripts with many
// variables beside many commands. Each runs at two sizes where size matters:
// a parser that is linear shows the same bytes per second at both.

#include <benchmark/benchmark.h>

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "bench/premise.hpp"
#include "frontend/parse.hpp"
#include "platform/ast/ast.hpp"

namespace {

using plexus::bench::require;
using lf::astapi::NodeKind;

// ---------------------------------------------------------------------------
// Files full of errors

// One fault per line, each giving one diagnostic, between valid lines.
constexpr char const* kFaultyLines[] = {
    "c = (d + ;\n",                 // an operand missing before ')'
    "e = [1 2; 3 4);\n",            // a matrix closed by the wrong bracket
    "f(1, 2\n",                     // an argument list not closed
    "g = 'not closed\n",            // an unterminated char vector
    "h = 1 $ 2;\n",                 // a character the language does not have
    "k = * 3;\n",                   // an operator where an operand must be
    "3 = m;\n",                     // a target that is not a variable
    "n = x y z;\n",                 // words after a complete statement
};
constexpr std::size_t kFaultsPerFile = 90;  // below the per-file cap of errors
constexpr std::size_t kErrorFiles = 160;

struct ErrorCorpus {
  std::vector<std::string> files;
  std::size_t bytes = 0;
  std::size_t diagnostics = 0;
};

ErrorCorpus makeErrorCorpus() {
  ErrorCorpus corpus;
  for (std::size_t file = 0; file < kErrorFiles; ++file) {
    std::string source;
    for (std::size_t fault = 0; fault < kFaultsPerFile; ++fault) {
      source += "a" + std::to_string(fault) + " = b(" + std::to_string(file) + ") + 1;\n";
      source += kFaultyLines[(file + fault) % std::size(kFaultyLines)];
      source += "if a" + std::to_string(fault) + " > 0, disp('ok'); end\n";
    }
    frontend::ParseResult const result = frontend::parse(source, "errors.m");
    require(result.diagnostics.size() == kFaultsPerFile,
            "a generated file with " + std::to_string(kFaultsPerFile) + " faults gives " +
                std::to_string(result.diagnostics.size()) + " diagnostics");
    corpus.bytes += source.size();
    corpus.diagnostics += result.diagnostics.size();
    corpus.files.push_back(std::move(source));
  }
  return corpus;
}

void BM_ParseFilesFullOfErrors(benchmark::State& state) {
  static ErrorCorpus const corpus = makeErrorCorpus();
  std::size_t diagnostics = 0;
  for (auto _ : state) {
    diagnostics = 0;
    for (std::string const& source : corpus.files) {
      frontend::ParseResult result = frontend::parse(source, "errors.m");
      diagnostics += result.diagnostics.size();
      benchmark::DoNotOptimize(result);
    }
  }
  require(diagnostics == corpus.diagnostics, "a timed pass gave another number of diagnostics");
  state.SetBytesProcessed(static_cast<std::int64_t>(corpus.bytes) * state.iterations());
  // Diagnostics per second.
  state.SetItemsProcessed(static_cast<std::int64_t>(corpus.diagnostics) * state.iterations());
  state.counters["files"] = static_cast<double>(corpus.files.size());
  state.counters["diagnostics"] = static_cast<double>(corpus.diagnostics);
}

BENCHMARK(BM_ParseFilesFullOfErrors)->Unit(benchmark::kMillisecond);

// ---------------------------------------------------------------------------
// Very long lines

// `disp w0 w1 w2 ...` on one line of at least `bytes` bytes.
std::string longCommandLine(std::size_t bytes) {
  std::string source = "disp";
  for (std::size_t word = 0; source.size() < bytes; ++word) source += " w" + std::to_string(word);
  return source + "\n";
}

// `x = 'é'; y = "ü"; ...` on one line of at least `bytes` bytes.
std::string longNonAsciiLine(std::size_t bytes) {
  std::string source;
  while (source.size() < bytes) source += "x = '\u00e9t\u00e9'; y = \"\u00fc\" + 1; ";
  return source + "\n";
}

void measureOneFile(benchmark::State& state, std::string const& source) {
  for (auto _ : state) {
    frontend::ParseResult result = frontend::parse(source, "line.m");
    benchmark::DoNotOptimize(result);
  }
  state.SetBytesProcessed(static_cast<std::int64_t>(source.size()) * state.iterations());
}

void BM_ParseLongCommandLine(benchmark::State& state) {
  std::string const source = longCommandLine(static_cast<std::size_t>(state.range(0)));
  frontend::ParseResult const checked = frontend::parse(source, "line.m");
  require(checked.diagnostics.empty(), "the long command line gives diagnostics");
  auto const body = checked.tree->getProgram()->getBody();
  require(body.size() == 1 && body[0]->getKind() == NodeKind::CommandInvocation,
          "the long command line is not one command");
  state.counters["words"] =
      static_cast<double>(static_cast<ca::ast::CommandInvocation const*>(body[0])->getArguments().size());
  measureOneFile(state, source);
}

void BM_ParseLongNonAsciiLine(benchmark::State& state) {
  std::string const source = longNonAsciiLine(static_cast<std::size_t>(state.range(0)));
  frontend::ParseResult const checked = frontend::parse(source, "line.m");
  require(checked.diagnostics.empty(), "the long non-ASCII line gives diagnostics");
  state.counters["statements"] = static_cast<double>(checked.tree->getProgram()->getBody().size());
  measureOneFile(state, source);
}

BENCHMARK(BM_ParseLongCommandLine)->Arg(256 << 10)->Arg(1 << 20)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_ParseLongNonAsciiLine)->Arg(256 << 10)->Arg(1 << 20)->Unit(benchmark::kMillisecond);

// ---------------------------------------------------------------------------
// Many variables beside many commands

// `vK = K;` then `hold on`, `count` times: every command is checked against
// the variables assigned so far.
void BM_ParseCommandsBesideVariables(benchmark::State& state) {
  auto const count = static_cast<std::size_t>(state.range(0));
  std::string source;
  for (std::size_t k = 0; k < count; ++k) source += "v" + std::to_string(k) + " = " + std::to_string(k) + ";\nhold on\n";
  frontend::ParseResult const checked = frontend::parse(source, "script.m");
  require(checked.diagnostics.empty(), "the script of variables and commands gives diagnostics");
  auto const body = checked.tree->getProgram()->getBody();
  require(body.size() == 2 * count && body[1]->getKind() == NodeKind::CommandInvocation,
          "'hold on' is not read as a command");
  measureOneFile(state, source);
}

BENCHMARK(BM_ParseCommandsBesideVariables)->Arg(20'000)->Arg(80'000)->Unit(benchmark::kMillisecond);

}  // namespace
