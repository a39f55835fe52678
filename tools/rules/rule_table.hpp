#pragma once

#include <optional>
#include <span>
#include <string_view>

#include "tools/rules/rule.hpp"

namespace plexus::rules {

namespace body {
#define PLEXUS_RULE(Name, id, severity, summary) RuleBody const& Name();
#include "tools/rules/rules.def"
#undef PLEXUS_RULE
}  // namespace body

/// Every rule of rules.def, in its order; `ruleTable()[i].index == i`.
std::span<RuleDefinition const> ruleTable();

/// The rule with this id, or null.
RuleDefinition const* findRule(std::string_view id);

/// The built-in rule under which files that cannot be read or parsed are
/// reported.
RuleDefinition const& syntaxErrorRule();

}  // namespace plexus::rules
