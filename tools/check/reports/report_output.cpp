#include "tools/check/reports/report_output.hpp"

#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <iostream>

#include <fmt/format.h>

#include "tools/check/reports/terminal_colour.hpp"

namespace plexus::check::reports {

ReportOutput::ReportOutput(std::string path) : path_(std::move(path)) {
  if (path_.empty()) return;
  errno = 0;
  file_.open(path_, std::ios::binary | std::ios::trunc);
  if (!file_) {
    error_ = fmt::format("plexus: cannot write the report to '{}': {}", path_,
                         errno != 0 ? std::strerror(errno) : "cannot open it");
  }
}

std::ostream& ReportOutput::stream() { return path_.empty() ? std::cout : file_; }

bool ReportOutput::colour() const { return path_.empty() && wantsColour(STDOUT_FILENO); }

bool ReportOutput::finish() {
  errno = 0;
  stream().flush();
  if (!path_.empty()) file_.close();
  if (stream().fail()) {
    char const* reason = errno != 0 ? std::strerror(errno) : "write failed";
    error_ = path_.empty() ? fmt::format("plexus: cannot write the report to standard output: {}", reason)
                           : fmt::format("plexus: cannot write the report to '{}': {}", path_, reason);
    return false;
  }
  return true;
}

}  // namespace plexus::check::reports
