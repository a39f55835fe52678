// Parse throughput of the front end on one core: source text to syntax tree,
// with diagnostics, over a generated corpus of more than 10 MB in the mix of
// styles of real projects. The trees of one pass over the corpus stay alive
// until the end of the pass, as an analysis of a project would hold them, so
// building and freeing them are both part of the measurement.

#include <benchmark/benchmark.h>

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "bench/corpus_generator.hpp"
#include "bench/premise.hpp"
#include "bench/unit_cost.hpp"
#include "frontend/diagnostic.hpp"
#include "frontend/parse.hpp"

namespace {

using plexus::bench::UnitCost;

using plexus::bench::require;

constexpr std::size_t kCorpusBytes = 12u << 20;
constexpr std::size_t kMinimumCorpusBytes = 10'000'000;

/// The generated corpus and what a clean parse of it gives, made once per
/// process and checked before anything is timed: a throughput measured on
/// files that the parser rejects would measure error recovery instead.
struct ParseCorpus {
  plexus::bench::GeneratedCorpus generated;
  std::size_t nodes = 0;
};

ParseCorpus makeParseCorpus() {
  ParseCorpus corpus;
  corpus.generated = plexus::bench::generateCorpus(kCorpusBytes);
  require(corpus.generated.bytes >= kMinimumCorpusBytes,
          "the generated corpus has only " + std::to_string(corpus.generated.bytes) + " bytes");
  for (auto const& file : corpus.generated.files) {
    frontend::ParseResult const result = frontend::parse(file.source, file.path);
    require(result.diagnostics.empty(),
            "generated file " + file.path + " does not parse cleanly (" + std::to_string(result.diagnostics.size()) +
                " diagnostics), the first: " +
                (result.diagnostics.empty() ? std::string() : frontend::formatDiagnostic(result.diagnostics.front())));
    require(result.tree != nullptr && result.tree->getProgram() != nullptr &&
                !result.tree->getProgram()->getBody().empty(),
            "generated file " + file.path + " gives an empty tree");
    corpus.nodes += result.tree->getNodeCount();
  }
  return corpus;
}

ParseCorpus const& parseCorpus() {
  static ParseCorpus const made = makeParseCorpus();
  return made;
}

void BM_ParseCorpus(benchmark::State& state) {
  ParseCorpus const& corpus = parseCorpus();
  auto const& files = corpus.generated.files;
  std::vector<frontend::ParseResult> results;
  results.reserve(files.size());
  std::size_t nodes = 0;
  UnitCost cost;
  for (auto _ : state) {
    for (auto const& file : files) results.push_back(frontend::parse(file.source, file.path));
    benchmark::DoNotOptimize(results.data());
    benchmark::ClobberMemory();
    state.PauseTiming();
    cost.pause();
    nodes = 0;
    for (auto const& result : results) nodes += result.tree->getNodeCount();
    cost.resume();
    state.ResumeTiming();
    results.clear();  // the trees of this pass die inside the timed region
  }
  require(nodes == corpus.nodes, "a timed pass built " + std::to_string(nodes) + " nodes where the checked parse built " +
                                     std::to_string(corpus.nodes));

  double const bytes = static_cast<double>(corpus.generated.bytes);
  state.SetBytesProcessed(static_cast<std::int64_t>(corpus.generated.bytes) * state.iterations());
  // Bytes of one pass, in units of 1e6, as a rate: megabytes per second.
  cost.reportRate(state, "MB_per_s", bytes / 1e6);
  // The same cost per byte and per node, in nanoseconds.
  cost.report(state, "ns_per_byte", bytes, 1e-9);
  cost.report(state, "ns_per_node", static_cast<double>(corpus.nodes), 1e-9);
  state.counters["files"] = static_cast<double>(files.size());
  state.counters["corpus_MB"] = bytes / 1e6;
  state.counters["nodes"] = static_cast<double>(corpus.nodes);
}

BENCHMARK(BM_ParseCorpus)->Unit(benchmark::kMillisecond)->MinTime(3.0);

}  // namespace
