#pragma once

#include <cstddef>
#include <cstdint>

namespace frontend {

/// A place in a file as a reader of the file counts it.
struct SourcePosition {
  std::size_t fileOffset = 0;  // in bytes of the file, byte-order mark included
  std::uint32_t line = 1;      // 1-based; lines end at LF, CR LF or a lone CR, as the lexer reads them
  std::uint32_t column = 1;    // 1-based, in characters

  friend bool operator==(SourcePosition const&, SourcePosition const&) = default;
};

/// The text of a file from `start` up to, not including, `end`: empty
/// (start = end) for a place between characters.
struct SourceSpan {
  SourcePosition start;
  SourcePosition end;

  bool empty() const { return start == end; }
  friend bool operator==(SourceSpan const&, SourceSpan const&) = default;
};

}  // namespace frontend
