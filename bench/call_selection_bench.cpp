// The cost per node of R rules that each ask `getCalls` for the calls of a
// different name, on analysed source files: one selector asks call
// resolution once per node, and one switch on the called name finds a
// rule's case with one hash lookup, so the cost should stay flat as R grows.
// Zero rules is the walk alone; `getCalls{}` for every name is the selector
// without the switch.

#include <benchmark/benchmark.h>

#include <cstddef>
#include <cstdint>
#include <memory>
#include <numeric>
#include <string>
#include <vector>

#include "bench/corpus_generator.hpp"
#include "bench/hit_counter.hpp"
#include "bench/premise.hpp"
#include "bench/unit_cost.hpp"
#include "bench/vocabulary.hpp"
#include "frontend/analyze.hpp"
#include "rulesystem/calls/call_selection.hpp"
#include "rulesystem/execution/all_nodes.hpp"

namespace {

using ca::callresolution::Call;
using ca::rulesystem::AllNodes;
using plexus::bench::require;
using plexus::bench::UnitCost;

constexpr std::size_t kCorpusBytes = 2u << 20;

/// The generated files, analysed once, with their node count; call
/// resolution is made before anything is timed.
struct AnalysedCorpus {
  AnalysedCorpus() {
    for (auto const& file : plexus::bench::generateCorpus(kCorpusBytes).files) {
      frontend::AnalysisResult result = frontend::analyze(file.source, file.path);
      require(result.analysis != nullptr, "generated file " + file.path + " fails");
      result.analysis->getCallResolutionAnalysis();
      nodes += result.analysis->getTree()->getNodeCount();
      files.push_back(std::move(result));
    }
  }

  std::vector<frontend::AnalysisResult> files;
  std::size_t nodes = 0;
};

AnalysedCorpus const& analysedCorpus() {
  static AnalysedCorpus const made;
  return made;
}

/// Runs `all` over every file while the state asks, and reports the cost per
/// node and the hits of one pass.
void runAndReport(benchmark::State& state, AllNodes const& all, std::vector<std::uint64_t> const& hits) {
  AnalysedCorpus const& corpus = analysedCorpus();
  UnitCost cost;
  for (auto _ : state) {
    for (auto const& file : corpus.files) all.execute(*file.analysis, nullptr);
    benchmark::DoNotOptimize(hits.data());
    benchmark::ClobberMemory();
  }
  cost.pause();
  std::uint64_t const total = std::accumulate(hits.begin(), hits.end(), std::uint64_t{0});
  std::uint64_t const iterations = static_cast<std::uint64_t>(state.iterations());
  cost.report(state, "ns_per_node", static_cast<double>(corpus.nodes), 1e-9);
  state.SetLabel(std::to_string(corpus.nodes) + " nodes, " +
                 std::to_string(iterations == 0 ? 0 : total / iterations) + " hits per pass");
}

/// R rules, each on the calls of one name of the vocabulary, most frequent
/// first; checked to share one selector and one switch with R cases.
void BM_GetCallsByName(benchmark::State& state) {
  auto const count = static_cast<std::size_t>(state.range(0));
  auto const& names = plexus::bench::functionNames();
  require(count <= names.size(), "more rules than names in the vocabulary");
  AllNodes all;
  std::vector<std::uint64_t> hits(count, 0);
  for (std::size_t index = 0; index < count; ++index) {
    all.parenOperation | ca::rulesystem::getCalls{ca::astapi::StringId(names[index])} |
        std::make_shared<plexus::bench::HitCounter<Call const&>>(hits[index]);
  }
  if (count > 0) {
    auto const upcasts = all.parenOperation->consumers();
    require(upcasts.size() == 1, "the rules do not share one upcast");
    auto const* upcast = dynamic_cast<ca::rulesystem::ProducerImpl<ca::ast::Node const&> const*>(upcasts.front());
    require(upcast != nullptr && upcast->consumers().size() == 1, "the rules do not share one selector");
    auto const* selector =
        dynamic_cast<ca::rulesystem::ProducerImpl<Call const&> const*>(upcast->consumers().front());
    require(selector != nullptr && selector->consumers().size() == 1, "the rules do not share one switch");
    require(selector->consumers().front()->extraChildren().size() == count, "the switch lacks a case per rule");
  }
  runAndReport(state, all, hits);
}

/// One rule on every call, whatever its name: the selector alone.
void BM_GetCallsEveryName(benchmark::State& state) {
  AllNodes all;
  std::vector<std::uint64_t> hits(1, 0);
  all.parenOperation | ca::rulesystem::getCalls{} | std::make_shared<plexus::bench::HitCounter<Call const&>>(hits[0]);
  runAndReport(state, all, hits);
}

void configure(benchmark::internal::Benchmark* benchmark) {
  benchmark->Unit(benchmark::kMillisecond)->MinTime(0.5)->Repetitions(3)->DisplayAggregatesOnly(true);
}

BENCHMARK(BM_GetCallsByName)->ArgName("rules")->Arg(0)->Arg(1)->Arg(10)->Arg(100)->Apply(configure);
BENCHMARK(BM_GetCallsEveryName)->Apply(configure);

}  // namespace
