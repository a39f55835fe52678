// The bundled samples (samples/ at the top of the tree), checked as
// `plexus check samples/` checks them: they are the code that the main job
// shows the checker on, so every rule must find something there, and only
// the one sample that is meant to be broken may fail to parse.

#include <gtest/gtest.h>

#include <filesystem>
#include <map>
#include <string>
#include <vector>

#include "tools/check/check_run.hpp"
#include "tools/rules/rule_table.hpp"

namespace {

namespace fs = std::filesystem;

fs::path const samplesRoot = PLEXUS_SAMPLES_DIR;

plexus::check::CheckReport const& samplesReport() {
  static plexus::check::CheckReport const report = [] {
    plexus::check::CheckOptions options;
    options.paths = {samplesRoot.string()};
    options.jobs = 2;
    return plexus::check::runCheck(options);
  }();
  return report;
}

// A new rule without a sample that shows it would leave the main job silent
// about it.
TEST(Samples, EveryRuleOfTheTableFindsSomethingInTheSamples) {
  plexus::check::CheckReport const& report = samplesReport();
  ASSERT_TRUE(report.inputErrors.empty()) << report.inputErrors.front();
  std::map<std::string_view, std::size_t> perRule;
  for (plexus::check::Finding const& finding : report.findings) ++perRule[finding.rule->id];
  for (plexus::rules::RuleDefinition const& rule : plexus::rules::ruleTable()) {
    EXPECT_GT(perRule[rule.id], 0u) << "no sample gets a finding of " << rule.id
                                    << "; add realistic code that does under samples/";
  }
}

// The samples are well-formed code but for samples/broken/unfinished.m, so
// that every other rule sees every other file; and the walk reaches the
// files inside package (+name) and class (@Name) folders.
TEST(Samples, OnlyTheBrokenSampleFailsToParseAndEverySampleIsChecked) {
  plexus::check::CheckReport const& report = samplesReport();
  fs::path const broken = samplesRoot / "broken" / "unfinished.m";
  std::size_t brokenErrors = 0;
  for (plexus::check::Finding const& finding : report.findings) {
    if (finding.rule->id != "syntax-error") continue;
    if (fs::path(finding.path) == broken) {
      ++brokenErrors;
    } else {
      ADD_FAILURE() << finding.path << ":" << finding.range.line << ":" << finding.range.column << ": "
                    << finding.message;
    }
  }
  EXPECT_GT(brokenErrors, 0u) << broken << " parses cleanly";

  std::vector<std::string> onDisk;
  bool inPackage = false, inClassFolder = false;
  for (auto const& entry : fs::recursive_directory_iterator(samplesRoot)) {
    if (!entry.is_regular_file() || entry.path().extension() != ".m") continue;
    onDisk.push_back(entry.path().string());
    std::string const folder = entry.path().parent_path().filename().string();
    inPackage = inPackage || folder.starts_with("+");
    inClassFolder = inClassFolder || folder.starts_with("@");
  }
  EXPECT_TRUE(inPackage && inClassFolder) << "the samples lack a package or a class folder";
  EXPECT_GE(onDisk.size(), 15u);
  EXPECT_LE(onDisk.size(), 30u);
  EXPECT_EQ(report.files, onDisk.size());
}

}  // namespace
