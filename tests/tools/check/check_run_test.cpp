// The checker's run over files: order, threads, bad files among good ones,
// exclusion and suppression comments, from files on disk to the findings.

#include <gtest/gtest.h>

#include <sys/stat.h>

#include <filesystem>
#include <tuple>

#include "tests/support/scratch_folder.hpp"
#include "tools/check/check_run.hpp"
#include "tools/check/suppressions.hpp"
#include "tools/rules/rule_table.hpp"

namespace {

using plexus::check::CheckOptions;
using plexus::check::Finding;
using plexus::check::runCheck;
using plexus::testing::ScratchFolder;

auto fields(Finding const& f) {
  return std::tie(f.path, f.range.line, f.range.column, f.range.endLine, f.range.endColumn, f.rule, f.severity,
                  f.message, f.lineText);
}

std::vector<std::string> described(std::vector<Finding> const& findings) {
  std::vector<std::string> lines;
  for (Finding const& f : findings) {
    lines.push_back(std::filesystem::path(f.path).filename().string() + ":" + std::to_string(f.range.line) + ":" +
                    std::to_string(f.range.column) + " " + std::string(f.rule->id));
  }
  return lines;
}

TEST(CheckRun, FindingsAreSortedAndTheSameOnAnyNumberOfThreads) {
  CheckOptions options;
  options.paths = {PLEXUS_CORPUS_DIR, PLEXUS_RULE_CASES};
  options.jobs = 1;
  auto const one = runCheck(options);
  ASSERT_GT(one.files, 50u);
  ASSERT_GE(one.findings.size(), 5u) << "the corpus and the rule cases have findings";
  EXPECT_TRUE(std::is_sorted(one.findings.begin(), one.findings.end()));
  for (unsigned jobs : {2u, 7u}) {
    options.jobs = jobs;
    auto const many = runCheck(options);
    EXPECT_EQ(many.files, one.files);
    ASSERT_EQ(many.findings.size(), one.findings.size()) << jobs << " threads";
    for (std::size_t i = 0; i < one.findings.size(); ++i) {
      EXPECT_EQ(fields(many.findings[i]), fields(one.findings[i])) << jobs << " threads, finding " << i;
    }
  }
}

TEST(CheckRun, UnreadableAndUnparsableFilesAreReportedAndTheOthersGoOn) {
  ScratchFolder folder;
  folder.write("a_good.m", "function a_good()\n  global shared\nend\n");
  folder.write("b_broken.m", "function b_broken()\n  x = (1 + ;\nend\n");
  std::filesystem::create_symlink(folder / "nowhere", folder / "c_gone.m");
  ASSERT_EQ(mkfifo((folder / "d_pipe.m").c_str(), 0600), 0);
  folder.write("e_good.m", "global other\n");

  CheckOptions options;
  options.paths = {folder / "", folder / "missing.m"};
  auto const report = runCheck(options);
  EXPECT_EQ(described(report.findings),
            (std::vector<std::string>{"a_good.m:2:10 global-declaration", "b_broken.m:2:12 syntax-error",
                                      "c_gone.m:0:0 syntax-error", "d_pipe.m:0:0 syntax-error",
                                      "e_good.m:1:8 global-declaration"}));
  EXPECT_EQ(report.files, 5u);
  ASSERT_EQ(report.inputErrors.size(), 1u) << "a path given that does not exist is an input error";
  EXPECT_NE(report.inputErrors[0].find("missing.m"), std::string::npos);
  // The line of a finding travels with it, for the reports.
  EXPECT_EQ(report.findings[0].lineText, "  global shared");
  EXPECT_EQ(report.findings[2].severity, plexus::rules::Severity::Error);
}

TEST(CheckRun, ExclusionAndSuppressionLeaveOutWhatTheyName) {
  ScratchFolder folder;
  folder.write("keep/kept.m", "global a  % plexus: ignore eval-call\nglobal b  % plexus: ignore global-declaration\n");
  folder.write("keep/quiet.m", "% Setup shared with the old tools.\n% plexus: ignore-file global-declaration\nglobal c\n");
  folder.write("keep/late.m", "x = 1;\n\n\n\n\n\n\n\n\n\n% plexus: ignore-file global-declaration\nglobal d\n");
  folder.write("build/out.m", "global e\n");
  folder.write("keep/gen_table.m", "global f\n");

  CheckOptions options;
  options.paths = {folder / "keep", folder / "build"};
  options.excludes = {"build", "gen_*.m"};
  auto const report = runCheck(options);
  EXPECT_EQ(described(report.findings),
            (std::vector<std::string>{"kept.m:1:8 global-declaration", "late.m:12:8 global-declaration"}))
      << "an ignore of another rule, and an ignore-file below the first lines, silence nothing";
  EXPECT_EQ(report.files, 3u);

  // A glob with a slash is matched against the whole path.
  EXPECT_TRUE(plexus::check::isExcluded("./src/gen/a.m", {"src/gen"}));
  EXPECT_TRUE(plexus::check::isExcluded("src/gen/a.m", {"./src/*/a.m"}));
  EXPECT_FALSE(plexus::check::isExcluded("src/general/a.m", {"src/gen"}));
  EXPECT_FALSE(plexus::check::isExcluded("lib/src/gen/a.m", {"src/gen"}));
}

TEST(Suppressions, IdsListsAndPlacesThatCount) {
  auto const s = plexus::check::Suppressions::of(
      "%plexus: ignore-file a-rule,b-rule\r\n"
      "x = eval(t);   %   plexus:   ignore  eval-call  long-identifier\r\n"
      "y = 1; % note % plexus: ignore c-rule\n"
      "disp('% plexus: ignore d-rule') % why\n");
  EXPECT_TRUE(s.silences("a-rule", 40));
  EXPECT_TRUE(s.silences("b-rule", 1));
  EXPECT_TRUE(s.silences("eval-call", 2));
  EXPECT_TRUE(s.silences("long-identifier", 2));
  EXPECT_FALSE(s.silences("eval-call", 3));
  EXPECT_TRUE(s.silences("c-rule", 3)) << "the last comment of the line counts";
  EXPECT_FALSE(s.silences("d-rule", 4)) << "a directive followed by another comment is not the last one";
  EXPECT_EQ(s.named().size(), 5u);
}

}  // namespace
