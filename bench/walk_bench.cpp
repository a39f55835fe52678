// The cost of one walk over a synthetic tree of a million nodes, per node:
// with no rules, with 100 rules on one graph that merges their equal stages,
// and with the same 100 rules each on a graph of its own.

#include <benchmark/benchmark.h>

#include <cstdint>
#include <memory>
#include <numeric>
#include <string>
#include <vector>

#include "bench/bench_analysis.hpp"
#include "bench/graph_census.hpp"
#include "bench/premise.hpp"
#include "bench/unit_cost.hpp"
#include "bench/rule_set.hpp"
#include "bench/synthetic_tree.hpp"
#include "platform/usedef/usedef_analysis.hpp"
#include "rulesystem/execution/all_nodes.hpp"

namespace {

using plexus::bench::UnitCost;

using ca::rulesystem::AllNodes;
using plexus::bench::require;
using plexus::bench::Rule;

constexpr std::size_t kTreeNodes = 1'000'000;
// A tree of the size of one large source file, which stays in the caches: the
// walk over the big tree is bound by memory latency, this one is not.
constexpr std::size_t kFileSizedTreeNodes = 20'000;

/// The tree and its analysis, made once per process.
struct Corpus {
  std::unique_ptr<ca::clients::AnalysisImpl> analysis;
  std::size_t nodes = 0;
};

Corpus makeCorpus(std::size_t nodes) {
  Corpus corpus;
  corpus.analysis = plexus::bench::makeBenchAnalysis(plexus::bench::makeSyntheticTree(nodes));
  corpus.nodes = corpus.analysis->getTree()->getNodeCount();
  // The records are computed on first use; compute them here, untimed.
  corpus.analysis->get<ca::usedef::UseDefAnalysis>();
  return corpus;
}

Corpus const& corpus() {
  static Corpus const made = makeCorpus(kTreeNodes);
  return made;
}

Corpus const& fileSizedCorpus() {
  static Corpus const made = makeCorpus(kFileSizedTreeNodes);
  return made;
}

/// The 100 rules on one graph, their hits counted per rule.
struct SharedRules {
  SharedRules() : hits(plexus::bench::benchmarkRules().size()) {
    auto const& rules = plexus::bench::benchmarkRules();
    for (std::size_t index = 0; index < rules.size(); ++index) {
      plexus::bench::declareRule(all, rules[index], hits[index]);
    }
  }
  AllNodes all;
  std::vector<std::uint64_t> hits;
};

/// The same rules, each on a graph of its own.
struct UnsharedRules {
  UnsharedRules() : hits(plexus::bench::benchmarkRules().size()) {
    auto const& rules = plexus::bench::benchmarkRules();
    for (std::size_t index = 0; index < rules.size(); ++index) {
      graphs.push_back(std::make_unique<AllNodes>());
      plexus::bench::declareRule(*graphs.back(), rules[index], hits[index]);
    }
  }
  void execute(ca::Analysis const& analysis) const {
    for (auto const& graph : graphs) graph->execute(analysis, nullptr);
  }
  std::vector<std::unique_ptr<AllNodes>> graphs;
  std::vector<std::uint64_t> hits;
};

/// Both rule graphs, made once per process and checked before any is timed:
/// that the shared graph really merged the equal stages, and that both ways
/// of declaring the rules find the same hits, rule by rule.
struct CheckedRules {
  CheckedRules() {
    auto const& rules = plexus::bench::benchmarkRules();
    for (Rule::Shape shape : plexus::bench::kAllShapes) {
      std::size_t const expected = plexus::bench::expectedSharedVertices(rules, shape);
      std::size_t const found = plexus::bench::countVerticesBelow(plexus::bench::rootOf(shared.all, shape));
      require(found == expected, "shared graph has " + std::to_string(found) +
                                     " vertices under a root where merging equal stages gives " +
                                     std::to_string(expected));
    }

    auto const& analysis = *corpus().analysis;
    shared.all.execute(analysis, nullptr);
    unshared.execute(analysis);
    require(shared.hits == unshared.hits, "shared and unshared rules found different hits");
    hitsPerWalk = std::accumulate(shared.hits.begin(), shared.hits.end(), std::uint64_t{0});
    require(hitsPerWalk > 0, "the rules found nothing in the tree");
  }

  SharedRules shared;
  UnsharedRules unshared;
  std::uint64_t hitsPerWalk = 0;
};

CheckedRules const& checkedRules() {
  static CheckedRules const rules;
  return rules;
}

void reportPerNode(benchmark::State& state, UnitCost& cost, Corpus const& walked = corpus()) {
  state.SetItemsProcessed(static_cast<std::int64_t>(walked.nodes) * state.iterations());
  cost.report(state, "ns_per_node", static_cast<double>(walked.nodes), 1e-9);
}

void BM_WalkNoConsumers(benchmark::State& state) {
  auto const& analysis = *corpus().analysis;
  AllNodes const all;
  UnitCost cost;
  for (auto _ : state) all.execute(analysis, nullptr);
  reportPerNode(state, cost);
}

void BM_SharedRules100(benchmark::State& state) {
  auto const& analysis = *corpus().analysis;
  SharedRules const& rules = checkedRules().shared;
  UnitCost cost;
  for (auto _ : state) {
    rules.all.execute(analysis, nullptr);
    benchmark::DoNotOptimize(rules.hits.data());
    benchmark::ClobberMemory();
  }
  reportPerNode(state, cost);
}

void BM_UnsharedRules100(benchmark::State& state) {
  auto const& analysis = *corpus().analysis;
  UnsharedRules const& rules = checkedRules().unshared;
  UnitCost cost;
  for (auto _ : state) {
    rules.execute(analysis);
    benchmark::DoNotOptimize(rules.hits.data());
    benchmark::ClobberMemory();
  }
  reportPerNode(state, cost);
}

void BM_WalkNoConsumersFileSized(benchmark::State& state) {
  auto const& analysis = *fileSizedCorpus().analysis;
  AllNodes const all;
  UnitCost cost;
  for (auto _ : state) all.execute(analysis, nullptr);
  reportPerNode(state, cost, fileSizedCorpus());
}

void BM_SharedRules100FileSized(benchmark::State& state) {
  auto const& analysis = *fileSizedCorpus().analysis;
  SharedRules const& rules = checkedRules().shared;
  UnitCost cost;
  for (auto _ : state) {
    rules.all.execute(analysis, nullptr);
    benchmark::DoNotOptimize(rules.hits.data());
    benchmark::ClobberMemory();
  }
  reportPerNode(state, cost, fileSizedCorpus());
}

BENCHMARK(BM_WalkNoConsumers)->Unit(benchmark::kMillisecond)->MinTime(2.0);
BENCHMARK(BM_SharedRules100)->Unit(benchmark::kMillisecond)->MinTime(3.0);
BENCHMARK(BM_UnsharedRules100)->Unit(benchmark::kMillisecond)->Iterations(5);
BENCHMARK(BM_WalkNoConsumersFileSized)->Unit(benchmark::kMicrosecond)->MinTime(1.0);
BENCHMARK(BM_SharedRules100FileSized)->Unit(benchmark::kMicrosecond)->MinTime(1.0);

}  // namespace

int main(int argc, char** argv) {
  // Build and check everything before the run, so that the sizes head the
  // report and a failed check stops the process before any number is shown.
  benchmark::AddCustomContext("tree_nodes", std::to_string(corpus().nodes));
  benchmark::AddCustomContext("file_sized_tree_nodes", std::to_string(fileSizedCorpus().nodes));
  benchmark::AddCustomContext(
      "use_def_records", std::to_string(corpus().analysis->get<ca::usedef::UseDefAnalysis>().getAllUseDefs().size()));
  benchmark::AddCustomContext("rules", std::to_string(plexus::bench::benchmarkRules().size()));
  benchmark::AddCustomContext("rule_hits_per_walk", std::to_string(checkedRules().hitsPerWalk));
  benchmark::Initialize(&argc, argv);
  if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
  benchmark::RunSpecifiedBenchmarks();
  benchmark::Shutdown();
  return 0;
}
