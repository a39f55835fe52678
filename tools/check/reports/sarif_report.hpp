#pragma once

#include <nlohmann/json.hpp>

#include <filesystem>
#include <ostream>

#include "tools/check/check_run.hpp"

namespace plexus::check::reports {

/// The report as a SARIF 2.1.0 log of one run. The driver lists every rule
/// of the table (so that `ruleIndex` is the rule's row), each with its
/// summary, what it finds, its documentation as help (text and Markdown) and
/// its severity as the default level. Each result names its file by a URI
/// reference relative to `%SRCROOT%`, which `originalUriBaseIds` gives as
/// `workingFolder` (absolute); a file outside that folder is named by its
/// absolute `file://` URI. Its region is the finding's range (columns in
/// code points, as `columnKind` says, the end exclusive); a finding without
/// a place has none.
nlohmann::ordered_json sarifReport(CheckReport const& report, std::filesystem::path const& workingFolder);

/// Writes sarifReport(report, workingFolder) a result at a time (see
/// writeJsonStreamingArray).
void writeSarifReport(std::ostream& out, CheckReport const& report, std::filesystem::path const& workingFolder);

}  // namespace plexus::check::reports
