#include "tools/check/check_run.hpp"

#include <fnmatch.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <filesystem>
#include <map>
#include <thread>

#include "frontend/analysis/registered_analyses.hpp"
#include "frontend/parse.hpp"
#include "frontend/source_decoding.hpp"
#include "frontend/source_file_reader.hpp"
#include "platform/analysis/analysis_impl.hpp"
#include "tools/check/rule_graph.hpp"
#include "tools/check/suppressions.hpp"
#include "tools/check/timed_analyses.hpp"
#include "tools/plexus/source_files.hpp"
#include "tools/rules/rule_table.hpp"

namespace plexus::check {

namespace fs = std::filesystem;

namespace {

std::string_view withoutDotSlash(std::string_view path) {
  while (path.starts_with("./")) path.remove_prefix(2);
  return path;
}

// The distinct rule selections of a run and, for each, the variant of each
// rule it wants: the index of its option values among the distinct option
// values of that rule's enabled declarations, or `off`.
class SelectionVariants {
 public:
  static constexpr std::size_t off = static_cast<std::size_t>(-1);

  std::size_t intern(RuleSelection selection) {
    auto const found = std::find(selections_.begin(), selections_.end(), selection);
    if (found != selections_.end()) return static_cast<std::size_t>(found - selections_.begin());
    std::vector<std::size_t> variants(selection.enabled.size(), off);
    for (std::size_t rule = 0; rule < selection.enabled.size(); ++rule) {
      if (!selection.enabled[rule]) continue;
      auto& known = optionValues_[rule];
      auto const same = std::find(known.begin(), known.end(), selection.options[rule]);
      variants[rule] = static_cast<std::size_t>(same - known.begin());
      if (same == known.end()) known.push_back(selection.options[rule]);
    }
    selections_.push_back(std::move(selection));
    variants_.push_back(std::move(variants));
    return selections_.size() - 1;
  }

  bool wants(std::size_t selection, std::size_t rule, std::size_t variant) const {
    return variants_[selection][rule] == variant;
  }

  // Every option value set of every rule that some selection enables.
  RuleDeclarations const& declarations() const { return optionValues_; }

 private:
  std::vector<RuleSelection> selections_;
  std::vector<std::vector<std::size_t>> variants_;
  RuleDeclarations optionValues_;
};

// The findings of one file, as its run reports them.
class FileFindings final : public rules::FindingSink {
 public:
  FileFindings(SelectionVariants const& variants, std::size_t selection, std::string const& path)
      : variants_(variants), selection_(selection), path_(path) {}

  bool wants(std::size_t rule, std::size_t variant) const override {
    return variants_.wants(selection_, rule, variant);
  }

  void add(std::size_t rule, rules::FindingRange const& range, std::string message) override {
    rules::RuleDefinition const& definition = rules::ruleTable()[rule];
    findings.push_back({path_, range, &definition, definition.severity, std::move(message), {}});
  }

  std::vector<Finding> findings;

 private:
  SelectionVariants const& variants_;
  std::size_t selection_;
  std::string const& path_;
};

Finding diagnosticFinding(frontend::Diagnostic const& diagnostic) {
  rules::FindingRange range{diagnostic.line, diagnostic.column, diagnostic.span.end.line, diagnostic.span.end.column};
  if (diagnostic.line == 0) range = {};
  return {diagnostic.file, range, &rules::syntaxErrorRule(),
          diagnostic.severity == frontend::Severity::Error ? rules::Severity::Error : rules::Severity::Warning,
          diagnostic.message, {}};
}

// Drops what the file's comments silence and gives each finding the text of
// its first line.
void finishFindings(std::vector<Finding>& findings, std::string_view bytes) {
  if (findings.empty()) return;
  frontend::DecodedSource const decoded = frontend::decodeSource(bytes);
  std::string_view const text = decoded.text();
  Suppressions const suppressions = Suppressions::of(text);
  std::erase_if(findings, [&](Finding const& f) { return suppressions.silences(f.rule->id, f.range.line); });
  // Line starts, found once for all findings of the file.
  std::vector<std::size_t> starts{0};
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (text[i] == '\n' || (text[i] == '\r' && (i + 1 == text.size() || text[i + 1] != '\n'))) starts.push_back(i + 1);
  }
  for (Finding& finding : findings) {
    if (finding.range.line == 0 || finding.range.line > starts.size()) continue;
    std::size_t const start = starts[finding.range.line - 1];
    std::size_t end = text.find_first_of("\r\n", start);
    if (end == std::string_view::npos) end = text.size();
    finding.lineText.assign(text.substr(start, end - start));
  }
}

using Clock = std::chrono::steady_clock;

// What one worker of a profiled run measured.
struct WorkerProfile {
  ca::rulesystem::Profiler vertices;
  AnalysisTimes analyses;
  Clock::duration parse{0};
  Clock::duration busy{0};
};

RunProfile profileOf(RuleGraph const& graph, std::vector<WorkerProfile> const& workers, Clock::duration wall,
                     std::size_t files) {
  ca::rulesystem::Profiler vertices;
  AnalysisTimes analyses;
  RunProfile profile;
  for (WorkerProfile const& worker : workers) {
    vertices.merge(worker.vertices);
    analyses.merge(worker.analyses);
    profile.parse += worker.parse;
    profile.workers += worker.busy;
  }
  std::vector<ProfiledRule> rules;
  for (auto const& [rule, reports] : graph.reports()) rules.push_back({std::string(rules::ruleTable()[rule].id), reports});
  profile.rules = ruleTimes(graph.all(), rules, vertices);
  for (auto const& [name, time] : analyses.byName()) profile.analyses.emplace_back(name, time);
  profile.wall = wall;
  profile.threads = static_cast<unsigned>(workers.size());
  profile.files = files;
  return profile;
}

}  // namespace

bool isExcluded(std::string const& path, std::vector<std::string> const& globs) {
  std::string const plain(withoutDotSlash(path));
  for (std::string const& glob : globs) {
    if (glob.find('/') != std::string::npos) {
      std::string const pattern(withoutDotSlash(glob));
      if (fnmatch(pattern.c_str(), plain.c_str(), 0) == 0) return true;
      // A folder glob also leaves out what lies below the folder.
      if (fnmatch((pattern + "/*").c_str(), plain.c_str(), 0) == 0) return true;
      continue;
    }
    for (fs::path const& name : fs::path(plain)) {
      if (fnmatch(glob.c_str(), name.c_str(), 0) == 0) return true;
    }
  }
  return false;
}

CheckReport runCheck(CheckOptions const& options) {
  auto const started = Clock::now();
  CheckReport report;
  std::vector<std::string> files;
  std::vector<Finding> walkFindings;
  for (std::string const& given : options.paths) {
    std::error_code error;
    if (!fs::exists(fs::symlink_status(given, error))) {
      report.inputErrors.push_back(given + ": error: no such file or folder");
    }
  }
  cli::SourceVisitor visitor;
  visitor.file = [&](std::string const& path) {
    if (!isExcluded(path, options.excludes)) files.push_back(path);
  };
  visitor.problem = [&](frontend::Diagnostic const& problem) { walkFindings.push_back(diagnosticFinding(problem)); };
  std::vector<std::string> existing;
  for (std::string const& given : options.paths) {
    std::error_code error;
    if (fs::exists(fs::symlink_status(given, error))) existing.push_back(given);
  }
  cli::walkSourceFiles(existing, visitor);

  SelectionVariants variants;
  std::vector<std::size_t> selectionOf;
  selectionOf.reserve(files.size());
  std::size_t const defaultSelection = variants.intern(options.selection);
  if (options.selectionFor) {
    std::vector<std::string> kept;
    for (std::string& path : files) {
      std::optional<RuleSelection> selection = options.selectionFor(path);
      if (!selection) continue;
      selectionOf.push_back(variants.intern(std::move(*selection)));
      kept.push_back(std::move(path));
    }
    files = std::move(kept);
  } else {
    selectionOf.assign(files.size(), defaultSelection);
  }
  report.files = files.size();

  if (options.progress != nullptr) {
    options.progress->files.store(files.size(), std::memory_order_relaxed);
    options.progress->findings.fetch_add(walkFindings.size(), std::memory_order_relaxed);
  }

  RuleGraph const graph(variants.declarations());
  ca::rulesystem::AllNodes const& all = graph.all();

  std::vector<std::vector<Finding>> perFile(files.size());
  std::vector<std::string> failures(files.size());
  std::atomic<std::size_t> next{0};
  std::size_t const syntaxError = rules::syntaxErrorRule().index;
  unsigned const jobs = options.jobs != 0 ? options.jobs : std::max(1u, std::thread::hardware_concurrency());
  unsigned const workers = static_cast<unsigned>(std::clamp<std::size_t>(files.size(), 1, jobs));
  // One of each per worker, merged after the run: the hot path takes no lock.
  std::vector<WorkerProfile> profiles(options.profile ? workers : 0);
  for (WorkerProfile& profile : profiles) profile.vertices.enableTiming();
  auto countDone = [&](std::vector<Finding> const& found) {
    if (options.progress == nullptr) return;
    options.progress->findings.fetch_add(found.size(), std::memory_order_relaxed);
    options.progress->filesDone.fetch_add(1, std::memory_order_relaxed);
  };
  auto worker = [&](unsigned self) {
    WorkerProfile* const profile = options.profile ? &profiles[self] : nullptr;
    auto const workerStarted = Clock::now();
    frontend::SourceFileReader reader;
    for (std::size_t i = next++; i < files.size(); i = next++) {
      std::string const& path = files[i];
      std::vector<Finding>& found = perFile[i];
      frontend::SourceFileReader::Result const read = reader.read(path.c_str());
      if (!read.ok()) {
        found.push_back(diagnosticFinding(read.diagnostic(path)));
        countDone(found);
        continue;
      }
      // As frontend::analyze does, apart so that a profiled run can time the
      // parse and make the analyses through its timing provider.
      auto const parseStarted = Clock::now();
      frontend::ParseResult parsed = frontend::parse(read.bytes, path);
      if (profile != nullptr) profile->parse += Clock::now() - parseStarted;
      if (variants.wants(selectionOf[i], syntaxError, 0)) {
        for (frontend::Diagnostic const& diagnostic : parsed.diagnostics) found.push_back(diagnosticFinding(diagnostic));
      }
      if (parsed.tree != nullptr && !parsed.hasErrors()) {
        std::shared_ptr<ca::clients::AnalysisProvider const> provider = frontend::registeredAnalyses();
        if (profile != nullptr) {
          provider = std::make_shared<TimedAnalysisProvider>(std::move(provider), profile->analyses, &profile->vertices);
        }
        ca::clients::AnalysisImpl const analysis(std::move(parsed.tree), std::move(provider));
        FileFindings sink(variants, selectionOf[i], path);
        ca::rulesystem::MessageHelper const helper{&sink, profile != nullptr ? &profile->vertices : nullptr};
        try {
          if (options.beforeRules) options.beforeRules(analysis);
          all.execute(analysis, &helper);
        } catch (std::exception const& e) {
          // A fault of ours, not of the file: said, and the other files go on.
          failures[i] = path + ": internal error: " + e.what();
        }
        std::move(sink.findings.begin(), sink.findings.end(), std::back_inserter(found));
      }
      finishFindings(found, read.bytes);
      countDone(found);
    }
    if (profile != nullptr) profile->busy = Clock::now() - workerStarted;
  };
  {
    std::vector<std::jthread> pool;
    for (unsigned j = 1; j < workers; ++j) pool.emplace_back(worker, j);
    worker(0);
  }
  if (options.profile) report.profile = profileOf(graph, profiles, Clock::now() - started, files.size());

  for (std::string& failure : failures) {
    if (!failure.empty()) report.inputErrors.push_back(std::move(failure));
  }
  report.findings = std::move(walkFindings);
  for (auto& found : perFile) std::move(found.begin(), found.end(), std::back_inserter(report.findings));
  std::sort(report.findings.begin(), report.findings.end());
  return report;
}

}  // namespace plexus::check
