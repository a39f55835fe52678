#pragma once

#include <cstdint>
#include <iosfwd>

namespace ca {

/// What a source file holds, decided by its first token that is not a comment.
enum class FileType : std::int32_t {
  Script = 0,    // statements, possibly followed by local functions
  Function = 1,  // a main function and local functions
  Class = 2,     // a classdef and local functions
};

/// Writes "Script", "Function" or "Class".
std::ostream& operator<<(std::ostream& out, FileType type);

}  // namespace ca
