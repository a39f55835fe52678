#pragma once

#include <filesystem>
#include <map>
#include <ostream>
#include <string>

#include "tools/check/check_run.hpp"

namespace plexus::check::reports {

enum class ReportFormat { Text, Json, Sarif };

/// The names that `--format` takes.
std::map<std::string, ReportFormat> const& reportFormatNames();

/// Writes the findings of `report` in `format`: text (coloured with
/// `colour`), JSON (see jsonReport) or SARIF (see sarifReport, whose
/// relative URIs start at `workingFolder`).
void writeReport(std::ostream& out, CheckReport const& report, ReportFormat format, bool colour,
                 std::filesystem::path const& workingFolder);

}  // namespace plexus::check::reports
