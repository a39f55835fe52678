// plexus check's reports and plexus rule, run as a user runs them: each
// format, --output, colour only on a terminal without NO_COLOR, the exit
// codes, and the rules' documentation.

#include <gtest/gtest.h>

#include <sys/wait.h>
#include <unistd.h>

#include <nlohmann/json.hpp>

#include <array>
#include <cstdio>
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
  std::string output;  // standard output
  std::string errors;  // standard error
};

std::string readFile(std::string const& path) {
  std::ifstream in(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
}

// Runs `command` in a shell from `folder`, standard error apart; a command
// that hangs fails after a minute rather than stopping the tests.
CommandRun run(ScratchFolder const& folder, std::string const& command) {
  std::string const errorsFile = folder / "stderr.txt";
  std::string const line = "cd '" + (folder / "") + "' && " + command + " 2>'" + errorsFile + "'";
  FILE* pipe = popen(line.c_str(), "r");
  if (pipe == nullptr) return {-1, "popen failed", ""};
  std::string output;
  std::array<char, 4096> buffer;
  while (std::size_t n = std::fread(buffer.data(), 1, buffer.size(), pipe)) output.append(buffer.data(), n);
  int const status = pclose(pipe);
  return {WIFEXITED(status) ? WEXITSTATUS(status) : -1, output, readFile(errorsFile)};
}

// plexus with `arguments`, from `folder`, NO_COLOR unset unless `environment`
// sets it.
CommandRun plexus(ScratchFolder const& folder, std::string const& arguments, std::string const& environment = "") {
  return run(folder, "env -u NO_COLOR " + environment + " timeout 60 " + PLEXUS_BINARY + " " + arguments);
}

// The same on a terminal: `script` gives plexus a pseudo-terminal as its
// standard output (and turns its line ends into CR LF).
CommandRun plexusOnTerminal(ScratchFolder const& folder, std::string const& arguments,
                            std::string const& environment = "") {
  return run(folder, "env -u NO_COLOR " + environment + " timeout 60 script -qec '" + PLEXUS_BINARY + " " +
                         arguments + "' /dev/null");
}

// Whether `script` can give a command a terminal here.
bool haveTerminal() { return std::system("script -qec true /dev/null > /dev/null 2>&1") == 0; }

bool holds(std::string const& text, std::string const& part) { return text.find(part) != std::string::npos; }

// A tree with two findings: a global declaration (after a tab and a
// multi-byte character) in a class folder of a package, and a syntax error.
void writeTreeWithFindings(ScratchFolder const& folder) {
  folder.write("src/my dir/+pkg/@Shape/area.m",
               "function a = area(s)\n"
               "\ts = '\xC3\xBC'; global counter\n"
               "a = 1;\n"
               "end\n");
  folder.write("src/broken.m", "x = (1 + ;\n");
  folder.write("src/clean.m", "y = 2;\n");
}

TEST(PlexusCheckReports, ExitCodesSayNoFindingsFindingsOrAnErrorOfUse) {
  ScratchFolder const folder;
  ASSERT_TRUE(folder.made());
  folder.write("clean/a.m", "y = 2;\n");
  writeTreeWithFindings(folder);

  CommandRun const clean = plexus(folder, "check clean");
  EXPECT_EQ(clean.exitCode, 0) << clean.output << clean.errors;
  EXPECT_EQ(clean.output, "");
  EXPECT_EQ(clean.errors, "0 findings in 0 files (1 file checked)\n");

  CommandRun const found = plexus(folder, "check src");
  EXPECT_EQ(found.exitCode, 1) << found.output << found.errors;
  EXPECT_EQ(found.errors, "2 findings in 2 files (3 files checked)\n");

  CommandRun const missing = plexus(folder, "check clean nowhere");
  EXPECT_EQ(missing.exitCode, 2) << missing.output << missing.errors;
  EXPECT_TRUE(holds(missing.errors, "nowhere: error: no such file or folder")) << missing.errors;

  for (std::string const arguments : {"check --format xml src", "check --enable no-such-rule src",
                                      "check --output", "rule no-such-rule", "rule"}) {
    CommandRun const wrong = plexus(folder, arguments);
    EXPECT_EQ(wrong.exitCode, 2) << arguments << "\n" << wrong.output << wrong.errors;
    EXPECT_EQ(wrong.output, "") << arguments;
    EXPECT_NE(wrong.errors, "") << arguments;
  }
}

TEST(PlexusCheckReports, TextShowsTheSourceLineAndACaretLineUnderTheSpan) {
  ScratchFolder const folder;
  ASSERT_TRUE(folder.made());
  writeTreeWithFindings(folder);
  for (std::string const format : {"", "--format text "}) {
    CommandRun const text = plexus(folder, "check " + format + "src");
    EXPECT_EQ(text.exitCode, 1) << text.errors;
    EXPECT_EQ(text.output,
              "src/broken.m:1:10: error: expected an expression but found ';' [syntax-error]\n"
              "x = (1 + ;\n"
              "         ^\n"
              "src/my dir/+pkg/@Shape/area.m:2:18: warning: 'counter' is declared global [global-declaration]\n"
              "\ts = '\xC3\xBC'; global counter\n"
              "\t                ^~~~~~~\n")
        << format;
  }
}

TEST(PlexusCheckReports, JsonIsOneDocumentOfTheFindingsAndTheFilesChecked) {
  ScratchFolder const folder;
  ASSERT_TRUE(folder.made());
  writeTreeWithFindings(folder);
  CommandRun const json = plexus(folder, "check --format json src");
  EXPECT_EQ(json.exitCode, 1) << json.errors;
  nlohmann::json const document = nlohmann::json::parse(json.output);
  EXPECT_EQ(document["version"], 1);
  EXPECT_EQ(document["files"], 3);
  ASSERT_EQ(document["findings"].size(), 2u) << json.output;
  EXPECT_EQ(document["findings"][1], nlohmann::json::parse(R"({
      "path": "src/my dir/+pkg/@Shape/area.m", "line": 2, "column": 18, "endLine": 2, "endColumn": 25,
      "rule": "global-declaration", "severity": "warning", "message": "'counter' is declared global"})"));
  EXPECT_EQ(document["findings"][0]["rule"], "syntax-error");
  EXPECT_EQ(json.errors, "2 findings in 2 files (3 files checked)\n");
}

TEST(PlexusCheckReports, SarifNamesFilesRelativeToTheWorkingFolder) {
  ScratchFolder const folder;
  ASSERT_TRUE(folder.made());
  writeTreeWithFindings(folder);
  CommandRun const sarif = plexus(folder, "check --format sarif src");
  EXPECT_EQ(sarif.exitCode, 1) << sarif.errors;
  nlohmann::json const log = nlohmann::json::parse(sarif.output);
  EXPECT_EQ(log["version"], "2.1.0");
  auto const& run = log["runs"][0];
  // The scratch folder's path has no character that needs encoding.
  EXPECT_EQ(run["originalUriBaseIds"]["%SRCROOT%"]["uri"], "file://" + (folder / ""));
  ASSERT_EQ(run["results"].size(), 2u);
  auto const& result = run["results"][1];
  EXPECT_EQ(result["ruleId"], "global-declaration");
  EXPECT_EQ(run["tool"]["driver"]["rules"][result["ruleIndex"].get<std::size_t>()]["id"], "global-declaration");
  auto const& location = result["locations"][0]["physicalLocation"];
  EXPECT_EQ(location["artifactLocation"]["uri"], "src/my%20dir/+pkg/@Shape/area.m");
  EXPECT_EQ(location["artifactLocation"]["uriBaseId"], "%SRCROOT%");
  EXPECT_EQ(location["region"]["startColumn"], 18);
  EXPECT_EQ(location["region"]["endColumn"], 25);
}

TEST(PlexusCheckReports, OutputWritesTheReportToAFileAndAFileThatCannotBeWrittenIsAnError) {
  ScratchFolder const folder;
  ASSERT_TRUE(folder.made());
  writeTreeWithFindings(folder);
  // Even from a terminal, the file gets no colour.
  std::string const arguments = "check --output report.txt src";
  CommandRun const written = haveTerminal() ? plexusOnTerminal(folder, arguments) : plexus(folder, arguments);
  EXPECT_EQ(written.exitCode, 1) << written.output << written.errors;
  EXPECT_FALSE(holds(written.output, "declared global")) << written.output;
  std::string const report = readFile(folder / "report.txt");
  EXPECT_TRUE(report.starts_with("src/broken.m:1:10: error: ")) << report;
  EXPECT_TRUE(holds(report, "\t                ^~~~~~~\n")) << report;
  EXPECT_FALSE(holds(report, "\x1b[")) << report;

  CommandRun const json = plexus(folder, "check --format json -o report.json src");
  EXPECT_EQ(json.exitCode, 1);
  EXPECT_EQ(json.output, "");
  EXPECT_EQ(nlohmann::json::parse(readFile(folder / "report.json"))["findings"].size(), 2u);

  for (std::string const target : {"no/such/folder/report.txt", "src"}) {
    CommandRun const refused = plexus(folder, "check --output " + target + " src");
    EXPECT_EQ(refused.exitCode, 2) << target;
    EXPECT_EQ(refused.output, "");
    EXPECT_TRUE(holds(refused.errors, "plexus: cannot write the report to '" + target + "': ")) << refused.errors;
    EXPECT_FALSE(holds(refused.errors, "findings in")) << "the run went ahead: " << refused.errors;
  }
}

TEST(PlexusCheckReports, ColourOnlyOnATerminalWithoutNoColor) {
  ScratchFolder const folder;
  ASSERT_TRUE(folder.made());
  writeTreeWithFindings(folder);
  if (!haveTerminal()) GTEST_SKIP() << "no 'script' to give plexus a terminal";

  CommandRun const terminal = plexusOnTerminal(folder, "check src");
  EXPECT_EQ(terminal.exitCode, 1);
  EXPECT_TRUE(holds(terminal.output, "\x1b[1;31merror:\x1b[0m")) << terminal.output;
  EXPECT_TRUE(holds(terminal.output, "\x1b[1;34m[global-declaration]\x1b[0m")) << terminal.output;
  EXPECT_TRUE(holds(terminal.output, "\t                \x1b[1;32m^~~~~~~\x1b[0m")) << terminal.output;
  // An empty NO_COLOR is as good as none (no-color.org).
  EXPECT_TRUE(holds(plexusOnTerminal(folder, "check src", "NO_COLOR=").output, "\x1b[")) << "empty NO_COLOR";

  for (std::string const value : {"1", "0", "no"}) {
    CommandRun const refused = plexusOnTerminal(folder, "check src", "NO_COLOR=" + value);
    EXPECT_TRUE(holds(refused.output, "declared global")) << refused.output;
    EXPECT_FALSE(holds(refused.output, "\x1b[")) << "NO_COLOR=" << value << ": " << refused.output;
  }
  CommandRun const piped = plexus(folder, "check src");
  EXPECT_TRUE(holds(piped.output, "declared global")) << piped.output;
  EXPECT_FALSE(holds(piped.output, "\x1b[")) << piped.output;
}

TEST(PlexusRule, PrintsARulesDocumentationAndCheckListsTheRules) {
  ScratchFolder const folder;
  ASSERT_TRUE(folder.made());
  CommandRun const rule = plexus(folder, "rule global-declaration");
  EXPECT_EQ(rule.exitCode, 0) << rule.errors;
  EXPECT_TRUE(rule.output.starts_with("global-declaration (warning)\nA variable declared global\n")) << rule.output;
  std::size_t place = 0;
  for (std::string const heading : {"\nWhat it finds\n  Each name in a `global` statement.\n", "\nWhy it matters\n",
                                    "\nExample\n      function count = tick()\n", "\nWhat to write instead\n",
                                    "\nKnown limits\n", "\nOptions\n  none\n"}) {
    std::size_t const found = rule.output.find(heading, place);
    EXPECT_NE(found, std::string::npos) << "missing or out of order: " << heading << "\n" << rule.output;
    if (found != std::string::npos) place = found;
  }

  CommandRun const unknown = plexus(folder, "rule no-such-rule");
  EXPECT_EQ(unknown.exitCode, 2);
  EXPECT_EQ(unknown.errors, "plexus: unknown rule id 'no-such-rule' (plexus check --list-rules lists them)\n");

  CommandRun const markdown = plexus(folder, "rule --all --format markdown");
  EXPECT_EQ(markdown.exitCode, 0);
  EXPECT_TRUE(markdown.output.starts_with("# The rules of plexus check\n")) << markdown.output;
  EXPECT_TRUE(holds(markdown.output, "\n## global-declaration\n\nSeverity: **warning**.")) << markdown.output;
  EXPECT_TRUE(holds(markdown.output, "\n## syntax-error\n")) << markdown.output;

  CommandRun const list = plexus(folder, "check --list-rules");
  EXPECT_EQ(list.exitCode, 0);
  // One line a rule, in the table's order.
  std::istringstream lines(list.output);
  std::string line;
  std::size_t count = 0;
  for (; std::getline(lines, line); ++count) {
    ASSERT_LT(count, plexus::rules::ruleTable().size()) << list.output;
    plexus::rules::RuleDefinition const& row = plexus::rules::ruleTable()[count];
    EXPECT_TRUE(line.starts_with(std::string(row.id) + " ")) << line;
    EXPECT_TRUE(holds(line, " " + std::string(plexus::rules::severityName(row.severity)) + " ")) << line;
    EXPECT_TRUE(line.ends_with(" " + std::string(row.summary))) << line;
  }
  EXPECT_EQ(count, plexus::rules::ruleTable().size());
}

}  // namespace
