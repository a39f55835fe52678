// The checker's cost per MB of generated code, on one thread: `runCheck` with
// one rule of the table on at a time, with none but syntax-error (reading,
// parsing and the analyses that no rule forces), and with every rule. The
// difference between a rule alone and none is what that rule adds.

#include <benchmark/benchmark.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "bench/corpus_generator.hpp"
#include "bench/premise.hpp"
#include "bench/unit_cost.hpp"
#include "tools/check/check_run.hpp"
#include "tools/rules/rule_table.hpp"

namespace {

namespace fs = std::filesystem;
using plexus::bench::require;

// The generated corpus in a folder of its own, removed at exit.
class CorpusFolder {
 public:
  CorpusFolder() {
    std::string pattern = (fs::temp_directory_path() / "plexus_bench_check_XXXXXX").string();
    require(mkdtemp(pattern.data()) != nullptr, "cannot make a temporary folder");
    folder_ = pattern;
    plexus::bench::GeneratedCorpus const corpus = plexus::bench::generateCorpus(kBytes);
    for (plexus::bench::GeneratedFile const& file : corpus.files) {
      fs::path const path = folder_ / file.path;
      fs::create_directories(path.parent_path());
      std::ofstream(path, std::ios::binary) << file.source;
    }
    bytes_ = corpus.bytes;
  }
  CorpusFolder(CorpusFolder const&) = delete;
  CorpusFolder& operator=(CorpusFolder const&) = delete;
  ~CorpusFolder() {
    std::error_code ignored;
    fs::remove_all(folder_, ignored);
  }

  std::string folder() const { return folder_.string(); }
  std::size_t bytes() const { return bytes_; }

 private:
  static constexpr std::size_t kBytes = 4u << 20;
  fs::path folder_;
  std::size_t bytes_ = 0;
};

// The argument: a row of the rule table, or -1 for every rule.
constexpr std::int64_t kEveryRule = -1;

void BM_CheckRule(benchmark::State& state) {
  static CorpusFolder const corpus;
  auto const table = plexus::rules::ruleTable();
  std::int64_t const chosen = state.range(0);
  plexus::check::CheckOptions options;
  options.paths = {corpus.folder()};
  options.jobs = 1;
  for (std::size_t rule = 0; rule < table.size(); ++rule) {
    options.selection.enabled[rule] = chosen == kEveryRule || static_cast<std::size_t>(chosen) == rule ||
                                      &table[rule] == &plexus::rules::syntaxErrorRule();
  }
  state.SetLabel(chosen == kEveryRule ? std::string("every rule") : std::string(table[chosen].id));

  std::size_t findings = 0;
  plexus::bench::UnitCost cost;
  for (auto _ : state) {
    plexus::check::CheckReport const report = plexus::check::runCheck(options);
    require(report.inputErrors.empty() && report.files > 0, "the corpus was not checked");
    findings = report.findings.size();
    benchmark::DoNotOptimize(findings);
  }
  cost.report(state, "ms_per_MB", static_cast<double>(corpus.bytes()) / 1e6, 1e-3);
  state.counters["findings"] = benchmark::Counter(static_cast<double>(findings));
}

void everyRuleOfTheTable(benchmark::internal::Benchmark* benchmark) {
  for (std::size_t rule = 0; rule < plexus::rules::ruleTable().size(); ++rule) {
    benchmark->Arg(static_cast<std::int64_t>(rule));
  }
  benchmark->Arg(kEveryRule);
}

BENCHMARK(BM_CheckRule)->Apply(everyRuleOfTheTable)->Unit(benchmark::kMillisecond)->MinTime(1.0);

}  // namespace
