#include "frontend/diagnostic.hpp"

#include <fmt/format.h>

namespace frontend {

std::string formatDiagnostic(Diagnostic const& diagnostic) {
  char const* const severity = diagnostic.severity == Severity::Error ? "error" : "warning";
  if (diagnostic.line == 0) return fmt::format("{}: {}: {}", diagnostic.file, severity, diagnostic.message);
  return fmt::format("{}:{}:{}: {}: {}", diagnostic.file, diagnostic.line, diagnostic.column, severity,
                     diagnostic.message);
}

}  // namespace frontend
