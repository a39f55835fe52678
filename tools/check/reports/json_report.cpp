#include "tools/check/reports/json_report.hpp"

#include <string>

namespace plexus::check::reports {

nlohmann::ordered_json jsonReport(CheckReport const& report) {
  nlohmann::ordered_json findings = nlohmann::ordered_json::array();
  for (Finding const& finding : report.findings) {
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
    findings.push_back(std::move(entry));
  }
  nlohmann::ordered_json document;
  document["version"] = 1;
  document["findings"] = std::move(findings);
  document["files"] = report.files;
  return document;
}

void writeJson(std::ostream& out, nlohmann::ordered_json const& document) {
  out << document.dump(2, ' ', false, nlohmann::ordered_json::error_handler_t::replace) << '\n';
}

}  // namespace plexus::check::reports
