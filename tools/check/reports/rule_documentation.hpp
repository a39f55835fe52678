#pragma once

// A rule's documentation as `plexus rule` prints it and as docs/rules.md and
// the SARIF rule metadata carry it, all made from the rule table.

#include <string>
#include <string_view>

#include "tools/rules/rule.hpp"

namespace plexus::check::reports {

/// The sections of RuleDocumentation with their headings, in its order.
struct DocumentationSection {
  std::string_view heading;
  std::string_view rules::RuleDocumentation::*text;
};
inline constexpr DocumentationSection documentationSections[] = {
    {"What it finds", &rules::RuleDocumentation::finds},
    {"Why it matters", &rules::RuleDocumentation::why},
    {"Example", &rules::RuleDocumentation::example},
    {"What to write instead", &rules::RuleDocumentation::instead},
    {"Known limits", &rules::RuleDocumentation::limits},
};

/// Plain text for a terminal: the id, severity and summary, then each section
/// under its heading (prose wrapped at 80 columns and indented by two
/// blanks, code by six), then the options with their defaults and ranges.
std::string ruleText(rules::RuleDefinition const& rule);

/// Markdown of one rule without a heading of its own (its sections under `###`
/// headings, code fenced), for a section of docs/rules.md or SARIF's help.
std::string ruleMarkdown(rules::RuleDefinition const& rule);

/// docs/rules.md: an index of every rule of the table, then a section for
/// each. The file in the repository must equal this (a test checks it).
std::string rulesMarkdown();

/// The command that makes docs/rules.md, for its header and for the test
/// that finds it stale.
inline constexpr std::string_view rulesMarkdownCommand = "plexus rule --all --format markdown > docs/rules.md";

}  // namespace plexus::check::reports
