// The cost of declaring rules: each stage piped onto a producer is looked up
// among the stages already there, through the stage comparators, and is new or
// found again. R rules on one producer ask for calls to R different names, as
// a plain predicate, again (found, not added), negated, and in a disjunction
// with the next name; the cost per declaration grows with log R.

#include <benchmark/benchmark.h>

#include <cstddef>
#include <memory>
#include <string>
#include <vector>

#include "bench/call_name_predicate.hpp"
#include "bench/premise.hpp"
#include "bench/unit_cost.hpp"
#include "rulesystem/execution/all_nodes.hpp"
#include "rulesystem/graph/combinators.hpp"

namespace {

using ca::astapi::StringId;
using ca::rulesystem::AllNodes;
using plexus::bench::CallNameIs;

// The four declarations of one rule, listed in the header comment.
constexpr double kDeclarationsPerRule = 4;

void BM_DeclareCallRules(benchmark::State& state) {
  auto const rules = static_cast<std::size_t>(state.range(0));
  std::vector<StringId> names;
  names.reserve(rules);
  for (std::size_t i = 0; i < rules; ++i) names.push_back(StringId::fromUtf8("name" + std::to_string(i)));

  std::size_t vertices = 0;
  plexus::bench::UnitCost cost;
  for (auto _ : state) {
    AllNodes all;
    for (std::size_t i = 0; i < rules; ++i) {
      StringId const name = names[i];
      all.parenOperation | std::make_unique<CallNameIs>(name);
      all.parenOperation | std::make_unique<CallNameIs>(name);
      all.parenOperation | !std::make_unique<CallNameIs>(name);
      all.parenOperation | (std::make_unique<CallNameIs>(name) || std::make_unique<CallNameIs>(names[(i + 1) % rules]));
    }
    vertices = all.parenOperation->consumers().size();
    benchmark::DoNotOptimize(vertices);
  }
  cost.report(state, "ns_per_declaration", kDeclarationsPerRule * static_cast<double>(rules), 1e-9);
  // One vertex for each distinct stage: the repeated predicate is found, and
  // each disjunction is new (two names in one order), unless there is one name.
  plexus::bench::require(vertices == (rules == 1 ? 3 : 3 * rules), "equal stages were not found again");
}

BENCHMARK(BM_DeclareCallRules)
    ->ArgName("rules")
    ->Arg(10)
    ->Arg(100)
    ->Arg(1000)
    ->Unit(benchmark::kMicrosecond)
    ->MinTime(0.5)
    ->Repetitions(5)
    ->DisplayAggregatesOnly(true);

}  // namespace
