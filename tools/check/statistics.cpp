#include "tools/check/statistics.hpp"

#include <fmt/format.h>

#include <algorithm>
#include <map>

namespace plexus::check {

std::vector<RuleCount> countByRule(std::vector<Finding> const& findings) {
  std::map<std::string_view, std::size_t> counts;
  for (Finding const& finding : findings) ++counts[finding.rule->id];
  std::vector<RuleCount> sorted;
  for (auto const& [rule, count] : counts) sorted.push_back({rule, count});
  // The map gave them by id: a stable sort by count keeps that order among
  // equal counts.
  std::stable_sort(sorted.begin(), sorted.end(),
                   [](RuleCount const& a, RuleCount const& b) { return a.findings > b.findings; });
  return sorted;
}

std::string formatStatistics(std::vector<Finding> const& findings, std::size_t files) {
  std::string out = "findings by rule:\n";
  for (RuleCount const& count : countByRule(findings)) out += fmt::format("{:>8}  {}\n", count.findings, count.rule);
  out += fmt::format("{:>8}  in all, in {} {} checked\n", findings.size(), files, files == 1 ? "file" : "files");
  return out;
}

}  // namespace plexus::check
