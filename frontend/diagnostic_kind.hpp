#pragma once

#include <cstddef>
#include <cstdint>
#include <iterator>
#include <string_view>

namespace frontend {

// The kinds of diagnostic, made from the one table in diagnostics.def.

enum class Severity : std::uint8_t { Error, Warning };

enum class DiagnosticKind : std::uint8_t {
#define PLEXUS_DIAGNOSTIC(kind, severity, extent, format) kind,
#include "frontend/diagnostics.def"
};

/// What the range of a diagnostic covers (see diagnostics.def).
enum class DiagnosticExtent : std::uint8_t { Token, Point, File, Path };

struct DiagnosticDefinition {
  std::string_view name;  // the kind's name, a stable identifier for tools (SARIF's rule id)
  Severity severity;
  DiagnosticExtent extent;
  std::string_view format;  // an {fmt} format string
};

inline constexpr DiagnosticDefinition diagnosticDefinitions[] = {
#define PLEXUS_DIAGNOSTIC(kind, severity, extent, format) {#kind, Severity::severity, DiagnosticExtent::extent, format},
#include "frontend/diagnostics.def"
};

inline constexpr std::size_t diagnosticKindCount = std::size(diagnosticDefinitions);

constexpr DiagnosticDefinition const& definitionOf(DiagnosticKind kind) {
  return diagnosticDefinitions[static_cast<std::size_t>(kind)];
}

}  // namespace frontend
