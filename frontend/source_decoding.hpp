#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "frontend/diagnostic.hpp"
#include "frontend/limits.hpp"
#include "frontend/source_span.hpp"

namespace frontend {

/// The encoding a file was read in.
enum class SourceEncoding : std::uint8_t { Utf8, Windows1252, Utf16LE, Utf16BE };

/// Source text as the lexer reads it: UTF-8 without a byte-order mark. Valid
/// UTF-8 is not copied: the text then views the bytes given to `decodeSource`,
/// which must outlive it.
struct DecodedSource {
  std::string_view original;  // the bytes after any byte-order mark
  std::string converted;      // the text converted to UTF-8, for a file in another encoding
  SourceEncoding encoding = SourceEncoding::Utf8;
  std::size_t markBytes = 0;  // the length of the byte-order mark skipped
  /// Set when the file was not valid UTF-8 and was read as Windows-1252: the
  /// offset of its first bad byte in the file.
  std::optional<std::size_t> legacyByteOffset;
  /// What decoding found, with the path given to `decodeSource`: a warning
  /// naming the encoding of a file that is not UTF-8, or an error that leaves
  /// no text to parse (a NUL byte, a file too large).
  std::vector<Diagnostic> diagnostics;

  std::string_view text() const { return encoding == SourceEncoding::Utf8 ? original : std::string_view(converted); }

  /// False when decoding found an error: the text is then not source text.
  bool readable() const;

  /// Where the byte at `textOffset` of `text()` stands in the file.
  SourcePosition positionOf(std::size_t textOffset) const;

  /// Moves the ranges of the diagnostics `parsed` from `text()` to the file's own
  /// offsets, which differ after a byte-order mark or a conversion; lines and
  /// columns are the same in both. One pass over the text for all of them.
  void placeInFile(std::span<Diagnostic> parsed) const;

 private:
  /// The file offset of the byte at `textOffset` of `text()`, after
  /// `characters` characters of which `beyondBmp` lie beyond the first plane.
  std::size_t fileOffsetOf(std::size_t textOffset, std::size_t characters, std::size_t beyondBmp) const;
};

/// Skips a byte-order mark and decodes the rest: UTF-16 (with a byte-order
/// mark, or without one when every other byte is zero) is converted, valid
/// UTF-8 kept as it is, and anything else read as Windows-1252. A NUL byte in
/// the text, or a file larger than `maxSourceBytes`, gives an error
/// diagnostic. Never throws for bad input.
DecodedSource decodeSource(std::string_view bytes, std::string_view path = {});

}  // namespace frontend
