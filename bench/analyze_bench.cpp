// The cost of analysing source text, per MB, on one core: parse, then every
// analysis of the front end forced — symbols and identifier uses, call
// resolution asked for every node, the class-object analysis asked of every
// identifier and attribute, control-flow graphs and use-def records with
// their reaching definitions.

#include <benchmark/benchmark.h>

#include <cstddef>
#include <string>
#include <vector>

#include "bench/corpus_generator.hpp"
#include "bench/premise.hpp"
#include "bench/unit_cost.hpp"
#include "frontend/analyze.hpp"
#include "platform/callresolution/call.hpp"
#include "platform/controlflow/control_flow.hpp"
#include "platform/nameresolution/symbol_table.hpp"
#include "platform/tosk/tosk_analysis.hpp"
#include "platform/usedef/usedef_analysis.hpp"

namespace {

using plexus::bench::UnitCost;

using plexus::bench::require;

constexpr std::size_t kCorpusBytes = 12u << 20;

plexus::bench::GeneratedCorpus const& corpus() {
  static plexus::bench::GeneratedCorpus const made = plexus::bench::generateCorpus(kCorpusBytes);
  return made;
}

// Forces every analysis of one file and returns a number that depends on all
// of them, so that none can be skipped.
std::size_t forceAll(ca::clients::AnalysisImpl const& analysis) {
  std::size_t touched = analysis.getSymbolTable()->getSymbols().size();
  analysis.getIdUseAnalysis();
  auto const& calls = *analysis.getCallResolutionAnalysis();
  auto const& objects = *analysis.getToskAnalysis();
  std::vector<ca::ast::Node const*> pending{analysis.getProgram()};
  while (!pending.empty()) {
    ca::ast::Node const* node = pending.back();
    pending.pop_back();
    touched += calls.getCallInfo(*node).isCall() == ca::callresolution::Call::KnownCall ? 1 : 0;
    if (auto const* identifier = lf::astapi::dynCast<ca::ast::Identifier>(node)) {
      touched += objects.hasAnnotation(*identifier, ca::core::ToskAnnotation::ObjectParameter) ? 1 : 0;
    } else if (auto const* attribute = lf::astapi::dynCast<ca::ast::Attribute>(node)) {
      touched += objects.isCustomAttribute(*attribute) ? 1 : 0;
    }
    lf::astapi::forEachChild(*node, [&pending](ca::ast::Node const* child) { pending.push_back(child); });
  }
  touched += analysis.get<ca::controlflow::ControlFlowAnalysis>().getGraphs().size();
  touched += analysis.get<ca::usedef::UseDefAnalysis>().getAllUseDefs().size();
  return touched;
}

void BM_AnalyzeCorpus(benchmark::State& state) {
  auto const& files = corpus().files;
  // Every file must analyse: a file left out would flatter the figure.
  for (auto const& file : files) {
    require(frontend::analyze(file.source, file.path).analysis != nullptr, "generated file " + file.path + " fails");
  }
  std::size_t touched = 0;
  UnitCost cost;
  for (auto _ : state) {
    for (auto const& file : files) {
      frontend::AnalysisResult const result = frontend::analyze(file.source, file.path);
      touched += forceAll(*result.analysis);
    }
  }
  benchmark::DoNotOptimize(touched);
  double const megabytes = static_cast<double>(corpus().bytes) / 1e6;
  state.SetBytesProcessed(static_cast<std::int64_t>(corpus().bytes) * state.iterations());
  cost.reportRate(state, "MB_per_s", megabytes);
  cost.report(state, "ms_per_MB", megabytes, 1e-3);
}

BENCHMARK(BM_AnalyzeCorpus)->Unit(benchmark::kMillisecond)->MinTime(3.0);

}  // namespace
