#pragma once

#include <memory>
#include <string_view>
#include <vector>

#include "frontend/diagnostic.hpp"
#include "platform/analysis/analysis_impl.hpp"

namespace frontend {

/// The analysis of one file and what the front end found wrong with it.
struct AnalysisResult {
  std::vector<Diagnostic> diagnostics;
  /// Null when the file could not be read or has syntax errors. It owns the
  /// tree and makes each analysis through `get<T>` when it is first asked:
  /// symbols, identifier uses, calls, control flow, use-def and class
  /// objects (see analysis/registered_analyses.hpp).
  std::shared_ptr<ca::clients::AnalysisImpl> analysis;

  bool hasErrors() const;
};

/// Parses and analyses source text. `path` names the file in diagnostics and
/// in the tree.
///
///     auto result = frontend::analyze("x = 1; disp(x)\n", "a.m");
///     auto const* table = result.analysis->getSymbolTable();
AnalysisResult analyze(std::string_view source, std::string_view path);

/// Reads a file and analyses it. A path that cannot be read as a source file
/// (missing, unreadable, a folder, a FIFO, a device, too large) gives an error
/// diagnostic saying why, and no analysis.
AnalysisResult analyzeFile(std::string_view path);

}  // namespace frontend
