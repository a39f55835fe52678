#pragma once

#include <cstdint>
#include <string>

namespace frontend {

enum class Severity : std::uint8_t { Error, Warning };

/// One finding of the front end about a file: where (1-based line and column,
/// the column counted in characters) and what.
struct Diagnostic {
  std::string file;
  std::uint32_t line = 0;
  std::uint32_t column = 0;
  Severity severity = Severity::Error;
  std::string message;
};

/// `path:line:col: error: message`, as compilers write it.
std::string formatDiagnostic(Diagnostic const& diagnostic);

}  // namespace frontend
