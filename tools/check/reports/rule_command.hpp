#pragma once

#include <string>

namespace plexus::check::reports {

/// What `plexus rule` was asked for.
struct RuleCommand {
  std::string id;     // one rule, or
  bool all = false;   // every rule of the table
  bool markdown = false;
};

/// Prints the documentation of the rule (see ruleText and ruleMarkdown) or of
/// every rule (in Markdown: docs/rules.md) on standard output. An unknown id,
/// or neither an id nor --all: a message on standard error and exit code 2.
int runRuleCommand(RuleCommand const& command);

}  // namespace plexus::check::reports
