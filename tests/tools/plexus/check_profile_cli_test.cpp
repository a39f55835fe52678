// What `plexus check` tells about a run (--profile, --statistics, the
// progress line) and `plexus graph`, run as a user runs them, with standard
// output and standard error apart.

#include <gtest/gtest.h>

#include <sys/wait.h>

#include <cstdlib>
#include <fstream>
#include <sstream>
#include <string>

#include "tests/support/scratch_folder.hpp"
#include "tools/rules/rule_table.hpp"

namespace {

using plexus::testing::ScratchFolder;

struct CommandRun {
  int exitCode;
  std::string out;
  std::string err;
};

std::string contentsOf(std::string const& path) {
  std::ifstream in(path, std::ios::binary);
  std::ostringstream text;
  text << in.rdbuf();
  return text.str();
}

// A command that hangs fails after five minutes rather than stopping the
// tests; the progress test's long runs take most of a minute in sanitized builds.
// Both streams go to files, so that neither is a terminal.
CommandRun plexus(ScratchFolder const& folder, std::string const& arguments) {
  std::string const out = folder / "stdout";
  std::string const err = folder / "stderr";
  std::string const command =
      "timeout 300 " + std::string(PLEXUS_BINARY) + " " + arguments + " >" + out + " 2>" + err;
  int const status = std::system(command.c_str());
  return {WIFEXITED(status) ? WEXITSTATUS(status) : -1, contentsOf(out), contentsOf(err)};
}

bool holds(std::string const& output, std::string const& text) { return output.find(text) != std::string::npos; }

// Two files with a global declaration each, one with a syntax error.
struct Sources {
  ScratchFolder folder;
  std::string root = folder.write("src/a.m", "function a()\n  global counter\n  counter = 1;\nend\n");
  std::string b = folder.write("src/b.m", "global shared\nshared = 2;\n");
  std::string bad = folder.write("src/bad.m", "x = (1;\n");
  std::string paths = folder / "src";
};

TEST(PlexusCheckProfile, PrintsARowPerEnabledRuleAndTheTimeOfParsingAndOfEachAnalysis) {
  Sources const sources;
  CommandRun const run = plexus(sources.folder, "check -j 2 --profile " + sources.paths);
  EXPECT_EQ(run.exitCode, 1) << run.err;
  // The findings stay alone on standard output.
  EXPECT_TRUE(holds(run.out, "a.m:2:10: warning: 'counter' is declared global [global-declaration]\n")) << run.out;
  EXPECT_FALSE(holds(run.out, "profile")) << run.out;
  EXPECT_TRUE(holds(run.err, "profile: 3 files on 2 threads, times in ms\n")) << run.err;
  EXPECT_TRUE(holds(run.err, "\nrule ")) << run.err;
  // Two names reached the rule's report.
  std::size_t const row = run.err.find("\nglobal-declaration ");
  ASSERT_NE(row, std::string::npos) << run.err;
  std::istringstream cells(run.err.substr(row + 1, run.err.find('\n', row + 1) - row - 1));
  std::string id;
  int items = -1;
  cells >> id >> items;
  EXPECT_EQ(items, 2) << run.err;
  for (char const* line : {"\nshared by rules (each vertex once) ", "\nrules ", "\nparse ", "\nanalysis: names ",
                           "\nanalysis: calls ", "\nanalysis: control flow ", "\nanalysis: use-def ",
                           "\nanalysis: class objects ", "\nother (reading, tree walk, suppressions) ",
                           "\nthreads in all ", "\ntotal (wall clock) "}) {
    EXPECT_TRUE(holds(run.err, line)) << line << " in\n" << run.err;
  }
  // Standard error is a file: no progress line.
  EXPECT_FALSE(holds(run.err, "\r")) << run.err;

  CommandRun const without = plexus(sources.folder, "check --profile " + sources.paths + " --disable global-declaration");
  EXPECT_EQ(without.exitCode, 1) << without.err;
  EXPECT_FALSE(holds(without.err, "global-declaration")) << without.err;
  EXPECT_TRUE(holds(without.err, "\nparse ")) << without.err;
}

TEST(PlexusCheckStatistics, CountsByRuleWithTotalsOnStandardError) {
  Sources const sources;
  CommandRun const run = plexus(sources.folder, "check --statistics " + sources.paths);
  EXPECT_EQ(run.exitCode, 1) << run.err;
  EXPECT_EQ(run.err,
            "findings by rule:\n"
            "       2  global-declaration\n"
            "       1  syntax-error\n"
            "       3  in all, in 3 files checked\n"
            "3 findings in 3 files (3 files checked)\n");
  EXPECT_FALSE(holds(run.out, "findings by rule")) << run.out;

  CommandRun const none = plexus(sources.folder, "check --statistics " + sources.b + " --disable global-declaration");
  EXPECT_EQ(none.exitCode, 0) << none.err;
  EXPECT_EQ(none.err, "findings by rule:\n       0  in all, in 1 file checked\n0 findings in 0 files (1 file checked)\n");
}

// A run long enough for the progress line's delay: many files to parse.
std::string writeManyFiles(ScratchFolder const& folder) {
  std::string body;
  for (int i = 0; i < 400; ++i) body += "function r = f" + std::to_string(i) + "(a, b)\n  r = a + b * 2;\nend\n";
  for (int file = 0; file < 500; ++file) folder.write("many/f" + std::to_string(file) + ".m", body);
  return folder / "many";
}

// Every rule with a pipeline off: the run parses only, long enough for the
// progress line in an optimised build and short enough in a sanitized one.
std::string parseOnly() {
  std::string ids;
  for (plexus::rules::RuleDefinition const& rule : plexus::rules::ruleTable()) {
    if (rule.body->declare == nullptr) continue;
    ids += (ids.empty() ? "" : ",") + std::string(rule.id);
  }
  return " --disable " + ids + " ";
}

TEST(PlexusCheckProgress, ShownOnATerminalAndClearedButNeverWhenStandardErrorIsAFile) {
  ScratchFolder const folder;
  std::string const many = writeManyFiles(folder);
  CommandRun const toFile = plexus(folder, "check -j 1 --statistics" + parseOnly() + many);
  EXPECT_EQ(toFile.exitCode, 0) << toFile.err;
  EXPECT_EQ(toFile.err,
            "findings by rule:\n       0  in all, in 500 files checked\n0 findings in 0 files (500 files checked)\n");

  // `script` gives the command a terminal of its own and copies what it
  // shows to a file.
  if (std::system("command -v script >/dev/null 2>&1") != 0) GTEST_SKIP() << "no `script` to make a terminal";
  std::string const command = "timeout 300 script -qefc '" + std::string(PLEXUS_BINARY) + " check -j 1 --statistics" +
                              parseOnly() + many + "' /dev/null >" + (folder / "terminal") + " 2>&1";
  ASSERT_EQ(std::system(command.c_str()), 0);
  std::string const shown = contentsOf(folder / "terminal");
  EXPECT_TRUE(holds(shown, "/500 files, 0 findings, ")) << shown;
  // Drawn in place: the run has nothing to say before it, and it starts with
  // a carriage return, not a line of its own.
  EXPECT_EQ(shown.find('\r'), 0u) << shown;
  // Cleared before the statistics, which start on a clean line.
  std::size_t const statistics = shown.find("findings by rule:");
  ASSERT_NE(statistics, std::string::npos) << shown;
  ASSERT_GE(statistics, 2u);
  EXPECT_EQ(shown.substr(statistics - 2, 2), " \r") << shown;
}

TEST(PlexusGraph, ListsTheChosenRulesAsTextOrDotAndRefusesAnUnknownRule) {
  ScratchFolder const folder;
  CommandRun const text = plexus(folder, "graph --rules global-declaration");
  EXPECT_EQ(text.exitCode, 0) << text.err;
  EXPECT_EQ(text.out.rfind("#1 Root Program\n", 0), 0u) << text.out;
  EXPECT_TRUE(holds(text.out, " Report global-declaration\n")) << text.out;

  CommandRun const dot = plexus(folder, "graph --rules global-declaration --format dot");
  EXPECT_EQ(dot.exitCode, 0) << dot.err;
  EXPECT_EQ(dot.out.rfind("digraph plexus {\n", 0), 0u) << dot.out;
  EXPECT_TRUE(holds(dot.out, "[label=\"Report\\nglobal-declaration\"];\n")) << dot.out;
  EXPECT_TRUE(holds(dot.out, " -> v")) << dot.out;
  EXPECT_TRUE(dot.out.ends_with("}\n")) << dot.out;

  // Every rule by default, each with its report; the syntax-error rule has
  // no pipeline to show.
  CommandRun const all = plexus(folder, "graph");
  EXPECT_EQ(all.exitCode, 0) << all.err;
  for (plexus::rules::RuleDefinition const& rule : plexus::rules::ruleTable()) {
    bool const shown = holds(all.out, " Report " + std::string(rule.id) + "\n") ||
                       holds(all.out, " Report " + std::string(rule.id) + " (");
    EXPECT_EQ(shown, rule.body->declare != nullptr) << rule.id;
  }
  EXPECT_TRUE(all.out.starts_with("#1 Root ")) << all.out;

  CommandRun const unknown = plexus(folder, "graph --rules global-declaration,no-such-rule");
  EXPECT_EQ(unknown.exitCode, 2);
  EXPECT_TRUE(holds(unknown.err, "unknown rule id 'no-such-rule'")) << unknown.err;
  EXPECT_EQ(unknown.out, "");
  EXPECT_EQ(plexus(folder, "graph --format svg").exitCode, 2);
}

}  // namespace
