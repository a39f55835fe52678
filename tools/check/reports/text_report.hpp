#pragma once

#include <ostream>
#include <span>

#include "tools/check/finding.hpp"

namespace plexus::check::reports {

/// Writes each finding as `path:line:col: severity: message [rule-id]`, then
/// its source line and a caret line under its span (see caretLine). A
/// finding without a place (line 0: a file that could not be read) is one
/// line, `path: severity: message [rule-id]`. With `colour`, the severity,
/// the rule id and the caret line carry ANSI colours.
void writeTextReport(std::ostream& out, std::span<Finding const> findings, bool colour);

}  // namespace plexus::check::reports
