#include "tools/check/rule_selection.hpp"

#include "tools/rules/rule_table.hpp"

namespace plexus::check {

RuleSelection RuleSelection::defaults() {
  RuleSelection selection;
  for (rules::RuleDefinition const& rule : rules::ruleTable()) {
    selection.enabled.push_back(true);
    std::vector<std::int64_t> values;
    for (rules::RuleOption const& option : rule.body->options) values.push_back(option.defaultValue);
    selection.options.push_back(std::move(values));
  }
  return selection;
}

std::vector<std::string> unknownRuleIds(std::vector<std::string> const& ids) {
  std::vector<std::string> unknown;
  for (std::string const& id : ids) {
    if (rules::findRule(id) == nullptr) unknown.push_back(id);
  }
  return unknown;
}

void applyCommandLine(RuleSelection& selection, std::vector<std::string> const& enable,
                      std::vector<std::string> const& disable) {
  for (std::string const& id : enable) {
    if (auto const* rule = rules::findRule(id)) selection.enabled[rule->index] = true;
  }
  for (std::string const& id : disable) {
    if (auto const* rule = rules::findRule(id)) selection.enabled[rule->index] = false;
  }
}

}  // namespace plexus::check
