#pragma once

#include <nlohmann/json.hpp>

#include <ostream>

#include "tools/check/check_run.hpp"

namespace plexus::check::reports {

/// The report as one JSON document, members in this order: `version` (1),
/// `findings` (an array of objects with `path`, `line`, `column`, `endLine`,
/// `endColumn`, `rule`, `severity` and `message`) and `files` (the number
/// of files checked); README.md shows one. `version` is that of this shape,
/// raised when a member changes meaning or goes away, not when one is added.
/// Lines and columns are 1-based, columns count characters, and the end is
/// one past the last character. A finding without a place (a file that could
/// not be read) has no `line`, `column`, `endLine` or `endColumn`.
nlohmann::ordered_json jsonReport(CheckReport const& report);

/// Writes jsonReport(report) a finding at a time (see writeJsonStreamingArray).
void writeJsonReport(std::ostream& out, CheckReport const& report);

}  // namespace plexus::check::reports
