#pragma once

// What `plexus check --statistics` prints after a run.

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "tools/check/finding.hpp"

namespace plexus::check {

struct RuleCount {
  std::string_view rule;
  std::size_t findings;
};

/// The rules that found something, with how many findings each: most first,
/// equal counts by rule id.
std::vector<RuleCount> countByRule(std::vector<Finding> const& findings);

/// Under a heading, the counts by rule, one a line ("       2
/// global-declaration"), then the total and the files checked ("       3  in
/// all, in 4 files checked").
std::string formatStatistics(std::vector<Finding> const& findings, std::size_t files);

}  // namespace plexus::check
