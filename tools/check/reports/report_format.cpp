#include "tools/check/reports/report_format.hpp"

#include "tools/check/reports/json_report.hpp"
#include "tools/check/reports/sarif_report.hpp"
#include "tools/check/reports/text_report.hpp"

namespace plexus::check::reports {

std::map<std::string, ReportFormat> const& reportFormatNames() {
  static std::map<std::string, ReportFormat> const names{
      {"text", ReportFormat::Text}, {"json", ReportFormat::Json}, {"sarif", ReportFormat::Sarif}};
  return names;
}

void writeReport(std::ostream& out, CheckReport const& report, ReportFormat format, bool colour,
                 std::filesystem::path const& workingFolder) {
  switch (format) {
    case ReportFormat::Text:
      writeTextReport(out, report.findings, colour);
      return;
    case ReportFormat::Json:
      writeJsonReport(out, report);
      return;
    case ReportFormat::Sarif:
      writeSarifReport(out, report, workingFolder);
      return;
  }
}

}  // namespace plexus::check::reports
