// Every rule against its annotated cases: the `.m` files under
// cases/<rule-id>/. A line that ends in a marker comment naming the rule
// must get a finding of it, and no other line may:
//
//     global counter  % expect: global-declaration
//
// A case may set the rule's options with a line `% test-options: key = 3`.
// Each rule needs a positive case (a file with a marker) and a negative one
// (a file without any).

#include <gtest/gtest.h>

#include <boost/algorithm/string/trim.hpp>
#include <filesystem>
#include <fstream>
#include <map>
#include <set>
#include <sstream>
#include <string>

#include "tools/check/check_run.hpp"
#include "tools/rules/rule_table.hpp"

namespace {

namespace fs = std::filesystem;
using plexus::rules::RuleDefinition;

fs::path const casesRoot = PLEXUS_RULE_CASES;

struct CaseFile {
  std::set<std::uint32_t> expected;  // lines with a marker for the rule
  std::vector<std::string> lines;
  std::map<std::string, std::int64_t> options;
};

CaseFile readCase(fs::path const& path, std::string_view ruleId) {
  CaseFile file;
  std::ifstream in(path, std::ios::binary);
  std::string line;
  for (std::uint32_t number = 1; std::getline(in, line); ++number) {
    if (!line.empty() && line.back() == '\r') line.pop_back();
    file.lines.push_back(line);
    std::size_t const marker = line.find("% expect:");
    if (marker != std::string::npos) {
      std::string ids = line.substr(marker + 9);
      std::istringstream names(ids);
      for (std::string id; std::getline(names, id, ',');) {
        boost::algorithm::trim(id);
        if (id == ruleId) file.expected.insert(number);
      }
    }
    std::size_t const options = line.find("% test-options:");
    if (options != std::string::npos) {
      std::istringstream settings(line.substr(options + 15));
      for (std::string setting; std::getline(settings, setting, ',');) {
        std::size_t const equals = setting.find('=');
        std::string key = setting.substr(0, equals);
        boost::algorithm::trim(key);
        file.options[key] = std::stoll(setting.substr(equals + 1));
      }
    }
  }
  return file;
}

std::vector<fs::path> caseFilesOf(std::string_view ruleId) {
  std::vector<fs::path> files;
  fs::path const folder = casesRoot / std::string(ruleId);
  if (!fs::is_directory(folder)) return files;
  for (auto const& entry : fs::recursive_directory_iterator(folder)) {
    if (entry.is_regular_file() && entry.path().extension() == ".m") files.push_back(entry.path());
  }
  std::sort(files.begin(), files.end());
  return files;
}

// The lines of `path` on which the rule alone, with the case's options,
// reports.
std::multiset<std::uint32_t> findingLines(RuleDefinition const& rule, fs::path const& path, CaseFile const& file) {
  plexus::check::CheckOptions options;
  options.paths = {path.string()};
  options.jobs = 1;
  options.selection.enabled.assign(options.selection.enabled.size(), false);
  options.selection.enabled[rule.index] = true;
  for (auto const& [key, value] : file.options) {
    auto const& declared = rule.body->options;
    auto const at = std::find_if(declared.begin(), declared.end(), [&](auto const& o) { return o.key == key; });
    EXPECT_NE(at, declared.end()) << path << ": no option " << key;
    if (at != declared.end()) options.selection.options[rule.index][at - declared.begin()] = value;
  }
  plexus::check::CheckReport const report = plexus::check::runCheck(options);
  EXPECT_TRUE(report.inputErrors.empty()) << path;
  std::multiset<std::uint32_t> lines;
  for (auto const& finding : report.findings) {
    EXPECT_EQ(finding.rule, &rule);
    lines.insert(finding.range.line);
  }
  return lines;
}

TEST(RuleCases, EveryRuleFindsExactlyTheMarkedLines) {
  for (RuleDefinition const& rule : plexus::rules::ruleTable()) {
    for (fs::path const& path : caseFilesOf(rule.id)) {
      CaseFile const file = readCase(path, rule.id);
      std::multiset<std::uint32_t> const found = findingLines(rule, path, file);
      for (std::uint32_t line : file.expected) {
        EXPECT_TRUE(found.contains(line)) << rule.id << ": no finding at " << path.string() << ":" << line << "\n  "
                                          << file.lines[line - 1];
      }
      for (std::uint32_t line : std::set<std::uint32_t>(found.begin(), found.end())) {
        if (line == 0) continue;
        EXPECT_TRUE(file.expected.contains(line)) << rule.id << ": unexpected finding at " << path.string() << ":"
                                                  << line << "\n  " << file.lines[line - 1];
      }
    }
  }
}

TEST(RuleCases, EveryRuleHasAPositiveAndANegativeCase) {
  for (RuleDefinition const& rule : plexus::rules::ruleTable()) {
    bool positive = false, negative = false;
    for (fs::path const& path : caseFilesOf(rule.id)) {
      (readCase(path, rule.id).expected.empty() ? negative : positive) = true;
    }
    EXPECT_TRUE(positive) << rule.id << " has no case with a finding under " << (casesRoot / std::string(rule.id));
    EXPECT_TRUE(negative) << rule.id << " has no case without a finding under " << (casesRoot / std::string(rule.id));
  }
}

}  // namespace
