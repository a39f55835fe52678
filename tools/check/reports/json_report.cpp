#include "tools/check/reports/json_report.hpp"

#include <string>

#include "tools/check/reports/streamed_json.hpp"

namespace plexus::check::reports {

namespace {

nlohmann::ordered_json jsonFinding(Finding const& finding) {
  nlohmann::ordered_json entry;
  entry["path"] = finding.path;
  if (finding.range.line != 0) {
    entry["line"] = finding.range.line;
    entry["column"] = finding.range.column;
    entry["endLine"] = finding.range.endLine;
    entry["endColumn"] = finding.range.endColumn;
  }
  entry["rule"] = finding.rule->id;
  entry["severity"] = rules::severityName(finding.severity);
  entry["message"] = finding.message;
  return entry;
}

// The document with its findings still to come.
nlohmann::ordered_json skeleton(CheckReport const& report) {
  nlohmann::ordered_json document;
  document["version"] = 1;
  document["findings"] = nlohmann::ordered_json::array();
  document["files"] = report.files;
  return document;
}

}  // namespace

nlohmann::ordered_json jsonReport(CheckReport const& report) {
  nlohmann::ordered_json document = skeleton(report);
  for (Finding const& finding : report.findings) document["findings"].push_back(jsonFinding(finding));
  return document;
}

void writeJsonReport(std::ostream& out, CheckReport const& report) {
  writeJsonStreamingArray(out, skeleton(report), "findings", report.findings.size(),
                          [&report](std::size_t i) { return jsonFinding(report.findings[i]); });
}

}  // namespace plexus::check::reports
