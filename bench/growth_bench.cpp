// How the cost of each analysis of the front end grows with the size of one
// file: generated files of 1 to 16 MB in shapes that put many statements in
// one body (see growth_shapes.hpp). Each benchmark times one stage only, with
// what it needs made beforehand, and reports milliseconds per MB: a figure
// that stays flat as the file doubles is linear growth; one that doubles with
// it is quadratic. The time is the CPU time of the thread (page faults
// included), so that other work on a shared machine does not blur the growth.
//
// Names: BM_Growth/<stage>/<shape>/<MB>, so that `--benchmark_filter=BM_Growth/use_def`
// picks one stage.

#include <benchmark/benchmark.h>
#include <time.h>

#include <cstddef>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "bench/growth_shapes.hpp"
#include "bench/premise.hpp"
#include "frontend/analysis/call_resolution.hpp"
#include "frontend/analysis/control_flow.hpp"
#include "frontend/analysis/name_resolution.hpp"
#include "frontend/analysis/use_def.hpp"
#include "frontend/diagnostic.hpp"
#include "frontend/parse.hpp"

namespace {

using plexus::bench::GrowthShape;
using plexus::bench::require;

double threadSeconds() {
  timespec now{};
  clock_gettime(CLOCK_THREAD_CPUTIME_ID, &now);
  return static_cast<double>(now.tv_sec) + static_cast<double>(now.tv_nsec) * 1e-9;
}

enum class Stage { Parse, Names, Calls, ControlFlow, UseDef };

constexpr Stage kStages[] = {Stage::Parse, Stage::Names, Stage::Calls, Stage::ControlFlow, Stage::UseDef};

char const* stageName(Stage stage) {
  switch (stage) {
    case Stage::Parse: return "parse";
    case Stage::Names: return "names";
    case Stage::Calls: return "calls";
    case Stage::ControlFlow: return "control_flow";
    case Stage::UseDef: return "use_def";
  }
  return "unknown";
}

/// One generated file, parsed and checked, with the analyses that later
/// stages start from, each made when first needed.
struct Prepared {
  plexus::bench::GrowthFile file;
  std::shared_ptr<ca::astapi::SyntaxTree const> tree;
  std::vector<ca::ast::Node const*> nodes;  // every node of the tree
  std::shared_ptr<frontend::FileSymbols const> symbols;
  std::shared_ptr<ca::controlflow::ControlFlowAnalysis> flow;

  ca::ast::Program const& program() const { return *tree->getProgram(); }
  frontend::FileSymbols const& symbolsMade() {
    if (!symbols) symbols = frontend::FileSymbols::build(program(), tree->getFileType());
    return *symbols;
  }
  ca::controlflow::ControlFlowAnalysis const& flowMade() {
    if (!flow) flow = frontend::buildControlFlow(program());
    return *flow;
  }
};

Prepared prepare(GrowthShape shape, std::size_t megabytes) {
  Prepared prepared;
  prepared.file = plexus::bench::generateGrowthFile(shape, megabytes << 20);
  frontend::ParseResult parsed = frontend::parse(prepared.file.source, prepared.file.path);
  require(parsed.diagnostics.empty() && parsed.tree != nullptr,
          "generated file " + prepared.file.path + " does not parse cleanly" +
              (parsed.diagnostics.empty() ? std::string() : ": " + frontend::formatDiagnostic(parsed.diagnostics[0])));
  prepared.tree = std::move(parsed.tree);
  std::vector<ca::ast::Node const*> pending{prepared.tree->getProgram()};
  while (!pending.empty()) {
    ca::ast::Node const* node = pending.back();
    pending.pop_back();
    prepared.nodes.push_back(node);
    lf::astapi::forEachChild(*node, [&pending](ca::ast::Node const* child) { pending.push_back(child); });
  }
  return prepared;
}

/// The files of the shape being measured, by size. Benchmarks run shape by
/// shape, so only one shape's files are held at a time.
Prepared& preparedFor(GrowthShape shape, std::size_t megabytes) {
  static std::optional<GrowthShape> heldShape;
  static std::map<std::size_t, Prepared> held;
  if (heldShape != shape) {
    held.clear();
    heldShape = shape;
  }
  auto found = held.find(megabytes);
  if (found == held.end()) found = held.emplace(megabytes, prepare(shape, megabytes)).first;
  return found->second;
}

/// Runs one stage once and returns a number that depends on its result.
std::size_t runStage(Stage stage, Prepared& prepared) {
  switch (stage) {
    case Stage::Parse: {
      frontend::ParseResult const parsed = frontend::parse(prepared.file.source, prepared.file.path);
      return parsed.tree->getNodeCount();
    }
    case Stage::Names:
      return frontend::FileSymbols::build(prepared.program(), prepared.tree->getFileType())->getSymbols().size();
    case Stage::Calls: {
      frontend::FileCalls const calls(prepared.symbols);
      std::size_t found = 0;
      for (ca::ast::Node const* node : prepared.nodes) {
        found += calls.getCallInfo(*node).isCall() != ca::callresolution::Call::NoCall ? 1 : 0;
        found += calls.getClosestCall(*node).has_value() ? 1 : 0;
      }
      return found;
    }
    case Stage::ControlFlow: return frontend::buildControlFlow(prepared.program())->getGraphs().size();
    case Stage::UseDef:
      return frontend::buildUseDefs(prepared.program(), *prepared.symbols, *prepared.flow)->getAllUseDefs().size();
  }
  return 0;
}

void BM_Growth(benchmark::State& state, Stage stage, GrowthShape shape) {
  auto const megabytes = static_cast<std::size_t>(state.range(0));
  Prepared& prepared = preparedFor(shape, megabytes);
  // What the stage starts from is made before the clock runs.
  if (stage == Stage::Calls || stage == Stage::UseDef) prepared.symbolsMade();
  if (stage == Stage::UseDef) prepared.flowMade();

  double seconds = 0;
  std::size_t touched = 0;
  for (auto _ : state) {
    double const start = threadSeconds();
    touched += runStage(stage, prepared);
    double const elapsed = threadSeconds() - start;
    state.SetIterationTime(elapsed);
    seconds += elapsed;
  }
  benchmark::DoNotOptimize(touched);
  double const mb = static_cast<double>(prepared.file.source.size()) / (1 << 20);
  state.SetBytesProcessed(static_cast<std::int64_t>(prepared.file.source.size()) * state.iterations());
  state.counters["ms_per_MB"] = seconds * 1e3 / static_cast<double>(state.iterations()) / mb;
  state.counters["MB"] = mb;
}

// Shape by shape, then stage by stage, so that a shape's files are generated
// and parsed once for all stages.
bool const registered = [] {
  for (GrowthShape const shape : plexus::bench::kGrowthShapes) {
    for (Stage const stage : kStages) {
      std::string const name =
          std::string("BM_Growth/") + stageName(stage) + "/" + std::string(plexus::bench::growthShapeName(shape));
      benchmark::RegisterBenchmark(name.c_str(), BM_Growth, stage, shape)
          ->RangeMultiplier(2)
          ->Range(1, 16)
          ->UseManualTime()
          ->Unit(benchmark::kMillisecond)
          ->MinTime(0.05);
    }
  }
  return true;
}();

}  // namespace
