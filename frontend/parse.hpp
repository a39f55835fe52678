#pragma once

#include <memory>
#include <string_view>
#include <vector>

#include "frontend/diagnostic.hpp"
#include "frontend/limits.hpp"
#include "platform/ast/syntax_tree.hpp"

namespace frontend {

/// The tree of one file and what the front end found wrong with it.
struct ParseResult {
  /// The tree; after syntax errors it holds the statements that could be read.
  /// Null only when the file could not be read as text at all.
  std::shared_ptr<ca::astapi::SyntaxTree const> tree;
  std::vector<Diagnostic> diagnostics;

  bool hasErrors() const;
};

/// Parses the source of one file of the analysed language. `path` names the
/// file in diagnostics and in the tree. Bytes that are not valid UTF-8 are read
/// as Windows-1252, with a warning. Never throws for bad input.
///
///     auto result = frontend::parse("x = 1;\n", "a.m");
///     assert(!result.hasErrors());
ParseResult parse(std::string_view source, std::string_view path);

}  // namespace frontend
