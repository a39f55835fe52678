#include "tools/check/reports/rule_command.hpp"

#include <fmt/format.h>

#include "tools/check/reports/rule_documentation.hpp"
#include "tools/rules/rule_table.hpp"

namespace plexus::check::reports {

int runRuleCommand(RuleCommand const& command) {
  if (command.all) {
    if (command.markdown) {
      fmt::print("{}", rulesMarkdown());
      return 0;
    }
    bool first = true;
    for (rules::RuleDefinition const& rule : rules::ruleTable()) {
      fmt::print("{}{}", first ? "" : "\n", ruleText(rule));
      first = false;
    }
    return 0;
  }
  if (command.id.empty()) {
    fmt::print(stderr, "plexus: name a rule (plexus check --list-rules lists them) or give --all\n");
    return 2;
  }
  rules::RuleDefinition const* rule = rules::findRule(command.id);
  if (rule == nullptr) {
    fmt::print(stderr, "plexus: unknown rule id '{}' (plexus check --list-rules lists them)\n", command.id);
    return 2;
  }
  if (command.markdown) {
    fmt::print("## {}\n\n{}", rule->id, ruleMarkdown(*rule));
  } else {
    fmt::print("{}", ruleText(*rule));
  }
  return 0;
}

}  // namespace plexus::check::reports
