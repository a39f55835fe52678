#pragma once

#include <string>
#include <tuple>

#include "tools/rules/rule.hpp"

namespace plexus::check {

/// One finding of a run, as the reports print it.
struct Finding {
  std::string path;  // as the walk found it
  rules::FindingRange range;
  rules::RuleDefinition const* rule = nullptr;
  rules::Severity severity = rules::Severity::Warning;  // the rule's, or a diagnostic's own
  std::string message;
  std::string lineText;  // the text of the range's first line, without its line end

  /// By file, line, column and rule id, then the rest, so that the order of a
  /// report never depends on which thread found what.
  friend bool operator<(Finding const& a, Finding const& b) {
    return std::tie(a.path, a.range.line, a.range.column, a.rule->id, a.range.endLine, a.range.endColumn, a.message) <
           std::tie(b.path, b.range.line, b.range.column, b.rule->id, b.range.endLine, b.range.endColumn, b.message);
  }
};

}  // namespace plexus::check
