// The counts of `plexus check --statistics`: by rule, most first, equal
// counts by id, with the total and the files checked.

#include <gtest/gtest.h>

#include "tools/check/statistics.hpp"

namespace {

using plexus::check::Finding;
using plexus::rules::RuleDefinition;
using plexus::rules::Severity;

TEST(Statistics, CountsByRuleMostFirstThenByIdWithTotals) {
  RuleDefinition const beta{0, "beta", Severity::Warning, "", nullptr};
  RuleDefinition const alpha{1, "alpha", Severity::Warning, "", nullptr};
  RuleDefinition const gamma{2, "gamma", Severity::Error, "", nullptr};
  std::vector<Finding> findings;
  for (RuleDefinition const* rule : {&beta, &gamma, &alpha, &gamma, &beta, &gamma}) {
    findings.push_back({"a.m", {}, rule, rule->severity, "", ""});
  }
  auto const counts = plexus::check::countByRule(findings);
  ASSERT_EQ(counts.size(), 3u);
  EXPECT_EQ(counts[0].rule, "gamma");
  EXPECT_EQ(counts[0].findings, 3u);
  EXPECT_EQ(counts[1].rule, "beta");
  EXPECT_EQ(counts[2].rule, "alpha");
  EXPECT_EQ(counts[2].findings, 1u);

  findings.push_back({"b.m", {}, &alpha, alpha.severity, "", ""});
  EXPECT_EQ(plexus::check::formatStatistics(findings, 3),
            "findings by rule:\n"
            "       3  gamma\n"
            "       2  alpha\n"
            "       2  beta\n"
            "       7  in all, in 3 files checked\n");
  EXPECT_EQ(plexus::check::formatStatistics({}, 1),
            "findings by rule:\n"
            "       0  in all, in 1 file checked\n");
}

}  // namespace
