// The rules share one graph: where two rules ask the same question they
// share its vertex, and rules that watch a branch (a subrule) answer for the
// item at hand only if their branches run in the right order. Every rule on
// at once, over every case file on several threads, must find exactly what
// each rule finds alone on one thread.

#include <gtest/gtest.h>

#include <set>
#include <string>
#include <tuple>

#include "tools/check/check_run.hpp"
#include "tools/rules/rule_table.hpp"

namespace {

using Seen = std::tuple<std::string, std::uint32_t, std::uint32_t, std::string, std::string>;

std::set<Seen> findingsOf(plexus::check::CheckReport const& report) {
  std::set<Seen> seen;
  for (auto const& finding : report.findings) {
    seen.emplace(finding.path, finding.range.line, finding.range.column, std::string(finding.rule->id),
                 finding.message);
  }
  return seen;
}

TEST(RulesTogether, EveryRuleAtOnceOnManyThreadsFindsWhatEachFindsAlone) {
  auto const table = plexus::rules::ruleTable();
  plexus::check::CheckOptions options;
  options.paths = {PLEXUS_RULE_CASES};

  std::set<Seen> alone;
  options.jobs = 1;
  for (std::size_t rule = 0; rule < table.size(); ++rule) {
    options.selection.enabled.assign(table.size(), false);
    options.selection.enabled[rule] = true;
    std::set<Seen> const found = findingsOf(plexus::check::runCheck(options));
    EXPECT_FALSE(found.empty()) << table[rule].id << " finds nothing in the cases";
    alone.insert(found.begin(), found.end());
  }

  options.selection.enabled.assign(table.size(), true);
  options.jobs = 4;
  for (int run = 0; run < 3; ++run) {
    std::set<Seen> const together = findingsOf(plexus::check::runCheck(options));
    EXPECT_EQ(together, alone) << "run " << run;
  }
}

}  // namespace
