// The plexus command: parses, dumps and checks files of the analysed language.

#include <fmt/format.h>
#include <CLI/CLI.hpp>

#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "frontend/parse.hpp"
#include "frontend/source_file_reader.hpp"
#include "frontend/tree_dump.hpp"
#include "tools/check/check_run.hpp"
#include "tools/check/configuration_discovery.hpp"
#include "tools/check/reports/report_format.hpp"
#include "tools/check/reports/report_output.hpp"
#include "tools/check/reports/report_summary.hpp"
#include "tools/check/reports/rule_command.hpp"
#include "tools/check/reports/rule_list.hpp"
#include "tools/check/progress_line.hpp"
#include "tools/check/rule_graph.hpp"
#include "tools/check/statistics.hpp"
#include "tools/listing/graph_listing.hpp"
#include "tools/plexus/source_files.hpp"

namespace {

// Reports a path that could not be read, after the diagnostics printed so
// far, so that both streams read in order when they go to one place.
void reportUnreadable(frontend::Diagnostic const& problem) {
  std::fflush(stdout);
  fmt::print(stderr, "{}\n", frontend::formatDiagnostic(problem));
}

int runParse(std::vector<std::string> const& paths) {
  frontend::SourceFileReader reader;
  std::size_t parsed = 0, withErrors = 0, unreadable = 0;
  plexus::cli::SourceVisitor visitor;
  visitor.problem = [&unreadable](frontend::Diagnostic const& problem) {
    reportUnreadable(problem);
    ++unreadable;
  };
  visitor.file = [&](std::string const& path) {
    frontend::SourceFileReader::Result const read = reader.read(path.c_str());
    if (!read.ok()) {
      visitor.problem(read.diagnostic(path));
      return;
    }
    frontend::ParseResult const result = frontend::parse(read.bytes, path);
    for (frontend::Diagnostic const& diagnostic : result.diagnostics) {
      fmt::print("{}\n", frontend::formatDiagnostic(diagnostic));
    }
    ++parsed;
    if (result.hasErrors()) ++withErrors;
  };
  plexus::cli::walkSourceFiles(paths, visitor);
  std::fflush(stdout);  // keep the summary after the diagnostics
  std::string summary = fmt::format("{} {} parsed, {} with errors", parsed, parsed == 1 ? "file" : "files", withErrors);
  if (unreadable > 0) summary += fmt::format(", {} could not be read", unreadable);
  fmt::print(stderr, "{}\n", summary);
  return withErrors > 0 || unreadable > 0 ? 1 : 0;
}

int runDump(std::string const& path) {
  frontend::SourceFileReader reader;
  frontend::SourceFileReader::Result const read = reader.read(path.c_str());
  if (!read.ok()) {
    reportUnreadable(read.diagnostic(path));
    return 1;
  }
  frontend::ParseResult const result = frontend::parse(read.bytes, path);
  for (frontend::Diagnostic const& diagnostic : result.diagnostics) {
    fmt::print(stderr, "{}\n", frontend::formatDiagnostic(diagnostic));
  }
  if (result.tree) fmt::print("{}\n", frontend::dumpTree(*result.tree->getProgram(), frontend::DumpLayout::Indented));
  return result.hasErrors() ? 1 : 0;
}

struct CheckArguments {
  std::vector<std::string> paths;
  std::vector<std::string> excludes;
  std::vector<std::string> enable;
  std::vector<std::string> disable;
  unsigned jobs = 0;
  bool listRules = false;
  std::string config;  // --config: one file for every checked file
  bool isolated = false;
  std::string format = "text";  // a key of reportFormatNames()
  std::string output;  // standard output when empty
  // What a run tells about itself on standard error.
  bool profile = false;
  bool statistics = false;
};

int runCheck(CheckArguments const& arguments) {
  namespace reports = plexus::check::reports;
  if (arguments.listRules) {
    fmt::print("{}", reports::ruleList());
    return 0;
  }
  bool usageError = false;
  for (auto const* ids : {&arguments.enable, &arguments.disable}) {
    for (std::string const& id : plexus::check::unknownRuleIds(*ids)) {
      fmt::print(stderr, "plexus: unknown rule id '{}' (plexus check --list-rules lists them)\n", id);
      usageError = true;
    }
  }
  if (usageError) return 2;
  reports::ReportOutput output(arguments.output);
  if (!output.error().empty()) {
    fmt::print(stderr, "{}\n", output.error());
    return 2;
  }
  plexus::check::CheckOptions options;
  if (!arguments.paths.empty()) options.paths = arguments.paths;
  options.excludes = arguments.excludes;
  options.jobs = arguments.jobs;
  plexus::check::applyCommandLine(options.selection, arguments.enable, arguments.disable);
  options.profile = arguments.profile;
  plexus::check::CheckProgress progress;
  std::optional<plexus::check::ProgressLine> progressLine;
  if (isatty(fileno(stderr)) != 0) {
    options.progress = &progress;
    progressLine.emplace(stderr, progress);
  }
  plexus::check::CheckReport report;
  try {
    using plexus::check::ConfigurationDiscovery;
    ConfigurationDiscovery discovery = arguments.isolated        ? ConfigurationDiscovery::isolated()
                                       : arguments.config.empty() ? ConfigurationDiscovery::nearest()
                                                                  : ConfigurationDiscovery::given(arguments.config);
    options.selectionFor = [&discovery, &arguments](std::string const& path) {
      return plexus::check::selectionFor(discovery.configurationFor(path), path, arguments.enable,
                                         arguments.disable);
    };
    report = plexus::check::runCheck(options);
  } catch (plexus::check::ConfigurationError const& error) {
    progressLine.reset();
    for (std::string const& problem : error.problems()) fmt::print(stderr, "{}\n", problem);
    return 2;
  }
  progressLine.reset();  // cleared before anything else is printed
  reports::writeReport(output.stream(), report, reports::reportFormatNames().at(arguments.format), output.colour(),
                       std::filesystem::current_path());
  if (!output.finish()) {
    fmt::print(stderr, "{}\n", output.error());
    return 2;
  }
  std::fflush(stdout);
  for (std::string const& error : report.inputErrors) fmt::print(stderr, "{}\n", error);
  if (arguments.statistics) fmt::print(stderr, "{}", plexus::check::formatStatistics(report.findings, report.files));
  if (report.profile) fmt::print(stderr, "{}", plexus::check::formatProfile(*report.profile));
  fmt::print(stderr, "{}\n", reports::reportSummary(report));
  if (!report.inputErrors.empty()) return 2;
  return report.findings.empty() ? 0 : 1;
}

struct GraphArguments {
  std::vector<std::string> rules;
  std::string format = "text";
};

// The graph of the rules as `plexus check` declares them, each rule with its
// default options.
int runGraph(GraphArguments const& arguments) {
  std::vector<std::string> const unknown = plexus::check::unknownRuleIds(arguments.rules);
  for (std::string const& id : unknown) {
    fmt::print(stderr, "plexus: unknown rule id '{}' (plexus check --list-rules lists them)\n", id);
  }
  if (!unknown.empty()) return 2;
  plexus::check::RuleSelection selection = plexus::check::RuleSelection::defaults();
  if (!arguments.rules.empty()) {
    std::fill(selection.enabled.begin(), selection.enabled.end(), false);
    plexus::check::applyCommandLine(selection, arguments.rules, {});
  }
  plexus::check::RuleGraph const graph(plexus::check::declarationsOf(selection));
  fmt::print("{}", arguments.format == "dot" ? plexus::listing::graphToDot(graph.all())
                                              : plexus::listing::listGraph(graph.all()));
  return 0;
}

}  // namespace

int main(int argc, char** argv) {
  CLI::App app{"plexus: a static analyser for the analysed language (.m files)"};
  app.require_subcommand(1);

  std::vector<std::string> parsePaths;
  CLI::App* parse =
      app.add_subcommand("parse", "Parse files and folders (recursively, .m files) and report syntax errors");
  parse->add_option("paths", parsePaths, "Files and folders")->required();

  std::string dumpPath;
  CLI::App* dump = app.add_subcommand("dump", "Print the syntax tree of a file");
  dump->add_option("file", dumpPath, "The file")->required();

  CheckArguments checkArguments;
  CLI::App* check = app.add_subcommand("check", "Check files and folders (recursively, .m files) with the bundled rules");
  check->add_option("paths", checkArguments.paths, "Files and folders (default: .)");
  // One value per occurrence, so that `--enable x src` leaves `src` a path.
  check->add_option("--exclude", checkArguments.excludes, "Leave out paths that match this glob (repeatable)")
      ->allow_extra_args(false);
  check->add_option("--enable", checkArguments.enable, "Turn these rules on (repeatable, or a,b; wins over files)")
      ->delimiter(',')
      ->allow_extra_args(false);
  check->add_option("--disable", checkArguments.disable, "Turn these rules off (repeatable, or a,b; wins over files)")
      ->delimiter(',')
      ->allow_extra_args(false);
  check->add_option("-j,--jobs", checkArguments.jobs, "Worker threads (default: the number of cores)")
      ->check(CLI::Range(1u, 1024u));
  CLI::Option* config =
      check->add_option("--config", checkArguments.config, "Use this plexus.toml for every file instead of the nearest");
  check->add_flag("--isolated", checkArguments.isolated, "Use no plexus.toml")->excludes(config);
  check->add_flag("--list-rules", checkArguments.listRules, "List the rules: id, severity and what each finds");
  check->add_option("--format", checkArguments.format, "The report's format: text (default), json or sarif")
      ->check(CLI::IsMember(plexus::check::reports::reportFormatNames()));
  check->add_option("-o,--output", checkArguments.output, "Write the report to this file instead of standard output");

  plexus::check::reports::RuleCommand ruleCommand;
  std::string ruleFormat = "text";
  CLI::App* rule = app.add_subcommand("rule", "Print a rule's documentation");
  CLI::Option* ruleId = rule->add_option("id", ruleCommand.id, "The rule's id (plexus check --list-rules lists them)");
  rule->add_flag("--all", ruleCommand.all, "Every rule, in the order of the table")->excludes(ruleId);
  rule->add_option("--format", ruleFormat, "text (default) or markdown (--all --format markdown makes docs/rules.md)")
      ->check(CLI::IsMember({"text", "markdown"}));
  // How a run went, on standard error; and the graph the rules make.
  check->add_flag("--profile", checkArguments.profile,
                  "After the run, print the time of each rule, of parsing and of each analysis (standard error)");
  check->add_flag("--statistics", checkArguments.statistics,
                  "After the run, print the number of findings of each rule and of files checked (standard error)");
  GraphArguments graphArguments;
  CLI::App* graph = app.add_subcommand("graph", "Print the graph that the rules make, shared stages once");
  graph->add_option("--rules", graphArguments.rules, "Only these rules (default: all)")->delimiter(',');
  graph->add_option("--format", graphArguments.format, "text (indented) or dot (Graphviz)")
      ->check(CLI::IsMember({"text", "dot"}));

  try {
    app.parse(argc, argv);
  } catch (CLI::ParseError const& e) {
    int const code = app.exit(e);
    return code == 0 ? 0 : 2;
  }
  try {
    if (*parse) return runParse(parsePaths);
    if (*dump) return runDump(dumpPath);
    if (*check) return runCheck(checkArguments);
    if (*rule) {
      ruleCommand.markdown = ruleFormat == "markdown";
      return plexus::check::reports::runRuleCommand(ruleCommand);
    }
    if (*graph) return runGraph(graphArguments);
  } catch (std::exception const& e) {
    fmt::print(stderr, "plexus: internal error: {}\n", e.what());
    return 2;
  }
  return 0;
}
