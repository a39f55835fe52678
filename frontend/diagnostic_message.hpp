#pragma once

#include <fmt/format.h>

#include <string>
#include <utility>

#include "frontend/diagnostic.hpp"

namespace frontend {

// Making diagnostics from their entries in diagnostics.def. The message format
// of an entry is checked against the arguments of each use when the use is
// compiled.

constexpr bool holdsBraces(std::string_view format) { return format.find_first_of("{}") != std::string_view::npos; }

/// The message of a diagnostic of `kind`.
template <DiagnosticKind kind, class... Args>
std::string diagnosticMessage(Args const&... args) {
  constexpr std::string_view format = definitionOf(kind).format;
  // A message without arguments or braces is its format, copied as it is.
  if constexpr (sizeof...(Args) == 0 && !holdsBraces(format)) {
    return std::string(format);
  } else {
    return fmt::format(fmt::format_string<Args const&...>(format), args...);
  }
}

/// A diagnostic of `kind` whose message is already made: its severity from
/// the table, its line and column from the start of its range.
inline Diagnostic makeDiagnostic(DiagnosticKind kind, std::string file, SourceSpan span, std::string message) {
  return {.file = std::move(file),
          .line = span.start.line,
          .column = span.start.column,
          .severity = definitionOf(kind).severity,
          .message = std::move(message),
          .kind = kind,
          .span = span};
}

/// A diagnostic of `kind` about what `span` covers in `file`.
template <DiagnosticKind kind, class... Args>
Diagnostic makeDiagnostic(std::string file, SourceSpan span, Args const&... args) {
  static_assert(
      definitionOf(kind).extent == DiagnosticExtent::Token || definitionOf(kind).extent == DiagnosticExtent::Point,
      "a diagnostic about a whole file or path is made with makeFileDiagnostic");
  return makeDiagnostic(kind, std::move(file), span, diagnosticMessage<kind>(args...));
}

/// The range of a diagnostic about a whole file or path, by its extent.
constexpr SourceSpan wholeFileSpan(DiagnosticExtent extent) {
  return extent == DiagnosticExtent::Path ? SourceSpan{{0, 0, 0}, {0, 0, 0}} : SourceSpan{};
}

/// A diagnostic of `kind` about `file` as a whole, or about a path that could
/// not be read.
template <DiagnosticKind kind, class... Args>
Diagnostic makeFileDiagnostic(std::string file, Args const&... args) {
  static_assert(
      definitionOf(kind).extent == DiagnosticExtent::File || definitionOf(kind).extent == DiagnosticExtent::Path,
      "a diagnostic about a place in a file is made with makeDiagnostic and its range");
  return makeDiagnostic(kind, std::move(file), wholeFileSpan(definitionOf(kind).extent),
                        diagnosticMessage<kind>(args...));
}

}  // namespace frontend
