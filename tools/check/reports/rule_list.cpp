#include "tools/check/reports/rule_list.hpp"

#include <fmt/format.h>

#include <algorithm>

#include "tools/rules/rule_table.hpp"

namespace plexus::check::reports {

std::string ruleList() {
  auto const table = rules::ruleTable();
  std::size_t idWidth = 0;
  for (rules::RuleDefinition const& rule : table) idWidth = std::max(idWidth, rule.id.size());
  std::string list;
  for (rules::RuleDefinition const& rule : table) {
    list += fmt::format("{:<{}}  {:<7}  {}\n", rule.id, idWidth, rules::severityName(rule.severity), rule.summary);
  }
  return list;
}

}  // namespace plexus::check::reports
