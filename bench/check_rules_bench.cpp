// The cost of the checker's bundled rules on the generated corpus, per MB,
// on one core: each file analysed once beforehand (its analyses made), then
// the walk that drives the declared rules timed over every file. The corpus
// is written to a folder first, since a rule may read its file again (the
// comments of empty-catch).
//
// BM_CheckRules measures no rule (the walk alone), the rules the checker
// had before the batch of syntax rules (global-declaration), and every
// bundled rule; BM_CheckOneRule each rule alone; BM_EmptyCatchReadsItsFile
// what reading a file again for its comments costs.

#include <benchmark/benchmark.h>
#include <stdlib.h>

#include <cstddef>
#include <filesystem>
#include <fstream>
#include <memory>
#include <string>
#include <system_error>
#include <utility>
#include <vector>

#include "bench/corpus_generator.hpp"
#include "bench/premise.hpp"
#include "bench/unit_cost.hpp"
#include "frontend/analyze.hpp"
#include "rulesystem/rulesystem.hpp"
#include "tools/rules/rule_table.hpp"

namespace {

using plexus::bench::require;
using plexus::bench::UnitCost;
using plexus::rules::RuleDefinition;

constexpr std::size_t kCorpusBytes = 4u << 20;

// The corpus written to a temporary folder and analysed from there, removed
// at exit.
class AnalysedCorpus {
 public:
  AnalysedCorpus() {
    std::string pattern = (std::filesystem::temp_directory_path() / "plexus_bench_XXXXXX").string();
    require(mkdtemp(pattern.data()) != nullptr, "cannot make a folder for the corpus");
    folder_ = pattern;
    plexus::bench::GeneratedCorpus const corpus = plexus::bench::generateCorpus(kCorpusBytes);
    bytes = corpus.bytes;
    for (auto const& file : corpus.files) {
      std::filesystem::path const path = folder_ / file.path;
      std::filesystem::create_directories(path.parent_path());
      std::ofstream(path, std::ios::binary) << file.source;
      frontend::AnalysisResult result = frontend::analyze(file.source, path.string());
      require(result.analysis != nullptr, "generated file " + file.path + " fails");
      analyses.push_back(std::move(result.analysis));
    }
  }
  AnalysedCorpus(AnalysedCorpus const&) = delete;
  AnalysedCorpus& operator=(AnalysedCorpus const&) = delete;
  ~AnalysedCorpus() {
    std::error_code ignored;
    std::filesystem::remove_all(folder_, ignored);
  }

  std::vector<std::shared_ptr<ca::clients::AnalysisImpl>> analyses;
  std::size_t bytes = 0;

 private:
  std::filesystem::path folder_;
};

AnalysedCorpus const& corpus() {
  static AnalysedCorpus const made;
  return made;
}

// Counts the findings; every rule's findings are wanted.
class CountingSink final : public plexus::rules::FindingSink {
 public:
  bool wants(std::size_t, std::size_t) const override { return true; }
  void add(std::size_t, plexus::rules::FindingRange const&, std::string) override { ++findings; }
  std::size_t findings = 0;
};

// Declares `rules` with their default options, runs them over the corpus
// once untimed (so that every analysis a rule asks for is made, as in a
// checker run after the first rule asked), then times the runs.
void measure(benchmark::State& state, std::vector<RuleDefinition const*> const& rules) {
  ca::rulesystem::AllNodes all;
  for (RuleDefinition const* rule : rules) {
    std::vector<std::int64_t> defaults;
    for (auto const& option : rule->body->options) defaults.push_back(option.defaultValue);
    rule->body->declare(plexus::rules::RuleDeclaration(all, *rule, 0, std::move(defaults)));
  }
  AnalysedCorpus const& files = corpus();
  CountingSink sink;
  ca::rulesystem::MessageHelper const helper{&sink, nullptr};
  for (auto const& analysis : files.analyses) all.execute(*analysis, &helper);
  std::size_t const findingsPerRun = sink.findings;

  UnitCost cost;
  for (auto _ : state) {
    for (auto const& analysis : files.analyses) all.execute(*analysis, &helper);
  }
  double const megabytes = static_cast<double>(files.bytes) / 1e6;
  cost.report(state, "ms_per_MB", megabytes, 1e-3);
  require(sink.findings == findingsPerRun * (1 + static_cast<std::size_t>(state.iterations())),
          "a run found other findings than the first");
  state.counters["findings"] = static_cast<double>(findingsPerRun);
}

std::vector<RuleDefinition const*> declaredRules() {
  std::vector<RuleDefinition const*> rules;
  for (RuleDefinition const& rule : plexus::rules::ruleTable()) {
    if (rule.body->declare != nullptr) rules.push_back(&rule);
  }
  return rules;
}

void BM_CheckRules(benchmark::State& state) {
  std::vector<RuleDefinition const*> rules;
  switch (state.range(0)) {
    case 0: state.SetLabel("none"); break;
    case 1:
      state.SetLabel("global-declaration");
      rules.push_back(plexus::rules::findRule("global-declaration"));
      break;
    default:
      state.SetLabel("every bundled rule");
      rules = declaredRules();
      break;
  }
  measure(state, rules);
}
BENCHMARK(BM_CheckRules)->DenseRange(0, 2)->Unit(benchmark::kMillisecond);

void BM_CheckOneRule(benchmark::State& state) {
  RuleDefinition const& rule = plexus::rules::ruleTable()[static_cast<std::size_t>(state.range(0))];
  state.SetLabel(std::string(rule.id));
  measure(state, {&rule});
}
BENCHMARK(BM_CheckOneRule)
    ->Apply([](benchmark::internal::Benchmark* benchmark) {
      for (RuleDefinition const* rule : declaredRules()) benchmark->Arg(static_cast<std::int64_t>(rule->index));
    })
    ->Unit(benchmark::kMillisecond);

// What empty-catch's reading of a file costs: scripts of assignments that
// each end in a try statement, analysed afresh for every run (untimed), so
// that each run reads again. With a statement in the catch (0) the rule never
// reads a file; with an empty one (1) it reads and decodes each file once.
void BM_EmptyCatchReadsItsFile(benchmark::State& state) {
  constexpr std::size_t kFiles = 100;
  constexpr std::size_t kLines = 1000;
  bool const empty = state.range(0) != 0;
  state.SetLabel(empty ? "empty catch: file read" : "catch with a statement: no read");
  std::string pattern = (std::filesystem::temp_directory_path() / "plexus_bench_XXXXXX").string();
  require(mkdtemp(pattern.data()) != nullptr, "cannot make a folder for the scripts");
  std::filesystem::path const folder = pattern;
  std::vector<std::pair<std::string, std::string>> scripts;
  std::size_t bytes = 0;
  for (std::size_t f = 0; f < kFiles; ++f) {
    std::string source = "% a script of assignments\n";
    for (std::size_t line = 0; line < kLines; ++line) {
      source += "value" + std::to_string(line) + " = " + std::to_string(line * f) + " + offset;\n";
    }
    source += empty ? "try\n  cleanup();\ncatch\nend\n" : "try\n  cleanup();\ncatch\n  disp('kept');\nend\n";
    std::string const path = (folder / ("script" + std::to_string(f) + ".m")).string();
    std::ofstream(path, std::ios::binary) << source;
    bytes += source.size();
    scripts.emplace_back(path, std::move(source));
  }
  ca::rulesystem::AllNodes all;
  RuleDefinition const& rule = *plexus::rules::findRule("empty-catch");
  rule.body->declare(plexus::rules::RuleDeclaration(all, rule, 0, {}));
  CountingSink sink;
  ca::rulesystem::MessageHelper const helper{&sink, nullptr};

  // The walk itself, without the rule, on the same fresh analyses: what it
  // makes on first use (the use-def records it hands out) is made untimed.
  ca::rulesystem::AllNodes walkAlone;
  std::vector<std::shared_ptr<ca::clients::AnalysisImpl>> analyses;
  UnitCost cost;
  for (auto _ : state) {
    cost.pause();
    state.PauseTiming();
    analyses.clear();
    for (auto const& [path, source] : scripts) analyses.push_back(frontend::analyze(source, path).analysis);
    for (auto const& analysis : analyses) walkAlone.execute(*analysis, &helper);
    state.ResumeTiming();
    cost.resume();
    for (auto const& analysis : analyses) all.execute(*analysis, &helper);
  }
  double const megabytes = static_cast<double>(bytes) / 1e6;
  cost.report(state, "ms_per_MB", megabytes, 1e-3);
  require(sink.findings == (empty ? kFiles * static_cast<std::size_t>(state.iterations()) : 0),
          "empty-catch found other catch blocks than the empty ones");
  std::error_code ignored;
  std::filesystem::remove_all(folder, ignored);
}
BENCHMARK(BM_EmptyCatchReadsItsFile)->Arg(0)->Arg(1)->Iterations(20)->Unit(benchmark::kMillisecond);

}  // namespace
