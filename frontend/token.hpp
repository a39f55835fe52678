#pragma once

#include <cstdint>
#include <string_view>

namespace frontend {

enum class TokenKind : std::uint8_t {
  EndOfFile,
  Newline,
  Error,  // a character or construct the lexer cannot read; see Lexer::errorMessage
  Identifier,
  Number,
  CharVector,  // 'text'
  String,      // "text"
  // Keywords.
  Break,
  Case,
  Catch,
  Classdef,
  Continue,
  Else,
  Elseif,
  End,
  For,
  Function,
  Global,
  If,
  Otherwise,
  Parfor,
  Persistent,
  Return,
  Spmd,
  Switch,
  Try,
  While,
  // Operators and punctuation.
  Plus,
  Minus,
  Star,
  Slash,
  Backslash,
  Caret,
  DotStar,
  DotSlash,
  DotBackslash,
  DotCaret,
  Transpose,     // '
  DotTranspose,  // .'
  EqualEqual,
  NotEqual,
  Less,
  LessEqual,
  Greater,
  GreaterEqual,
  Amp,
  Pipe,
  AmpAmp,
  PipePipe,
  Tilde,
  Bang,
  Colon,
  Assign,
  At,
  Question,
  Dot,
  LeftParen,
  RightParen,
  LeftBracket,
  RightBracket,
  LeftBrace,
  RightBrace,
  Comma,
  Semicolon,
};

/// How a token reads in a message: "identifier 'x'", "'end'", "end of line".
std::string_view describeKind(TokenKind kind);

/// One token. Positions are those of its first character; `text` views the
/// source, which outlives the token.
struct Token {
  TokenKind kind = TokenKind::EndOfFile;
  /// A blank (or a continuation) stands between this token and the one before.
  bool spaceBefore = false;
  /// The text holds only ASCII: its characters are its bytes.
  bool ascii = true;
  std::uint32_t offset = 0;
  std::uint32_t line = 1;
  std::uint32_t column = 1;
  std::string_view text;
  /// For `Error` tokens, the index of the lexer's message.
  std::uint32_t errorIndex = 0;

  std::uint32_t endOffset() const { return offset + static_cast<std::uint32_t>(text.size()); }
};

}  // namespace frontend
