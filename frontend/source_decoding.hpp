#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace frontend {

/// Source text as the lexer reads it: UTF-8 without a byte-order mark. Valid
/// UTF-8 is not copied: the text then views the bytes given to `decodeSource`,
/// which must outlive it.
struct DecodedSource {
  std::string_view original;  // the bytes after any byte-order mark
  std::string converted;      // the text converted to UTF-8, for a legacy file
  /// Set when the file was not valid UTF-8 and was read as Windows-1252: the
  /// offset of its first bad byte in the file.
  std::optional<std::size_t> legacyByteOffset;

  std::string_view text() const { return legacyByteOffset ? std::string_view(converted) : original; }
};

/// Skips a byte-order mark; keeps valid UTF-8 as it is and reads anything
/// else as Windows-1252, converted to UTF-8.
DecodedSource decodeSource(std::string_view bytes);

}  // namespace frontend
