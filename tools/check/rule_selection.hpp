#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace plexus::check {

/// Which rules are on for a file and with which option values: one entry
/// per row of the rule table.
/// Invariant: options[r] has one value per option of rule r, in the order of
/// the rule's options.
struct RuleSelection {
  std::vector<bool> enabled;
  std::vector<std::vector<std::int64_t>> options;

  /// Every rule on, with its default options.
  static RuleSelection defaults();

  friend bool operator==(RuleSelection const&, RuleSelection const&) = default;
};

/// Ids given on the command line that name no rule, in the order given.
std::vector<std::string> unknownRuleIds(std::vector<std::string> const& ids);

/// Turns the rules named by `enable` on and those named by `disable` off;
/// the command line wins over any file, and `disable` wins over `enable`.
/// Unknown ids are ignored here (see unknownRuleIds).
void applyCommandLine(RuleSelection& selection, std::vector<std::string> const& enable,
                      std::vector<std::string> const& disable);

}  // namespace plexus::check
