// The cost per call of R rules that each look for calls to a different name,
// on one graph, asked two ways: as cases of the one switch on the called name,
// which computes the name once per call and finds the rule's case with one
// hash lookup, so that the cost should stay flat as R grows; and as one plain
// predicate per rule, which every call meets, so that the cost grows with R.
//
// Each way is timed twice: over whole runs of the graph on a tree, the walk
// included, and with the tree's calls handed straight to the root of calls,
// which leaves out the walk's cost, the same for every R, and so shows the
// rules' own share of the cost per call.

#include <benchmark/benchmark.h>

#include <cstddef>
#include <cstdint>
#include <map>
#include <memory>
#include <numeric>
#include <string>
#include <vector>

#include "bench/bench_analysis.hpp"
#include "bench/call_rules.hpp"
#include "bench/node_collector.hpp"
#include "bench/premise.hpp"
#include "bench/unit_cost.hpp"
#include "bench/synthetic_tree.hpp"
#include "platform/usedef/usedef_analysis.hpp"
#include "rulesystem/execution/all_nodes.hpp"
#include "rulesystem/graph/switch.hpp"

namespace {

using plexus::bench::UnitCost;

using ca::ast::ParenOperation;
using ca::rulesystem::AllNodes;
using plexus::bench::CallRule;
using plexus::bench::require;

// Large enough that the calls outweigh the fixed cost of a run, small enough
// that a thousand predicates per call still give many runs per second.
constexpr std::size_t kTreeNodes = 200'000;

using CalledNameSwitch = ca::rulesystem::Switch<ParenOperation const&, ParenOperation const&, ca::astapi::StringId>;

/// The tree and its analysis, made once per process, and its calls: the
/// items that reach `parenOperation` in one run, in the order of the walk.
struct CallCorpus {
  CallCorpus() : analysis(plexus::bench::makeBenchAnalysis(plexus::bench::makeSyntheticTree(kTreeNodes))) {
    nodes = analysis->getTree()->getNodeCount();
    // The records are computed on first use; compute them here, untimed.
    analysis->get<ca::usedef::UseDefAnalysis>();
    AllNodes collecting;
    collecting.parenOperation | std::make_shared<plexus::bench::NodeCollector<ParenOperation>>(calls);
    collecting.execute(*analysis, nullptr);
    require(!calls.empty(), "the tree holds no call");
  }

  std::unique_ptr<ca::clients::AnalysisImpl> analysis;
  std::size_t nodes = 0;
  std::vector<ParenOperation const*> calls;
};

CallCorpus const& callCorpus() {
  static CallCorpus const made;
  return made;
}

/// The same `count` rules on two graphs, one asking through the switch, one
/// through predicates, checked before either is timed: that the switch graph
/// has one switch with a case per rule and the other a predicate per rule,
/// and that both find the same calls, rule by rule.
struct RuleGraphs {
  explicit RuleGraphs(std::size_t count)
      : rules(plexus::bench::callRules(count)), switchHits(count), predicateHits(count) {
    for (std::size_t index = 0; index < count; ++index) {
      plexus::bench::declareAsSwitchCase(switched, rules[index], switchHits[index]);
      plexus::bench::declareAsPredicate(predicated, rules[index], predicateHits[index]);
    }
    std::string const what = std::to_string(count) + " rules: ";

    auto const switchConsumers = switched.parenOperation->consumers();
    require(switchConsumers.size() == 1, what + "the switch graph has " + std::to_string(switchConsumers.size()) +
                                             " consumers of calls instead of one switch");
    auto const* branching = dynamic_cast<CalledNameSwitch const*>(switchConsumers.front());
    require(branching != nullptr, what + "the one consumer of calls is not the switch on the called name");
    require(branching->cases.size() == count,
            what + "the switch has " + std::to_string(branching->cases.size()) + " cases");
    std::size_t const predicates = predicated.parenOperation->consumers().size();
    require(predicates == count, what + "the predicate graph has " + std::to_string(predicates) + " predicates");

    auto const& analysis = *callCorpus().analysis;
    switched.execute(analysis, nullptr);
    predicated.execute(analysis, nullptr);
    require(switchHits == predicateHits, what + "switch and predicates found different calls");
    for (std::size_t index = 0; index < count; ++index) {
      require(rules[index].inVocabulary || switchHits[index] == 0,
              what + "a name outside the vocabulary occurs in the tree");
    }
    hitsPerRun = std::accumulate(switchHits.begin(), switchHits.end(), std::uint64_t{0});
    require(hitsPerRun > 0, what + "the rules found nothing in the tree");
  }

  std::vector<CallRule> const rules;
  AllNodes switched;
  std::vector<std::uint64_t> switchHits;
  AllNodes predicated;
  std::vector<std::uint64_t> predicateHits;
  std::uint64_t hitsPerRun = 0;
};

/// The graphs for `count` rules, made on first use and kept for the process,
/// so that every benchmark for that count times the same graphs.
RuleGraphs const& ruleGraphs(std::size_t count) {
  static std::map<std::size_t, std::unique_ptr<RuleGraphs const>> made;
  auto& entry = made[count];
  if (!entry) entry = std::make_unique<RuleGraphs const>(count);
  return *entry;
}

void report(benchmark::State& state, UnitCost cost, bool walked, std::uint64_t hitsPerRun) {
  CallCorpus const& corpus = callCorpus();
  cost.report(state, "ns_per_call", static_cast<double>(corpus.calls.size()), 1e-9);
  if (walked) cost.report(state, "ns_per_node", static_cast<double>(corpus.nodes), 1e-9);
  state.SetLabel(std::to_string(corpus.nodes) + " nodes, " + std::to_string(corpus.calls.size()) + " calls, " +
                 std::to_string(hitsPerRun) + " hits");
}

/// Whole runs of `all` over the tree.
UnitCost walk(benchmark::State& state, AllNodes const& all, std::vector<std::uint64_t> const& hits) {
  auto const& analysis = *callCorpus().analysis;
  UnitCost cost;
  for (auto _ : state) {
    all.execute(analysis, nullptr);
    benchmark::DoNotOptimize(hits.data());
    benchmark::ClobberMemory();
  }
  cost.pause();
  return cost;
}

/// The tree's calls handed to the root of calls of `all`, without a walk.
UnitCost deliverCalls(benchmark::State& state, AllNodes const& all, std::vector<std::uint64_t> const& hits) {
  CallCorpus const& corpus = callCorpus();
  UnitCost cost;
  for (auto _ : state) {
    for (ParenOperation const* call : corpus.calls) all.parenOperation->produce(*call, *corpus.analysis, nullptr);
    benchmark::DoNotOptimize(hits.data());
    benchmark::ClobberMemory();
  }
  cost.pause();
  return cost;
}

/// The walk with no rule at all: the part of the walked series that is not
/// the rules'.
void BM_SwitchPredicateBaselineNoRules(benchmark::State& state) {
  AllNodes const all;
  std::vector<std::uint64_t> const none;
  report(state, walk(state, all, none), true, 0);
}

void BM_CallNameSwitch(benchmark::State& state) {
  RuleGraphs const& graphs = ruleGraphs(static_cast<std::size_t>(state.range(0)));
  report(state, walk(state, graphs.switched, graphs.switchHits), true, graphs.hitsPerRun);
}

void BM_CallNamePredicates(benchmark::State& state) {
  RuleGraphs const& graphs = ruleGraphs(static_cast<std::size_t>(state.range(0)));
  report(state, walk(state, graphs.predicated, graphs.predicateHits), true, graphs.hitsPerRun);
}

void BM_CallNameSwitchNoWalk(benchmark::State& state) {
  RuleGraphs const& graphs = ruleGraphs(static_cast<std::size_t>(state.range(0)));
  report(state, deliverCalls(state, graphs.switched, graphs.switchHits), false, graphs.hitsPerRun);
}

void BM_CallNamePredicatesNoWalk(benchmark::State& state) {
  RuleGraphs const& graphs = ruleGraphs(static_cast<std::size_t>(state.range(0)));
  report(state, deliverCalls(state, graphs.predicated, graphs.predicateHits), false, graphs.hitsPerRun);
}

// The walk of a tree this size is bound by memory latency, which other work on
// the machine disturbs: each benchmark runs five times and shows the median,
// mean and spread of its runs.
void configure(benchmark::internal::Benchmark* benchmark) {
  benchmark->Unit(benchmark::kMicrosecond)->MinTime(0.2)->Repetitions(5)->DisplayAggregatesOnly(true);
}

void ruleCounts(benchmark::internal::Benchmark* benchmark) {
  benchmark->ArgName("rules")->Arg(1)->Arg(10)->Arg(100)->Arg(1000);
}

BENCHMARK(BM_SwitchPredicateBaselineNoRules)->Apply(configure);
BENCHMARK(BM_CallNameSwitch)->Apply(ruleCounts)->Apply(configure);
BENCHMARK(BM_CallNamePredicates)->Apply(ruleCounts)->Apply(configure);
BENCHMARK(BM_CallNameSwitchNoWalk)->Apply(ruleCounts)->Apply(configure);
BENCHMARK(BM_CallNamePredicatesNoWalk)->Apply(ruleCounts)->Apply(configure);

}  // namespace
