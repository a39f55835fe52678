#include "tools/check/reports/text_report.hpp"

#include <fmt/format.h>

#include <string>
#include <string_view>

#include "tools/check/reports/caret_line.hpp"

namespace plexus::check::reports {

namespace {

constexpr std::string_view reset = "\x1b[0m";
constexpr std::string_view bold = "\x1b[1m";
constexpr std::string_view ruleColour = "\x1b[1;34m";
constexpr std::string_view caretColour = "\x1b[1;32m";

std::string_view severityColour(rules::Severity severity) {
  switch (severity) {
    case rules::Severity::Error:
      return "\x1b[1;31m";
    case rules::Severity::Warning:
      return "\x1b[1;35m";
    case rules::Severity::Note:
      return "\x1b[1;36m";
  }
  return bold;
}

// `text` wrapped in `colour` when colouring.
std::string painted(std::string_view text, std::string_view colour, bool on) {
  if (!on) return std::string(text);
  return fmt::format("{}{}{}", colour, text, reset);
}

}  // namespace

void writeTextReport(std::ostream& out, std::span<Finding const> findings, bool colour) {
  std::string text;
  for (Finding const& finding : findings) {
    std::string const where =
        finding.range.line == 0 ? finding.path
                                : fmt::format("{}:{}:{}", finding.path, finding.range.line, finding.range.column);
    text += fmt::format("{} {} {} {}\n", painted(where + ":", bold, colour),
                        painted(std::string(rules::severityName(finding.severity)) + ":",
                                severityColour(finding.severity), colour),
                        finding.message, painted("[" + std::string(finding.rule->id) + "]", ruleColour, colour));
    if (finding.range.line != 0) {
      CaretLine const caret = caretLine(finding.lineText, finding.range);
      text += finding.lineText;
      text += '\n';
      text += caret.padding;
      text += painted(caret.marks, caretColour, colour);
      text += '\n';
    }
    // Written a finding at a time, so that a long report is not held whole.
    out << text;
    text.clear();
  }
}

}  // namespace plexus::check::reports
