// The cost of R rules that each want the identifiers of one name, asked two
// ways on one graph: keyed, as cases of the one switch on the symbol's name
// (`getAllSymbols() | isSymbolName(name) | getSymbolOccurences()`), which
// computes a symbol's name once and finds the rule's case with one hash
// lookup, so that the cost should stay flat as R grows; and spelled, as one
// `isStringId(name)` per rule behind every occurrence, which each identifier
// meets and which interns its name at each test, so that the cost grows with
// R. Both give each rule the same identifiers, which is checked before timing.
//
// The program item of an analysed function file is handed straight to the
// root of programs: what is timed is the rules' work, not the walk.

#include <benchmark/benchmark.h>

#include <cstddef>
#include <cstdint>
#include <map>
#include <memory>
#include <numeric>
#include <set>
#include <string>
#include <vector>

#include "bench/corpus_generator.hpp"
#include "bench/hit_counter.hpp"
#include "bench/premise.hpp"
#include "bench/unit_cost.hpp"
#include "frontend/analyze.hpp"
#include "rulesystem/execution/all_nodes.hpp"
#include "rulesystem/syntax/identifiers.hpp"
#include "rulesystem/syntax/symbols.hpp"

namespace {

using ca::rulesystem::AllNodes;
using ca::rulesystem::Identifier;
using plexus::bench::require;
using plexus::bench::UnitCost;

constexpr std::size_t kFileBytes = 256 * 1024;

/// One generated function file, analysed, with its symbols' names in order
/// and the number of identifiers that have a symbol.
struct NamedFile {
  NamedFile() {
    frontend::AnalysisResult result = frontend::analyze(plexus::bench::generateFunctionFile(kFileBytes), "named.m");
    require(result.analysis != nullptr, "the generated function file does not parse");
    analysis = result.analysis;
    std::set<std::u16string> distinct;
    for (ca::Symbol const* symbol : analysis->getSymbolTable()->getSymbols()) {
      distinct.insert(std::u16string(symbol->getName().data(), symbol->getName().size()));
      occurrences += symbol->getOccurrences().size();
    }
    names.assign(distinct.begin(), distinct.end());
  }

  std::shared_ptr<ca::clients::AnalysisImpl> analysis;
  std::vector<std::u16string> names;
  std::size_t occurrences = 0;
};

NamedFile const& namedFile() {
  static NamedFile const made;
  return made;
}

/// The same `count` rules on two graphs, keyed and spelled, each rule for one
/// name of the file, checked to find the same identifiers rule by rule.
struct NameRuleGraphs {
  explicit NameRuleGraphs(std::size_t count) : keyedHits(count), spelledHits(count) {
    NamedFile const& file = namedFile();
    require(file.names.size() >= count, "the file has fewer than " + std::to_string(count) + " names");
    for (std::size_t index = 0; index < count; ++index) {
      // Every n-th name, so that rare and frequent names both take part.
      std::u16string const& name = file.names[index * (file.names.size() / count)];
      keyed.program | ca::rulesystem::getAllSymbols() | ca::rulesystem::isSymbolName(name) |
          ca::rulesystem::getSymbolOccurences() |
          std::make_shared<plexus::bench::HitCounter<Identifier const&>>(keyedHits[index]);
      spelled.program | ca::rulesystem::getAllSymbols() | ca::rulesystem::getSymbolOccurences() |
          ca::rulesystem::isStringId(name) |
          std::make_shared<plexus::bench::HitCounter<Identifier const&>>(spelledHits[index]);
    }
    deliver(keyed);
    deliver(spelled);
    require(keyedHits == spelledHits, std::to_string(count) + " rules: keyed and spelled found different identifiers");
    hitsPerRun = std::accumulate(keyedHits.begin(), keyedHits.end(), std::uint64_t{0});
    require(hitsPerRun > 0, std::to_string(count) + " rules found nothing");
  }

  static void deliver(AllNodes const& all) {
    ca::clients::AnalysisImpl const& analysis = *namedFile().analysis;
    all.program->produce(*analysis.getProgram(), analysis, nullptr);
  }

  AllNodes keyed;
  std::vector<std::uint64_t> keyedHits;
  AllNodes spelled;
  std::vector<std::uint64_t> spelledHits;
  std::uint64_t hitsPerRun = 0;
};

NameRuleGraphs const& nameRuleGraphs(std::size_t count) {
  static std::map<std::size_t, std::unique_ptr<NameRuleGraphs const>> made;
  auto& entry = made[count];
  if (!entry) entry = std::make_unique<NameRuleGraphs const>(count);
  return *entry;
}

void run(benchmark::State& state, AllNodes const& all, std::vector<std::uint64_t> const& hits,
         std::uint64_t hitsPerRun) {
  UnitCost cost;
  for (auto _ : state) {
    NameRuleGraphs::deliver(all);
    benchmark::DoNotOptimize(hits.data());
    benchmark::ClobberMemory();
  }
  NamedFile const& file = namedFile();
  cost.report(state, "ns_per_identifier", static_cast<double>(file.occurrences), 1e-9);
  state.SetLabel(std::to_string(file.names.size()) + " names, " + std::to_string(file.occurrences) +
                 " identifiers, " + std::to_string(hitsPerRun) + " hits");
}

void BM_SymbolNameKeyed(benchmark::State& state) {
  NameRuleGraphs const& graphs = nameRuleGraphs(static_cast<std::size_t>(state.range(0)));
  run(state, graphs.keyed, graphs.keyedHits, graphs.hitsPerRun);
}

void BM_SymbolNameSpelled(benchmark::State& state) {
  NameRuleGraphs const& graphs = nameRuleGraphs(static_cast<std::size_t>(state.range(0)));
  run(state, graphs.spelled, graphs.spelledHits, graphs.hitsPerRun);
}

void configure(benchmark::internal::Benchmark* benchmark) {
  benchmark->ArgName("rules")->Arg(1)->Arg(10)->Arg(100);
  benchmark->Unit(benchmark::kMicrosecond)->MinTime(0.2)->Repetitions(3)->DisplayAggregatesOnly(true);
}

BENCHMARK(BM_SymbolNameKeyed)->Apply(configure);
BENCHMARK(BM_SymbolNameSpelled)->Apply(configure);

}  // namespace
