#include "tools/check/reports/documentation_blocks.hpp"

#include <boost/algorithm/string/split.hpp>
#include <boost/algorithm/string/trim.hpp>

namespace plexus::check::reports {

namespace {

constexpr std::string_view codeIndent = "    ";

std::size_t characters(std::string_view text) {
  std::size_t count = 0;
  for (char const byte : text) {
    if ((static_cast<unsigned char>(byte) & 0xC0) != 0x80) ++count;
  }
  return count;
}

}  // namespace

std::vector<DocumentationBlock> documentationBlocks(std::string_view section) {
  std::vector<DocumentationBlock> blocks;
  std::vector<std::string_view> lines;
  boost::algorithm::split(lines, section, [](char c) { return c == '\n'; });
  std::size_t blankLines = 0;  // since the last line with text
  for (std::string_view line : lines) {
    if (boost::algorithm::trim_copy(std::string(line)).empty()) {
      ++blankLines;
      continue;
    }
    bool const code = line.starts_with(codeIndent);
    bool const continues = !blocks.empty() && blocks.back().code == code && (code || blankLines == 0);
    if (!continues) blocks.push_back({code, {}});
    DocumentationBlock& block = blocks.back();
    if (code) {
      if (continues) block.lines.insert(block.lines.end(), blankLines, std::string());
      block.lines.emplace_back(line.substr(codeIndent.size()));
    } else if (block.lines.empty()) {
      block.lines.push_back(boost::algorithm::trim_copy(std::string(line)));
    } else {
      block.lines.front() += ' ' + boost::algorithm::trim_copy(std::string(line));
    }
    blankLines = 0;
  }
  return blocks;
}

std::string wrapped(std::string_view text, std::string_view indent, std::size_t width) {
  std::vector<std::string_view> words;
  boost::algorithm::split(words, text, [](char c) { return c == ' '; }, boost::algorithm::token_compress_on);
  std::string out;
  std::size_t lineWidth = 0;  // of the line being filled, 0 before its first word
  std::size_t const indentWidth = characters(indent);
  for (std::string_view word : words) {
    if (word.empty()) continue;
    std::size_t const wordWidth = characters(word);
    if (lineWidth > 0 && lineWidth + 1 + wordWidth > width) {
      out += '\n';
      lineWidth = 0;
    }
    if (lineWidth == 0) {
      out += indent;
      lineWidth = indentWidth;
    } else {
      out += ' ';
      ++lineWidth;
    }
    out += word;
    lineWidth += wordWidth;
  }
  return out;
}

}  // namespace plexus::check::reports
