#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "frontend/diagnostic_kind.hpp"
#include "frontend/token.hpp"
#include "platform/ast/source_range.hpp"

namespace frontend {

/// Splits UTF-8 source into tokens, one at a time, as the parser asks.
///
/// The lexer decides alone what depends only on characters: whether a quote
/// is a transpose (it follows a value with no blank between) or opens a char
/// vector, where numbers end (`1./a`), comments, block comments and
/// continuations. Command syntax and shell escapes, which the parser
/// recognises, are read raw through `nextCommandWord` and `readRestOfLine`.
///
/// Invariants: tokens never span lines; every offset is within the source;
/// the source outlives the lexer and its tokens.
class Lexer {
 public:
  explicit Lexer(std::string_view source);

  Token next();

  /// What is wrong with the text of an `Error` token.
  struct Error {
    DiagnosticKind kind;
    std::string message;
  };
  Error const& errorOf(Token const& token) const { return errors_[token.errorIndex]; }

  /// A word of command syntax: `hold on` has the word "on".
  struct Word {
    std::string text;  // the argument's value: quotes of a 'quoted word' removed
    std::uint32_t offset = 0, line = 0, column = 0, length = 0;
  };
  /// Reads the next argument of command syntax from the current position
  /// into `word`; false at the end of the statement, which is left for `next`
  /// to return. The words of a command come one by one, however many.
  bool nextCommandWord(Word& word);
  /// Reads the rest of the line, verbatim, leaving the line end for `next`.
  std::string_view readRestOfLine();

  /// Forgets open brackets, for recovery after a broken statement.
  void forgetBrackets() {
    brackets_.clear();
    openIndexBrackets_ = 0;
  }

  /// The position of the source's last character; valid once the lexer has
  /// reached the end of the source, and for a source that is not empty.
  lf::astapi::SourcePosition lastCharacter() const;

 private:
  Token make(TokenKind kind, std::uint32_t start, bool spaceBefore);
  /// An `Error` token of `length` bytes from `start`, and its error of `kind`.
  template <DiagnosticKind kind, class... Args>
  Token fault(std::uint32_t start, std::uint32_t length, bool spaceBefore, Args const&... args);
  /// Skips blanks, comments and continuations; true when any was skipped.
  bool skipTrivia(Token* failure);
  bool skipBlockComment(Token* failure);
  bool lineIsOnly(std::uint32_t from, std::string_view marker) const;
  void newLine(std::uint32_t nextLineStart);
  Token lexNumber(std::uint32_t start, bool spaceBefore);
  Token lexText(std::uint32_t start, bool spaceBefore, char quote, TokenKind kind);
  bool transposeAllowed(bool spaceBefore) const;
  std::uint32_t charactersBetween(std::uint32_t from, std::uint32_t to) const;
  /// The 1-based column (in characters) of a byte offset on the current line.
  /// Offsets are asked in increasing order, so the count goes on from the
  /// last one: a line costs its length once, however many tokens it holds.
  std::uint32_t columnOnLine(std::uint32_t offset);

  std::string_view source_;
  std::uint32_t pos_ = 0;
  std::uint32_t line_ = 1;
  std::uint32_t lineStart_ = 0;
  std::uint32_t previousLineStart_ = 0;
  // A byte offset on the current line and its column, where the next count
  // of columns starts.
  std::uint32_t columnMark_ = 0;
  std::uint32_t columnAtMark_ = 1;
  bool lineHasToken_ = false;
  bool nonAsciiOnLine_ = false;
  TokenKind previous_ = TokenKind::Newline;
  // The previous token was `end` used as an index (inside parentheses or braces).
  bool previousIndexEnd_ = false;
  std::vector<char> brackets_;
  // How many of the open brackets are parentheses or braces: inside one, `end`
  // is an index.
  std::uint32_t openIndexBrackets_ = 0;
  std::vector<Error> errors_;
};

}  // namespace frontend
