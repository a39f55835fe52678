#pragma once

// The line under a finding's source line that marks its span.

#include <string>
#include <string_view>

#include "tools/rules/rule.hpp"

namespace plexus::check::reports {

/// What goes under the source line: `padding` up to the span's first
/// character, then `marks` (`^` under the first character, `~` under each
/// further one).
struct CaretLine {
  std::string padding;
  std::string marks;
};

/// The caret line of `range` under `lineText` (the text of the range's first
/// line). Columns count characters (UTF-8 code points), so a multi-byte
/// character takes one place; a tab before the span stays a tab in the
/// padding, so that the marks line up however wide the terminal shows tabs.
/// A span that runs onto later lines, or past the end of the line, is
/// marked to the end of the line; an empty span, or one at the line end,
/// gets a single `^`.
CaretLine caretLine(std::string_view lineText, rules::FindingRange const& range);

}  // namespace plexus::check::reports
