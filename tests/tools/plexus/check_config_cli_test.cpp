// plexus check with plexus.toml files, run as a user runs it.

#include <gtest/gtest.h>

#include <sys/wait.h>

#include <array>
#include <cstdio>
#include <string>

#include "tests/support/scratch_folder.hpp"
#include "tools/rules/rule_table.hpp"

namespace {

using plexus::testing::ScratchFolder;

struct CommandRun {
  int exitCode;
  std::string output;  // stdout and stderr together
};

// The output without what the text report adds to each finding's head line
// (the source line and the caret line, both indented in these tests' files)
// and without its summary: what the configuration decides is in the heads.
std::string headLines(std::string const& output) {
  std::string kept;
  std::size_t start = 0;
  while (start < output.size()) {
    std::size_t end = output.find('\n', start);
    end = end == std::string::npos ? output.size() : end + 1;
    std::string const line = output.substr(start, end - start);
    bool const summary = line.find(" checked)") != std::string::npos && line.find(" in ") != std::string::npos;
    if (!line.starts_with(" ") && !summary) kept += line;
    start = end;
  }
  return kept;
}

// A command that hangs fails after a minute rather than stopping the tests.
CommandRun plexus(std::string const& arguments, std::string const& workingFolder = ".") {
  std::string const command =
      "cd '" + workingFolder + "' && timeout 60 " + std::string(PLEXUS_BINARY) + " " + arguments + " 2>&1";
  FILE* pipe = popen(command.c_str(), "r");
  if (pipe == nullptr) return {-1, "popen failed"};
  std::string output;
  std::array<char, 4096> buffer;
  while (std::size_t n = std::fread(buffer.data(), 1, buffer.size(), pipe)) output.append(buffer.data(), n);
  int const status = pclose(pipe);
  return {WIFEXITED(status) ? WEXITSTATUS(status) : -1, headLines(output)};
}

bool holds(std::string const& output, std::string const& text) { return output.find(text) != std::string::npos; }

std::string const globalFile = "function f()\n  global counter\nend\n";

// A project whose every file gets a global-declaration finding on line 2.
void writeSources(ScratchFolder const& scratch) {
  scratch.write("p/a.m", globalFile);
  scratch.write("p/sub/b.m", globalFile);
  scratch.write("p/gen/c.m", globalFile);
}

std::string finding(ScratchFolder const& scratch, std::string const& file) {
  return scratch / file + ":2:10: warning: 'counter' is declared global [global-declaration]";
}

TEST(PlexusCheckConfiguration, ABadFileStopsTheRunWithItsPlaceAndExitCodeTwo) {
  ScratchFolder const scratch;
  ASSERT_TRUE(scratch.made());
  writeSources(scratch);
  scratch.write("p/plexus.toml", "[rules]\n\nenable = [\"global-declaration\", \"foo\"]\n");

  CommandRun const run = plexus("check " + scratch / "p");
  EXPECT_EQ(run.exitCode, 2) << run.output;
  EXPECT_EQ(run.output, scratch / "p/plexus.toml" + ":3:33: error: unknown rule id 'foo' in rules.enable\n");
  // Named as the user named the checked files.
  CommandRun const relative = plexus("check p", scratch / "");
  EXPECT_EQ(relative.exitCode, 2) << relative.output;
  EXPECT_EQ(relative.output, "p/plexus.toml:3:33: error: unknown rule id 'foo' in rules.enable\n");

  // Nothing is analysed, even where the bad file does not apply.
  scratch.write("p/sub/plexus.toml", "");
  CommandRun const nested = plexus("check " + scratch / "p/sub " + scratch / "p/a.m");
  EXPECT_EQ(nested.exitCode, 2) << nested.output;
  EXPECT_FALSE(holds(nested.output, "[global-declaration]")) << nested.output;
  EXPECT_TRUE(holds(nested.output, "unknown rule id 'foo'")) << nested.output;

  scratch.write("p/plexus.toml", "[rules\n");
  CommandRun const syntax = plexus("check " + scratch / "p");
  EXPECT_EQ(syntax.exitCode, 2) << syntax.output;
  EXPECT_TRUE(holds(syntax.output, scratch / "p/plexus.toml:1:")) << syntax.output;
  EXPECT_TRUE(holds(syntax.output, "error: not valid TOML: ")) << syntax.output;
}

TEST(PlexusCheckConfiguration, TheNearestFileRulesItsFolderAndTheCommandLineWins) {
  ScratchFolder const scratch;
  ASSERT_TRUE(scratch.made());
  writeSources(scratch);
  scratch.write("p/plexus.toml", "exclude = [\"gen\"]\n\n[rules]\ndisable = [\"global-declaration\"]\n");
  scratch.write("p/sub/plexus.toml", "[rules]\nenable = [\"global-declaration\"]\n");

  CommandRun const run = plexus("check " + scratch / "p");
  EXPECT_EQ(run.exitCode, 1) << run.output;
  EXPECT_EQ(run.output, finding(scratch, "p/sub/b.m") + "\n");

  CommandRun const enabled = plexus("check " + scratch / "p" + " --enable global-declaration");
  EXPECT_EQ(enabled.exitCode, 1) << enabled.output;
  EXPECT_EQ(enabled.output, finding(scratch, "p/a.m") + "\n" + finding(scratch, "p/sub/b.m") + "\n");

  CommandRun const disabled = plexus("check " + scratch / "p" + " --disable global-declaration");
  EXPECT_EQ(disabled.exitCode, 0) << disabled.output;
  EXPECT_EQ(disabled.output, "");
}

TEST(PlexusCheckConfiguration, AGivenFileReplacesDiscoveryAndIsolatedUsesNone) {
  ScratchFolder const scratch;
  ASSERT_TRUE(scratch.made());
  writeSources(scratch);
  scratch.write("p/plexus.toml", "this is not TOML\n");
  // Relative to its own folder, ci/: leaves out p/gen, keeps p/sub.
  std::string const given = scratch.write("ci/plexus.toml", "exclude = [\"../p/gen\"]\n");

  CommandRun const run = plexus("check --config " + given + " " + scratch / "p");
  EXPECT_EQ(run.exitCode, 1) << run.output;
  EXPECT_EQ(run.output, finding(scratch, "p/a.m") + "\n" + finding(scratch, "p/sub/b.m") + "\n");

  CommandRun const isolated = plexus("check --isolated " + scratch / "p");
  EXPECT_EQ(isolated.exitCode, 1) << isolated.output;
  EXPECT_EQ(isolated.output, finding(scratch, "p/a.m") + "\n" + finding(scratch, "p/gen/c.m") + "\n" +
                                 finding(scratch, "p/sub/b.m") + "\n");

  CommandRun const missing = plexus("check --config " + scratch / "ci/none.toml " + scratch / "p");
  EXPECT_EQ(missing.exitCode, 2) << missing.output;
  EXPECT_EQ(missing.output, scratch / "ci/none.toml" + ": error: cannot open: No such file or directory\n");

  CommandRun const both = plexus("check --isolated --config " + given + " " + scratch / "p");
  EXPECT_EQ(both.exitCode, 2) << both.output;
  EXPECT_TRUE(holds(both.output, "--config excludes --isolated")) << both.output;
}

TEST(PlexusCheckConfiguration, ABundledRulesOptionIsCheckedEndToEnd) {
  plexus::rules::RuleDefinition const* rule = nullptr;
  for (plexus::rules::RuleDefinition const& each : plexus::rules::ruleTable()) {
    if (!each.body->options.empty()) {
      rule = &each;
      break;
    }
  }
  if (rule == nullptr) GTEST_SKIP() << "no bundled rule has options";
  ScratchFolder const scratch;
  ASSERT_TRUE(scratch.made());
  writeSources(scratch);
  std::string const key = std::string(rule->body->options.front().key);
  std::string const id(rule->id);
  scratch.write("p/plexus.toml", "[rules." + id + "]\n" + key + " = 1.5\n");

  CommandRun const run = plexus("check " + scratch / "p");
  EXPECT_EQ(run.exitCode, 2) << run.output;
  EXPECT_EQ(run.output, scratch / "p/plexus.toml" + ":2:" + std::to_string(key.size() + 4) +
                            ": error: bad value for rules." + id + "." + key + ": 1.5 is not an integer\n");
}

}  // namespace
