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

/// Writes a JSON document indented by two blanks, with a final line end.
/// Text that is not valid UTF-8 (a file name can be any bytes) is written
/// with U+FFFD in place of each bad sequence rather than stopping the report.
void writeJson(std::ostream& out, nlohmann::ordered_json const& document);

}  // namespace plexus::check::reports
