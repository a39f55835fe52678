#include "frontend/parse.hpp"

#include <fmt/format.h>

#include <algorithm>
#include <cctype>
#include <string>

#include "frontend/parser.hpp"
#include "frontend/source_decoding.hpp"

namespace frontend {

namespace {

// A first guess at the function style, from the words that begin lines: a
// file whose lines beginning with 'end' are at least as many as its blocks
// and functions closes its functions with 'end'. A wrong guess costs a second
// parse, not a wrong tree.
FunctionStyle guessStyle(std::string_view text, bool& hasFunctions) {
  static constexpr std::string_view openers[] = {"if",     "for",         "parfor",   "while",      "switch",
                                                 "try",    "spmd",        "classdef", "properties", "methods",
                                                 "events", "enumeration", "arguments"};
  hasFunctions = text.find("function") != std::string_view::npos;
  if (!hasFunctions) return FunctionStyle::Terminated;
  std::size_t functions = 0, blocks = 0, ends = 0;
  std::size_t i = 0;
  while (i < text.size()) {
    while (i < text.size() && (text[i] == ' ' || text[i] == '\t')) ++i;
    std::size_t const start = i;
    while (i < text.size() && ((text[i] >= 'a' && text[i] <= 'z') || (text[i] >= 'A' && text[i] <= 'Z'))) ++i;
    std::string_view const word = text.substr(start, i - start);
    bool const wordEnds = i == text.size() || !(std::isalnum(static_cast<unsigned char>(text[i])) || text[i] == '_');
    if (wordEnds && !word.empty()) {
      if (word == "function") {
        ++functions;
      } else if (word == "end") {
        ++ends;
      } else if (std::find(std::begin(openers), std::end(openers), word) != std::end(openers)) {
        ++blocks;
      }
    }
    while (i < text.size() && text[i] != '\n' && text[i] != '\r') ++i;
    while (i < text.size() && (text[i] == '\n' || text[i] == '\r')) ++i;
  }
  return ends >= blocks + functions ? FunctionStyle::Terminated : FunctionStyle::Open;
}

struct Attempt {
  std::shared_ptr<ca::astapi::SyntaxTree const> tree;
  std::vector<Diagnostic> diagnostics;
  std::size_t errors;
};

Attempt attempt(std::string_view text, std::string_view path, FunctionStyle style) {
  Parser parser(text, path, style);
  auto tree = parser.parseFile();
  return {std::move(tree), std::move(parser.diagnostics()), parser.errorCount()};
}

}  // namespace

bool ParseResult::hasErrors() const {
  return std::any_of(diagnostics.begin(), diagnostics.end(),
                     [](Diagnostic const& d) { return d.severity == Severity::Error; });
}

std::string formatDiagnostic(Diagnostic const& diagnostic) {
  return fmt::format("{}:{}:{}: {}: {}", diagnostic.file, diagnostic.line, diagnostic.column,
                     diagnostic.severity == Severity::Error ? "error" : "warning", diagnostic.message);
}

ParseResult parse(std::string_view source, std::string_view path) {
  ParseResult result;
  std::string const file(path);
  if (source.size() > (std::size_t{1} << 30)) {
    result.diagnostics.push_back({file, 1, 1, Severity::Error, "file is larger than 1 GiB; not parsed"});
    return result;
  }
  DecodedSource decoded = decodeSource(source);
  if (decoded.legacyByteOffset) {
    result.diagnostics.push_back(
        {file, 1, 1, Severity::Warning,
         fmt::format("file is not valid UTF-8 (first bad byte at offset {}); read as Windows-1252",
                     *decoded.legacyByteOffset)});
  }
  if (std::size_t const nul = decoded.text.find('\0'); nul != std::string::npos) {
    std::size_t const line =
        static_cast<std::size_t>(std::count(decoded.text.begin(), decoded.text.begin() + nul, '\n')) + 1;
    std::size_t const lineStart = decoded.text.rfind('\n', nul);
    std::size_t const column = nul - (lineStart == std::string::npos ? 0 : lineStart + 1) + 1;
    result.diagnostics.push_back({file, static_cast<std::uint32_t>(line), static_cast<std::uint32_t>(column),
                                  Severity::Error,
                                  fmt::format("file holds a NUL byte at offset {}; it is not source text", nul)});
    return result;
  }

  bool hasFunctions = false;
  FunctionStyle const guess = guessStyle(decoded.text, hasFunctions);
  Attempt best = attempt(decoded.text, path, guess);
  if (best.errors > 0 && hasFunctions) {
    // The other style may read the file without errors, or with fewer.
    FunctionStyle const other = guess == FunctionStyle::Terminated ? FunctionStyle::Open : FunctionStyle::Terminated;
    Attempt second = attempt(decoded.text, path, other);
    if (second.errors < best.errors) best = std::move(second);
  }
  result.tree = std::move(best.tree);
  result.diagnostics.insert(result.diagnostics.end(), std::make_move_iterator(best.diagnostics.begin()),
                            std::make_move_iterator(best.diagnostics.end()));
  return result;
}

}  // namespace frontend
