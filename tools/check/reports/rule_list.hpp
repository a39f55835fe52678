#pragma once

#include <string>

namespace plexus::check::reports {

/// What `plexus check --list-rules` prints: a line for each rule of the
/// table, in its order, with the id, the severity and the summary in columns.
std::string ruleList();

}  // namespace plexus::check::reports
