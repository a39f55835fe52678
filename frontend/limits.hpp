#pragma once

#include <cstddef>

// Every limit of the front end, each with the reason for its value. Input past
// a limit is reported, never followed: no file may crash, hang or exhaust the
// front end, whatever it holds.

namespace frontend {

/// The largest source file that is read and decoded: 1 GiB. Converted to
/// UTF-8 (at most three bytes for each byte of the file) a file this size
/// still fits the lexer's 32-bit offsets, and the UTF-8 check indexes it with
/// 32-bit integers; hand-written source is a thousand times smaller.
inline constexpr std::size_t maxSourceBytes = std::size_t{1} << 30;

/// The most syntax errors reported for one file; parsing stops there. A file
/// with more is rarely source at all (a binary or a file in another language),
/// and a hundred errors are more than anyone reads; stopping keeps such a
/// file from costing the time and memory of a million diagnostics.
inline constexpr std::size_t maxErrorsPerFile = 100;

/// The deepest nesting of expressions and blocks that the parser follows. A
/// chain that grows to the left (a.b.c, 1+2+3, x(1){2}) counts as deep as it
/// is long, so no tree the parser gives is more than a few levels deeper:
/// its consumers may walk it recursively. Written code nests a few dozen
/// levels at most; 256 levels of the deepest recursion of an analysis stay
/// far inside a thread's stack, sanitizers and all.
inline constexpr int maxNestingDepth = 256;

/// How many levels the indented tree dump moves right, two spaces a level.
/// Deeper lines stay at that indentation and show their depth instead, so the
/// dump of a deep tree grows with the tree's size, not with the square of its
/// depth; 64 levels hold every tree of written code.
inline constexpr std::size_t maxDumpIndentDepth = 64;

}  // namespace frontend
