// The checker end to end, as `plexus check` runs it: `runCheck` over a folder
// of more than 10,000 generated files on disk (walking the folders, reading,
// parsing, the analyses, every rule on the one shared graph, suppression
// comments, sorting the findings), on one thread and on two.
//
// The same run with every rule disabled measures what the rules add. The
// analyses are made only when something first asks for them, so a run
// without rules would skip those that only rules ask for and flatter the
// rules' share: there, `CheckOptions::beforeRules` asks each analysis that
// the front end registers once per file (symbols, identifier uses, calls,
// control flow, use-def, class objects), as the rules together do. Each
// analysis is made whole when first asked, so asking once costs what the
// rules' questions cost in making it, and no more.
//
// Rates are per second of wall time (the run's worker threads do the work);
// `cpu_MB_per_s` is per second of processor time of all threads.
// Each configuration also reports its ratio to the one it is compared with,
// when that one ran before it in the same process (the default order runs
// them all, the baselines first): `rules_cost` is the time with rules over
// the time without, on as many threads (`rules_cpu_cost` the same in
// processor time); `speedup` the time on one thread over the time on two.

#include <benchmark/benchmark.h>
#include <stdlib.h>
#include <sys/resource.h>

#include <chrono>
#include <cstddef>
#include <filesystem>
#include <fstream>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <utility>

#include "bench/corpus_generator.hpp"
#include "bench/premise.hpp"
#include "frontend/analysis/registered_analyses.hpp"
#include "platform/analysis/analysis_impl.hpp"
#include "platform/analysis/analysis_registry.hpp"
#include "platform/callresolution/call.hpp"
#include "platform/controlflow/control_flow.hpp"
#include "platform/nameresolution/symbol_table.hpp"
#include "platform/tosk/tosk_analysis.hpp"
#include "platform/usedef/usedef_analysis.hpp"
#include "tools/check/check_run.hpp"
#include "tools/rules/rule_table.hpp"

namespace {

namespace fs = std::filesystem;
using plexus::bench::require;

constexpr std::size_t kMinimumFiles = 10'000;

/// The generated corpus written out once per process into a temporary
/// folder of its own, removed at exit.
class CorpusOnDisk {
 public:
  CorpusOnDisk() {
    std::string pattern = (fs::temp_directory_path() / "plexus_bench_check_XXXXXX").string();
    require(mkdtemp(pattern.data()) != nullptr, "cannot make a temporary folder");
    folder_ = pattern;
    // The generator works to a size, not a count: the size of a sample of its
    // files tells how many bytes make enough files.
    plexus::bench::GeneratedCorpus const sample = plexus::bench::generateCorpus(1u << 20);
    double const averageBytes = static_cast<double>(sample.bytes) / static_cast<double>(sample.files.size());
    auto wanted = static_cast<std::size_t>(averageBytes * kMinimumFiles * 1.05);
    plexus::bench::GeneratedCorpus corpus = plexus::bench::generateCorpus(wanted);
    while (corpus.files.size() < kMinimumFiles) {
      wanted += wanted / 10;
      corpus = plexus::bench::generateCorpus(wanted);
    }
    std::set<std::string> written;
    for (plexus::bench::GeneratedFile const& file : corpus.files) {
      // The generator may give two files the same path; the second goes to a
      // copy of its project folder, so that its package and class folders
      // stay what they are.
      std::string relative = file.path;
      for (int copy = 2; !written.insert(relative).second; ++copy) {
        std::size_t const slash = file.path.find('/');
        relative = file.path.substr(0, slash) + "_copy" + std::to_string(copy) + file.path.substr(slash);
      }
      fs::path const path = folder_ / relative;
      fs::create_directories(path.parent_path());
      std::ofstream out(path, std::ios::binary);
      out << file.source;
      require(out.good(), "cannot write " + path.string());
    }
    files_ = corpus.files.size();
    bytes_ = corpus.bytes;
  }
  CorpusOnDisk(CorpusOnDisk const&) = delete;
  CorpusOnDisk& operator=(CorpusOnDisk const&) = delete;
  ~CorpusOnDisk() {
    std::error_code ignored;
    fs::remove_all(folder_, ignored);
  }

  std::string folder() const { return folder_.string(); }
  std::size_t files() const { return files_; }
  std::size_t bytes() const { return bytes_; }

 private:
  fs::path folder_;
  std::size_t files_ = 0;
  std::size_t bytes_ = 0;
};

CorpusOnDisk const& corpus() {
  static CorpusOnDisk const made;
  return made;
}

/// Asks the analysis of a file for every analysis that the front end
/// registers, as the rules together would.
void makeEveryAnalysis(ca::clients::AnalysisImpl const& analysis) {
  benchmark::DoNotOptimize(analysis.getSymbolTableImpl().get());
  benchmark::DoNotOptimize(analysis.getIdUseAnalysis().get());
  benchmark::DoNotOptimize(analysis.getCallResolutionAnalysis().get());
  benchmark::DoNotOptimize(&analysis.get<ca::controlflow::ControlFlowAnalysis>());
  benchmark::DoNotOptimize(&analysis.get<ca::usedef::UseDefAnalysis>());
  benchmark::DoNotOptimize(analysis.getToskAnalysis().get());
}

/// The analyses that makeEveryAnalysis asks for must be all that the front
/// end registers; one added there and not here would be left to the rules.
void requireEveryRegisteredAnalysisIsMade() {
  auto const registry = frontend::registeredAnalyses();
  for (auto const id : {ca::nameresolution::SymbolTable::GetAnalysisId(),
                        ca::nameresolution::IdUseAnalysis::GetAnalysisId(),
                        ca::callresolution::CallResolutionAnalysis::GetAnalysisId(),
                        ca::controlflow::ControlFlowAnalysis::GetAnalysisId(),
                        ca::usedef::UseDefAnalysis::GetAnalysisId(), ca::tosk::ToskAnalysis::GetAnalysisId()}) {
    require(registry->provides(id), "the front end no longer registers an analysis that the check benchmark makes");
  }
}

/// User and system time of every thread of the process so far.
double processCpuSeconds() {
  rusage usage{};
  getrusage(RUSAGE_SELF, &usage);
  auto const seconds = [](timeval const& time) {
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) * 1e-6;
  };
  return seconds(usage.ru_utime) + seconds(usage.ru_stime);
}

enum class Rules : int { None = 0, All = 1 };

plexus::check::CheckOptions checkOptions(Rules rules, unsigned jobs) {
  plexus::check::CheckOptions options;
  options.paths = {corpus().folder()};
  options.jobs = jobs;
  if (rules == Rules::None) {
    options.selection.enabled.assign(options.selection.enabled.size(), false);
    options.beforeRules = makeEveryAnalysis;
  }
  return options;
}

/// What runs of one configuration cost, summed over its repetitions so far.
struct RunCost {
  double wallSeconds = 0;  // per run
  double cpuSeconds = 0;   // per run
  int repetitions = 0;
};

/// The configurations measured so far in this process, for the ratios.
std::map<std::pair<Rules, unsigned>, RunCost>& measuredRuns() {
  static std::map<std::pair<Rules, unsigned>, RunCost> measured;
  return measured;
}

/// The mean cost per run of a configuration measured before, if any.
std::optional<RunCost> meanRunCost(Rules rules, unsigned jobs) {
  auto const found = measuredRuns().find({rules, jobs});
  if (found == measuredRuns().end() || found->second.repetitions == 0) return std::nullopt;
  RunCost const& sum = found->second;
  return RunCost{sum.wallSeconds / sum.repetitions, sum.cpuSeconds / sum.repetitions, 1};
}

// state.range(0): the rules (Rules); state.range(1): worker threads.
void BM_CheckCorpus(benchmark::State& state) {
  auto const rules = static_cast<Rules>(state.range(0));
  auto const jobs = static_cast<unsigned>(state.range(1));
  CorpusOnDisk const& files = corpus();
  requireEveryRegisteredAnalysisIsMade();
  plexus::check::CheckOptions const options = checkOptions(rules, jobs);

  // Every generated file must be checked and parse cleanly, or this measures
  // something else than a clean code base.
  plexus::check::CheckReport const first = plexus::check::runCheck(options);
  require(first.files == files.files(), "the check saw " + std::to_string(first.files) + " of " +
                                            std::to_string(files.files()) + " generated files");
  require(first.inputErrors.empty(), "the check reported an input error");
  for (plexus::check::Finding const& finding : first.findings) {
    require(finding.rule != &plexus::rules::syntaxErrorRule(),
            "generated file " + finding.path + " does not parse: " + finding.message);
  }
  require(rules == Rules::All || first.findings.empty(), "a check without rules found something");

  std::size_t findings = 0;
  double seconds = 0;
  double const cpuAtStart = processCpuSeconds();
  for (auto _ : state) {
    auto const start = std::chrono::steady_clock::now();
    plexus::check::CheckReport const report = plexus::check::runCheck(options);
    seconds += std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
    findings = report.findings.size();
    benchmark::DoNotOptimize(findings);
  }
  double const cpuSeconds = processCpuSeconds() - cpuAtStart;
  require(findings == first.findings.size(), "a timed run found other findings than the first");

  auto const iterations = static_cast<double>(state.iterations());
  state.SetBytesProcessed(static_cast<std::int64_t>(files.bytes()) * state.iterations());
  state.counters["files_per_s"] =
      benchmark::Counter(static_cast<double>(files.files()) * iterations, benchmark::Counter::kIsRate);
  state.counters["MB_per_s"] =
      benchmark::Counter(static_cast<double>(files.bytes()) / 1e6 * iterations, benchmark::Counter::kIsRate);
  // Processor time of all threads: on a machine busy with other work the
  // wall-time rates fall with the load, this one much less.
  state.counters["cpu_MB_per_s"] =
      benchmark::Counter(cpuSeconds > 0 ? static_cast<double>(files.bytes()) / 1e6 * iterations / cpuSeconds : 0.0);
  state.counters["files"] = static_cast<double>(files.files());
  state.counters["corpus_MB"] = static_cast<double>(files.bytes()) / 1e6;
  state.counters["findings"] = static_cast<double>(findings);

  RunCost const perRun{seconds / iterations, cpuSeconds / iterations, 1};
  RunCost& measured = measuredRuns()[{rules, jobs}];
  measured.wallSeconds += perRun.wallSeconds;
  measured.cpuSeconds += perRun.cpuSeconds;
  measured.repetitions += 1;
  if (rules == Rules::All) {
    if (auto const withoutRules = meanRunCost(Rules::None, jobs)) {
      state.counters["rules_cost"] = perRun.wallSeconds / withoutRules->wallSeconds;
      state.counters["rules_cpu_cost"] = perRun.cpuSeconds / withoutRules->cpuSeconds;
    }
  }
  if (jobs > 1) {
    if (auto const oneThread = meanRunCost(rules, 1)) state.counters["speedup"] = oneThread->wallSeconds / perRun.wallSeconds;
  }
}

void checkConfigurations(benchmark::internal::Benchmark* benchmark) {
  benchmark->ArgNames({"rules", "threads"});
  for (Rules const rules : {Rules::None, Rules::All}) {
    for (int const jobs : {1, 2}) benchmark->Args({static_cast<int>(rules), jobs});
  }
}

BENCHMARK(BM_CheckCorpus)->Apply(checkConfigurations)->UseRealTime()->Unit(benchmark::kMillisecond)->MinTime(3.0);

}  // namespace
