#include "tools/check/reports/caret_line.hpp"

#include <algorithm>
#include <cstdint>

namespace plexus::check::reports {

namespace {

bool startsCharacter(char byte) { return (static_cast<unsigned char>(byte) & 0xC0) != 0x80; }

}  // namespace

CaretLine caretLine(std::string_view lineText, rules::FindingRange const& range) {
  CaretLine caret;
  std::uint32_t const first = std::max<std::uint32_t>(range.column, 1);
  // One past the last character of the line, in columns.
  std::uint32_t lineEnd = 1;
  for (char const byte : lineText) {
    if (startsCharacter(byte)) ++lineEnd;
  }
  std::uint32_t end = range.endLine > range.line ? lineEnd : std::min(range.endColumn, lineEnd);
  end = std::max(end, first + 1);  // at least one mark

  std::uint32_t padded = 0;
  for (std::size_t i = 0; i < lineText.size() && padded + 1 < first; ++i) {
    if (!startsCharacter(lineText[i])) continue;
    caret.padding += lineText[i] == '\t' ? '\t' : ' ';
    ++padded;
  }
  // A span that starts past the line end (a place just after it, or a line
  // the file no longer has) is padded with blanks to its column.
  caret.padding.append(first - 1 - padded, ' ');
  caret.marks = "^";
  caret.marks.append(end - first - 1, '~');
  return caret;
}

}  // namespace plexus::check::reports
