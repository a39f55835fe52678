#include "tools/rules/rule_table.hpp"

#include <algorithm>
#include <stdexcept>
#include <vector>

#include "platform/i18n/i18n.hpp"

namespace plexus::rules {

std::string_view severityName(Severity severity) {
  switch (severity) {
    case Severity::Error:
      return "error";
    case Severity::Warning:
      return "warning";
    case Severity::Note:
      return "note";
  }
  return "?";
}

std::string utf8(std::u16string_view text) { return fl::i18n::to_utf8(text); }

std::int64_t RuleDeclaration::option(std::string_view key) const {
  auto const& options = rule_.body->options;
  for (std::size_t i = 0; i < options.size(); ++i) {
    if (options[i].key == key) return i < optionValues_.size() ? optionValues_[i] : options[i].defaultValue;
  }
  throw std::logic_error("rule " + std::string(rule_.id) + " has no option " + std::string(key));
}

std::u16string RuleDeclaration::reportName() const {
  std::u16string name = fl::i18n::to_ustring(std::string(rule_.id));
  if (!optionValues_.empty()) {
    name += u" (";
    for (std::size_t i = 0; i < optionValues_.size(); ++i) {
      if (i > 0) name += u", ";
      name += fl::i18n::to_ustring(std::string(rule_.body->options[i].key) + " = " + std::to_string(optionValues_[i]));
    }
    name += u")";
  }
  return name;
}

std::span<RuleDefinition const> ruleTable() {
  static std::vector<RuleDefinition> const table = [] {
    std::vector<RuleDefinition> rows;
#define PLEXUS_RULE(Name, id, severity, summary) \
  rows.push_back({rows.size(), id, Severity::severity, summary, &body::Name()});
#include "tools/rules/rules.def"
#undef PLEXUS_RULE
    return rows;
  }();
  return table;
}

RuleDefinition const* findRule(std::string_view id) {
  auto const table = ruleTable();
  auto const found = std::find_if(table.begin(), table.end(), [id](RuleDefinition const& r) { return r.id == id; });
  return found == table.end() ? nullptr : &*found;
}

RuleDefinition const& syntaxErrorRule() {
  static RuleDefinition const& rule = *findRule("syntax-error");
  return rule;
}

}  // namespace plexus::rules
