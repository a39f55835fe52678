#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace frontend {

/// Source text as the lexer reads it: UTF-8 without a byte-order mark.
struct DecodedSource {
  std::string text;
  /// Set when the file was not valid UTF-8 and was read as Windows-1252: the
  /// offset of its first bad byte in the file.
  std::optional<std::size_t> legacyByteOffset;
};

/// Skips a byte-order mark; keeps valid UTF-8 as it is and reads anything
/// else as Windows-1252, converted to UTF-8.
DecodedSource decodeSource(std::string_view bytes);

}  // namespace frontend
