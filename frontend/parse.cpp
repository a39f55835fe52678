#include "frontend/parse.hpp"

#include <algorithm>
#include <string>

#include "frontend/parser.hpp"
#include "frontend/source_decoding.hpp"
#include "frontend/token.hpp"

namespace frontend {

namespace {

// A first guess at the function style, from a light scan of the words of
// each line outside comments, text and brackets: a file with at least as many
// 'end's as blocks and functions closes its functions with 'end'. A wrong
// guess costs a second parse, not a wrong tree.
FunctionStyle guessStyle(std::string_view text, bool& hasFunctions) {
  hasFunctions = text.find("function") != std::string_view::npos;
  if (!hasFunctions) return FunctionStyle::Terminated;
  // ASCII tests, not the locale's: names of the language are ASCII.
  auto isLetter = [](char c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z'); };
  auto isWordChar = [&isLetter](char c) { return isLetter(c) || (c >= '0' && c <= '9') || c == '_'; };
  std::size_t functions = 0, blocks = 0, ends = 0;
  std::size_t i = 0;
  while (i < text.size()) {
    int depth = 0;
    bool firstWord = true;
    char previous = ' ';
    while (i < text.size() && text[i] != '\n' && text[i] != '\r') {
      char const c = text[i];
      if (c == '%') {
        while (i < text.size() && text[i] != '\n' && text[i] != '\r') ++i;
        break;
      }
      if (c == '"' || (c == '\'' && !(isWordChar(previous) || previous == ')' || previous == ']' || previous == '}' ||
                                      previous == '\'' || previous == '.'))) {
        // Text runs to its closing quote on this line.
        ++i;
        while (i < text.size() && text[i] != c && text[i] != '\n' && text[i] != '\r') ++i;
        if (i < text.size() && text[i] == c) ++i;
        previous = c;
        firstWord = false;
        continue;
      }
      if (isLetter(c) && !isWordChar(previous) && previous != '.') {
        std::size_t const start = i;
        while (i < text.size() && isWordChar(text[i])) ++i;
        std::string_view const word = text.substr(start, i - start);
        if (depth == 0) {
          if (word == "function") {
            ++functions;
          } else if (word == "end") {
            // `function e = end(obj, k, n)` names a method, it closes nothing.
            std::size_t next = i;
            while (next < text.size() && (text[next] == ' ' || text[next] == '\t')) ++next;
            if (next == text.size() || text[next] != '(') ++ends;
          } else if (opensBlock(keywordKind(word)) ||
                     // Words that open a block only at the start of a line.
                     (firstWord && contextualKeyword(word) != ContextualKeyword::None)) {
            ++blocks;
          }
        }
        firstWord = false;
        previous = text[i - 1];
        continue;
      }
      if (c == '(' || c == '[' || c == '{') ++depth;
      if ((c == ')' || c == ']' || c == '}') && depth > 0) --depth;
      if (c == ',' || c == ';') firstWord = depth == 0 ? firstWord : false;
      if (c != ' ' && c != '\t') previous = c;
      ++i;
    }
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

ParseResult parse(std::string_view source, std::string_view path) {
  ParseResult result;
  // The decoder speaks for the encoding (a warning for a file not in UTF-8)
  // and refuses what is not source text (a NUL byte, a file too large), with
  // positions in the file's own terms.
  DecodedSource const decoded = decodeSource(source, path);
  result.diagnostics = decoded.diagnostics;
  if (!decoded.readable()) return result;
  std::string_view const text = decoded.text();

  bool hasFunctions = false;
  FunctionStyle const guess = guessStyle(text, hasFunctions);
  Attempt best = attempt(text, path, guess);
  if (best.errors > 0 && hasFunctions) {
    // The other style may read the file without errors, or with fewer.
    FunctionStyle const other = guess == FunctionStyle::Terminated ? FunctionStyle::Open : FunctionStyle::Terminated;
    Attempt second = attempt(text, path, other);
    if (second.errors < best.errors) best = std::move(second);
  }
  result.tree = std::move(best.tree);
  decoded.placeInFile(best.diagnostics);
  result.diagnostics.insert(result.diagnostics.end(), std::make_move_iterator(best.diagnostics.begin()),
                            std::make_move_iterator(best.diagnostics.end()));
  return result;
}

}  // namespace frontend
