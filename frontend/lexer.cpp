#include "frontend/lexer.hpp"

#include "frontend/diagnostic_message.hpp"
#include "frontend/number_literal.hpp"

namespace frontend {

namespace {

bool isLetter(char c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z'); }
bool isDigit(char c) { return c >= '0' && c <= '9'; }
bool isNameChar(char c) { return isLetter(c) || isDigit(c) || c == '_'; }
bool isBlank(char c) { return c == ' ' || c == '\t' || c == '\f' || c == '\v'; }

}  // namespace

Lexer::Lexer(std::string_view source) : source_(source) {}

std::uint32_t Lexer::charactersBetween(std::uint32_t from, std::uint32_t to) const {
  std::uint32_t characters = 0;
  for (std::uint32_t i = from; i < to; ++i) {
    // Count characters: every byte that is not a UTF-8 continuation byte.
    if ((static_cast<unsigned char>(source_[i]) & 0xC0) != 0x80) ++characters;
  }
  return characters;
}

std::uint32_t Lexer::columnOnLine(std::uint32_t offset) {
  if (offset < columnMark_) return 1 + charactersBetween(lineStart_, offset);
  columnAtMark_ += charactersBetween(columnMark_, offset);
  columnMark_ = offset;
  return columnAtMark_;
}

lf::astapi::SourcePosition Lexer::lastCharacter() const {
  auto const last = static_cast<std::uint32_t>(source_.size() - 1);
  // A final line end belongs to the line before the (empty) current one.
  if (lineStart_ == source_.size() && line_ > 1) {
    return {last, line_ - 1, 1 + charactersBetween(previousLineStart_, last)};
  }
  return {last, line_, 1 + charactersBetween(lineStart_, last)};
}

void Lexer::newLine(std::uint32_t nextLineStart) {
  previousLineStart_ = lineStart_;
  ++line_;
  lineStart_ = nextLineStart;
  columnMark_ = nextLineStart;
  columnAtMark_ = 1;
  lineHasToken_ = false;
  nonAsciiOnLine_ = false;
}

Token Lexer::make(TokenKind kind, std::uint32_t start, bool spaceBefore) {
  Token token;
  token.kind = kind;
  token.spaceBefore = spaceBefore;
  token.offset = start;
  token.line = line_;
  token.column = nonAsciiOnLine_ ? columnOnLine(start) : start - lineStart_ + 1;
  token.text = source_.substr(start, pos_ - start);
  if (kind == TokenKind::CharVector || kind == TokenKind::String || kind == TokenKind::Error) {
    for (char c : token.text) {
      if (static_cast<unsigned char>(c) >= 0x80) token.ascii = false;
    }
  }
  if (kind != TokenKind::Newline) lineHasToken_ = true;
  previousIndexEnd_ = kind == TokenKind::End && openIndexBrackets_ > 0;
  previous_ = kind;
  return token;
}

template <DiagnosticKind kind, class... Args>
Token Lexer::fault(std::uint32_t start, std::uint32_t length, bool spaceBefore, Args const&... args) {
  pos_ = start + length;
  Token token = make(TokenKind::Error, start, spaceBefore);
  token.errorIndex = static_cast<std::uint32_t>(errors_.size());
  errors_.push_back({kind, diagnosticMessage<kind>(args...)});
  return token;
}

bool Lexer::lineIsOnly(std::uint32_t from, std::string_view marker) const {
  std::uint32_t i = from;
  while (i < source_.size() && isBlank(source_[i])) ++i;
  if (source_.substr(i, marker.size()) != marker) return false;
  i += static_cast<std::uint32_t>(marker.size());
  while (i < source_.size() && isBlank(source_[i])) ++i;
  return i == source_.size() || source_[i] == '\n' || source_[i] == '\r';
}

bool Lexer::skipBlockComment(Token* failure) {
  // At the start of a line that holds only "%{". Block comments nest.
  std::uint32_t const start = pos_;
  std::uint32_t const startLine = line_;
  std::uint32_t const startColumn = columnOnLine(start);
  int depth = 0;
  std::uint32_t i = lineStart_;
  while (i <= source_.size()) {
    if (lineIsOnly(i, "%{")) {
      ++depth;
    } else if (lineIsOnly(i, "%}")) {
      --depth;
    }
    // Move to the start of the next line.
    std::uint32_t end = i;
    while (end < source_.size() && source_[end] != '\n' && source_[end] != '\r') ++end;
    if (depth == 0) {
      pos_ = end;  // the line end after "%}" is an ordinary line end
      return true;
    }
    if (end >= source_.size()) break;
    std::uint32_t next = end + ((source_[end] == '\r' && end + 1 < source_.size() && source_[end + 1] == '\n') ? 2 : 1);
    newLine(next);
    i = next;
  }
  pos_ = static_cast<std::uint32_t>(source_.size());
  Token token;
  token.kind = TokenKind::Error;
  token.ascii = true;
  token.offset = start;
  token.line = startLine;
  token.column = startColumn;
  token.text = source_.substr(start, 2);
  token.errorIndex = static_cast<std::uint32_t>(errors_.size());
  errors_.push_back(
      {DiagnosticKind::UnterminatedBlockComment, diagnosticMessage<DiagnosticKind::UnterminatedBlockComment>()});
  *failure = token;
  return true;
}

bool Lexer::skipTrivia(Token* failure) {
  bool skipped = false;
  while (pos_ < source_.size()) {
    char const c = source_[pos_];
    if (isBlank(c)) {
      ++pos_;
      skipped = true;
    } else if (c == '%') {
      if (!lineHasToken_ && lineIsOnly(pos_, "%{")) {
        skipBlockComment(failure);
        if (failure->kind == TokenKind::Error) return skipped;
      } else {
        while (pos_ < source_.size() && source_[pos_] != '\n' && source_[pos_] != '\r') {
          if (static_cast<unsigned char>(source_[pos_]) >= 0x80) nonAsciiOnLine_ = true;
          ++pos_;
        }
      }
    } else if (c == '.' && source_.substr(pos_, 3) == "...") {
      // A continuation: the rest of the line is a comment, and the statement
      // goes on with the next line.
      while (pos_ < source_.size() && source_[pos_] != '\n' && source_[pos_] != '\r') ++pos_;
      if (pos_ < source_.size()) {
        pos_ += (source_[pos_] == '\r' && pos_ + 1 < source_.size() && source_[pos_ + 1] == '\n') ? 2 : 1;
        bool const hadToken = lineHasToken_;
        newLine(pos_);
        lineHasToken_ = hadToken;
      }
      skipped = true;
    } else {
      break;
    }
  }
  return skipped;
}

bool Lexer::transposeAllowed(bool spaceBefore) const {
  if (spaceBefore) return false;
  switch (previous_) {
    case TokenKind::Identifier:
    case TokenKind::Number:
    case TokenKind::RightParen:
    case TokenKind::RightBracket:
    case TokenKind::RightBrace:
    case TokenKind::Transpose:
    case TokenKind::DotTranspose:
    case TokenKind::CharVector:
    case TokenKind::String: return true;
    case TokenKind::End: return previousIndexEnd_;
    default: return false;
  }
}

Token Lexer::lexText(std::uint32_t start, bool spaceBefore, char quote, TokenKind kind) {
  std::uint32_t i = start + 1;
  while (i < source_.size()) {
    char const c = source_[i];
    if (c == '\n' || c == '\r') break;
    if (static_cast<unsigned char>(c) >= 0x80) nonAsciiOnLine_ = true;
    if (c == quote) {
      if (i + 1 < source_.size() && source_[i + 1] == quote) {
        i += 2;
        continue;
      }
      pos_ = i + 1;
      return make(kind, start, spaceBefore);
    }
    ++i;
  }
  if (kind == TokenKind::CharVector) {
    return fault<DiagnosticKind::UnterminatedCharVector>(start, i - start, spaceBefore);
  }
  return fault<DiagnosticKind::UnterminatedString>(start, i - start, spaceBefore);
}

Token Lexer::lexNumber(std::uint32_t start, bool spaceBefore) {
  NumberExtent const number = scanNumber(source_, start);
  switch (number.fault) {
    case NumberFault::None: break;
    case NumberFault::MissingDigits:
      return fault<DiagnosticKind::MissingNumberDigits>(start, number.end - start, spaceBefore);
    case NumberFault::BadSuffix: return fault<DiagnosticKind::BadNumberSuffix>(start, number.end - start, spaceBefore);
  }
  pos_ = number.end;
  return make(TokenKind::Number, start, spaceBefore);
}

Token Lexer::next() {
  Token failure;
  bool const spaceBefore = skipTrivia(&failure);
  if (failure.kind == TokenKind::Error) {
    failure.spaceBefore = spaceBefore;
    previous_ = TokenKind::Error;
    return failure;
  }
  std::uint32_t const start = pos_;
  if (pos_ >= source_.size()) return make(TokenKind::EndOfFile, start, spaceBefore);

  char const c = source_[pos_];
  auto at = [this](std::uint32_t k) { return k < source_.size() ? source_[k] : '\0'; };
  auto single = [&](TokenKind kind) {
    pos_ = start + 1;
    return make(kind, start, spaceBefore);
  };
  auto pair = [&](TokenKind kind) {
    pos_ = start + 2;
    return make(kind, start, spaceBefore);
  };

  if (c == '\n' || c == '\r') {
    pos_ = start + ((c == '\r' && at(start + 1) == '\n') ? 2 : 1);
    Token token = make(TokenKind::Newline, start, spaceBefore);
    newLine(pos_);
    return token;
  }
  if (isLetter(c)) {
    std::uint32_t i = start + 1;
    while (i < source_.size() && isNameChar(source_[i])) ++i;
    pos_ = i;
    return make(keywordKind(source_.substr(start, i - start)), start, spaceBefore);
  }
  if (isDigit(c) || (c == '.' && isDigit(at(start + 1)))) return lexNumber(start, spaceBefore);

  switch (c) {
    case '\'':
      if (transposeAllowed(spaceBefore)) return single(TokenKind::Transpose);
      return lexText(start, spaceBefore, '\'', TokenKind::CharVector);
    case '"': return lexText(start, spaceBefore, '"', TokenKind::String);
    case '+': return single(TokenKind::Plus);
    case '-': return single(TokenKind::Minus);
    case '*': return single(TokenKind::Star);
    case '/': return single(TokenKind::Slash);
    case '\\': return single(TokenKind::Backslash);
    case '^': return single(TokenKind::Caret);
    case '.':
      switch (at(start + 1)) {
        case '*': return pair(TokenKind::DotStar);
        case '/': return pair(TokenKind::DotSlash);
        case '\\': return pair(TokenKind::DotBackslash);
        case '^': return pair(TokenKind::DotCaret);
        case '\'': return pair(TokenKind::DotTranspose);
        default: return single(TokenKind::Dot);
      }
    case '=': return at(start + 1) == '=' ? pair(TokenKind::EqualEqual) : single(TokenKind::Assign);
    case '~': return at(start + 1) == '=' ? pair(TokenKind::NotEqual) : single(TokenKind::Tilde);
    case '!': return at(start + 1) == '=' ? pair(TokenKind::NotEqual) : single(TokenKind::Bang);
    case '<': return at(start + 1) == '=' ? pair(TokenKind::LessEqual) : single(TokenKind::Less);
    case '>': return at(start + 1) == '=' ? pair(TokenKind::GreaterEqual) : single(TokenKind::Greater);
    case '&': return at(start + 1) == '&' ? pair(TokenKind::AmpAmp) : single(TokenKind::Amp);
    case '|': return at(start + 1) == '|' ? pair(TokenKind::PipePipe) : single(TokenKind::Pipe);
    case ':': return single(TokenKind::Colon);
    case '@': return single(TokenKind::At);
    case '?': return single(TokenKind::Question);
    case ',': return single(TokenKind::Comma);
    case ';': return single(TokenKind::Semicolon);
    case '(':
    case '[':
    case '{': {
      brackets_.push_back(c);
      if (c != '[') ++openIndexBrackets_;
      return single(c == '(' ? TokenKind::LeftParen : c == '[' ? TokenKind::LeftBracket : TokenKind::LeftBrace);
    }
    case ')':
    case ']':
    case '}': {
      if (!brackets_.empty()) {
        if (brackets_.back() != '[') --openIndexBrackets_;
        brackets_.pop_back();
      }
      return single(c == ')' ? TokenKind::RightParen : c == ']' ? TokenKind::RightBracket : TokenKind::RightBrace);
    }
    default: break;
  }
  // Anything else: one character, however many bytes it takes.
  std::uint32_t length = 1;
  if (static_cast<unsigned char>(c) >= 0x80) {
    nonAsciiOnLine_ = true;
    while (start + length < source_.size() && (static_cast<unsigned char>(source_[start + length]) & 0xC0) == 0x80) {
      ++length;
    }
  }
  if (c == '\0') return fault<DiagnosticKind::UnexpectedNul>(start, length, spaceBefore);
  return fault<DiagnosticKind::UnexpectedCharacter>(start, length, spaceBefore, source_.substr(start, length));
}

bool Lexer::nextCommandWord(Word& word) {
  auto at = [this](std::uint32_t k) { return k < source_.size() ? source_[k] : '\0'; };
  auto isLineEnd = [](char c) { return c == '\n' || c == '\r'; };
  lineHasToken_ = true;
  previous_ = TokenKind::CharVector;
  while (true) {
    while (isBlank(at(pos_))) ++pos_;
    char const c = at(pos_);
    if (pos_ >= source_.size() || isLineEnd(c) || c == ',' || c == ';') return false;
    if (c == '%') {
      // A comment ends the command; the line end stays for next().
      while (pos_ < source_.size() && !isLineEnd(source_[pos_])) {
        if (static_cast<unsigned char>(source_[pos_]) >= 0x80) nonAsciiOnLine_ = true;
        ++pos_;
      }
      return false;
    }
    if (source_.substr(pos_, 3) != "...") break;
    Token ignored;
    skipTrivia(&ignored);
    lineHasToken_ = true;
  }
  std::uint32_t const start = pos_;
  std::string& text = word.text;
  text.clear();
  // A word runs to the next blank, comma, semicolon or line end outside
  // parentheses: `w(2,1)` and `b(t)` are one word each. Quoted parts
  // ('it''s here') may hold any of these; outside parentheses they lose
  // their quotes, inside they stay as written.
  int parentheses = 0;
  while (pos_ < source_.size()) {
    char const d = source_[pos_];
    if (isLineEnd(d)) break;
    if (parentheses == 0 && (isBlank(d) || d == ',' || d == ';')) break;
    if (static_cast<unsigned char>(d) >= 0x80) nonAsciiOnLine_ = true;
    char const before = pos_ > start ? source_[pos_ - 1] : ' ';
    bool const transpose = parentheses > 0 && (isNameChar(before) || before == ')' || before == ']' ||
                                               before == '}' || before == '\'' || before == '.');
    if (d == '\'' && !transpose) {
      bool const keepQuotes = parentheses > 0;
      if (keepQuotes) text += '\'';
      std::uint32_t i = pos_ + 1;
      bool closed = false;
      while (i < source_.size() && !isLineEnd(source_[i])) {
        if (static_cast<unsigned char>(source_[i]) >= 0x80) nonAsciiOnLine_ = true;
        if (source_[i] == '\'') {
          if (at(i + 1) == '\'') {
            text += keepQuotes ? "''" : "'";
            i += 2;
            continue;
          }
          closed = true;
          break;
        }
        text += source_[i];
        ++i;
      }
      if (closed && keepQuotes) text += '\'';
      pos_ = closed ? i + 1 : i;
      continue;
    }
    if (d == '(') ++parentheses;
    if (d == ')' && parentheses > 0) --parentheses;
    text += d;
    ++pos_;
  }
  word.offset = start;
  word.line = line_;
  word.column = columnOnLine(start);
  word.length = pos_ - start;
  return true;
}

std::string_view Lexer::readRestOfLine() {
  std::uint32_t const start = pos_;
  while (pos_ < source_.size() && source_[pos_] != '\n' && source_[pos_] != '\r') {
    if (static_cast<unsigned char>(source_[pos_]) >= 0x80) nonAsciiOnLine_ = true;
    ++pos_;
  }
  lineHasToken_ = true;
  previous_ = TokenKind::CharVector;
  return source_.substr(start, pos_ - start);
}

}  // namespace frontend
