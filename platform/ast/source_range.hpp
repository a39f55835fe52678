#pragma once

#include <cstdint>

namespace lf::astapi {

/// A position in source text: byte offset from the start of the file (0-based),
/// line and column (both 1-based; the column counts characters, not bytes).
struct SourcePosition {
  std::uint32_t offset = 0;
  std::uint32_t line = 0;
  std::uint32_t column = 0;
  friend bool operator==(SourcePosition const&, SourcePosition const&) = default;
};

/// The source range of a node: the positions of its first and of its last
/// character, both inclusive. A node made without a range has all zeros.
struct SourceRange {
  SourcePosition first;
  SourcePosition last;
  friend bool operator==(SourceRange const&, SourceRange const&) = default;
};

}  // namespace lf::astapi
