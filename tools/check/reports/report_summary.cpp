#include "tools/check/reports/report_summary.hpp"

#include <fmt/format.h>

#include <set>
#include <string_view>

namespace plexus::check::reports {

namespace {

std::string counted(std::size_t count, std::string_view noun) {
  return fmt::format("{} {}{}", count, noun, count == 1 ? "" : "s");
}

}  // namespace

std::string reportSummary(CheckReport const& report) {
  std::set<std::string_view> paths;
  for (Finding const& finding : report.findings) paths.insert(finding.path);
  return fmt::format("{} in {} ({} checked)", counted(report.findings.size(), "finding"), counted(paths.size(), "file"),
                     counted(report.files, "file"));
}

}  // namespace plexus::check::reports
