#pragma once

#include <cstdint>
#include <string>

#include "frontend/diagnostic_kind.hpp"
#include "frontend/source_span.hpp"

namespace frontend {

/// One finding of the front end about a file: where (1-based line and column,
/// the column counted in characters), what, and of which kind. Its range says
/// what it covers in the file; the line and column are those of its start.
/// The front end makes diagnostics with `makeDiagnostic`
/// (diagnostic_message.hpp), which fills every field from the kind's entry of
/// diagnostics.def.
struct Diagnostic {
  std::string file;
  std::uint32_t line = 0;  // 0 for a path that could not be read
  std::uint32_t column = 0;
  Severity severity = Severity::Error;
  std::string message;
  DiagnosticKind kind = DiagnosticKind::CannotOpen;
  SourceSpan span{{0, 0, 0}, {0, 0, 0}};
};

/// `path:line:col: error: message`, as compilers write it; `path: error:
/// message` for a path that could not be read.
std::string formatDiagnostic(Diagnostic const& diagnostic);

}  // namespace frontend
