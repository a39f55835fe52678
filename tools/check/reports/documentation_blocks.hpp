#pragma once

// A section of a rule's documentation as the blocks it is made of, so that
// each output (plain text, Markdown) can lay them out its own way.

#include <string>
#include <string_view>
#include <vector>

namespace plexus::check::reports {

/// A paragraph of prose (its lines joined by blanks into one) or a piece of
/// code (its lines without their four-blank indentation, blank lines inside
/// it kept).
struct DocumentationBlock {
  bool code = false;
  std::vector<std::string> lines;  // one line for prose
};

/// The blocks of a section of RuleDocumentation: paragraphs are separated by
/// blank lines; a line indented by four blanks is code, and code lines with
/// only blank lines between them are one block.
std::vector<DocumentationBlock> documentationBlocks(std::string_view section);

/// `text` broken at blanks into lines of at most `width` characters (a word
/// longer than that stands alone on its line), each after `indent`.
std::string wrapped(std::string_view text, std::string_view indent, std::size_t width);

}  // namespace plexus::check::reports
