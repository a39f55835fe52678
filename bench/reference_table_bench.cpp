// The cost per node of the vocabulary's reference table on generated source:
// all its pipelines declared on one graph, where equal stages are one vertex
// and key questions one lookup, against the same pipelines each on a graph of
// its own, as if every rule walked the file by itself. The floor is the walk
// with no rules. Every figure is nanoseconds per node of the corpus, one
// core; `unshared_over_shared` is how much the sharing saves.

#include <benchmark/benchmark.h>

#include <chrono>
#include <cstddef>
#include <memory>
#include <string>
#include <vector>

#include "bench/corpus_generator.hpp"
#include "bench/premise.hpp"
#include "frontend/analyze.hpp"
#include "rulesystem/execution/all_nodes.hpp"
#include "tests/rulesystem/reference/reference_pipelines.hpp"

namespace {

using ca::rulesystem::AllNodes;

constexpr std::size_t kCorpusBytes = 1u << 20;

struct AnalysedCorpus {
  std::vector<frontend::AnalysisResult> files;
  std::size_t nodes = 0;
};

std::size_t countNodes(ca::ast::Node const& node) {
  std::size_t count = 1;
  lf::astapi::forEachChild(node, [&count](ca::ast::Node const* child) {
    if (child != nullptr) count += countNodes(*child);
  });
  return count;
}

AnalysedCorpus const& corpus() {
  static AnalysedCorpus const made = [] {
    AnalysedCorpus analysed;
    for (auto const& file : plexus::bench::generateCorpus(kCorpusBytes).files) {
      frontend::AnalysisResult result = frontend::analyze(file.source, file.path);
      plexus::bench::require(result.analysis != nullptr, "generated file " + file.path + " fails");
      analysed.nodes += countNodes(*result.analysis->getProgram());
      analysed.files.push_back(std::move(result));
    }
    return analysed;
  }();
  return made;
}

/// Runs `graph` over every file of the corpus.
void runOver(AllNodes const& graph) {
  for (auto const& file : corpus().files) graph.execute(*file.analysis, nullptr);
}

double secondsOf(auto&& work) {
  auto const started = std::chrono::steady_clock::now();
  work();
  return std::chrono::duration<double>(std::chrono::steady_clock::now() - started).count();
}

void BM_ReferenceTable(benchmark::State& state) {
  auto const pipelines = plexus::testing::allReferencePipelines();
  std::size_t sharedHits = 0;
  std::size_t unsharedHits = 0;
  AllNodes const floor;
  AllNodes shared;
  std::vector<std::unique_ptr<AllNodes>> alone;
  for (auto const& pipeline : pipelines) {
    pipeline.declareCounted(shared, &sharedHits);
    alone.push_back(std::make_unique<AllNodes>());
    pipeline.declareCounted(*alone.back(), &unsharedHits);
  }
  // The analyses are computed on first use; the first run pays for them, so
  // that the timed runs measure the graphs alone.
  runOver(shared);
  for (auto const& graph : alone) runOver(*graph);
  plexus::bench::require(sharedHits == unsharedHits, "the shared graph and the graphs alone disagree");

  double floorSeconds = 0;
  double sharedSeconds = 0;
  double unsharedSeconds = 0;
  for (auto _ : state) {
    floorSeconds += secondsOf([&] { runOver(floor); });
    sharedSeconds += secondsOf([&] { runOver(shared); });
    unsharedSeconds += secondsOf([&] {
      for (auto const& graph : alone) runOver(*graph);
    });
  }
  benchmark::DoNotOptimize(sharedHits + unsharedHits);
  double const nodes = static_cast<double>(corpus().nodes) * static_cast<double>(state.iterations());
  state.counters["pipelines"] = static_cast<double>(pipelines.size());
  state.counters["nodes"] = static_cast<double>(corpus().nodes);
  state.counters["floor_ns_per_node"] = floorSeconds / nodes * 1e9;
  state.counters["shared_ns_per_node"] = sharedSeconds / nodes * 1e9;
  state.counters["unshared_ns_per_node"] = unsharedSeconds / nodes * 1e9;
  state.counters["unshared_over_shared"] = sharedSeconds > 0 ? unsharedSeconds / sharedSeconds : 0.0;
}

BENCHMARK(BM_ReferenceTable)->Unit(benchmark::kMillisecond)->MinTime(2.0);

}  // namespace
