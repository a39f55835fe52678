#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

namespace frontend {

// Everything here is made from the one list of tokens in tokens.def.

enum class TokenKind : std::uint8_t {
#define PLEXUS_TOKEN(kind, description) kind,
#define PLEXUS_KEYWORD(kind, spelling, role) kind,
#define PLEXUS_OPERATOR(kind, spelling, description) kind,
#include "frontend/tokens.def"
};

/// What a keyword does to the blocks around it (see tokens.def).
enum class KeywordRole : std::uint8_t { None, Opener, Divider, Closer, Plain };

/// The words that head a block only in their place; `None` for any other word.
enum class ContextualKeyword : std::uint8_t {
  None,
#define PLEXUS_CONTEXTUAL_KEYWORD(name, spelling, owner) name,
#include "frontend/tokens.def"
};

namespace tokens {

struct TokenDefinition {
  std::string_view description;
  std::string_view spelling;  // empty for a token whose text varies
  KeywordRole role;           // None for a token that is no keyword
};

inline constexpr TokenDefinition definitions[] = {
#define PLEXUS_TOKEN(kind, description) {description, {}, KeywordRole::None},
#define PLEXUS_KEYWORD(kind, spelling, role) {"'" spelling "'", spelling, KeywordRole::role},
#define PLEXUS_OPERATOR(kind, spelling, description) {description, spelling, KeywordRole::None},
#include "frontend/tokens.def"
};

enum class Owner : std::uint8_t { Class, Function };

struct ContextualKeywordDefinition {
  ContextualKeyword word;
  std::string_view spelling;
  Owner owner;
};

inline constexpr ContextualKeywordDefinition contextualKeywords[] = {
#define PLEXUS_CONTEXTUAL_KEYWORD(name, spelling, owner) {ContextualKeyword::name, spelling, Owner::owner},
#include "frontend/tokens.def"
};

}  // namespace tokens

inline constexpr std::size_t tokenKindCount = std::size(tokens::definitions);

constexpr tokens::TokenDefinition const& definitionOf(TokenKind kind) {
  return tokens::definitions[static_cast<std::size_t>(kind)];
}

/// How a token reads in a message: "identifier", "'end'", "end of line".
constexpr std::string_view describeKind(TokenKind kind) { return definitionOf(kind).description; }

constexpr bool isKeyword(TokenKind kind) { return definitionOf(kind).role != KeywordRole::None; }

/// `if`, `for`, `function` ...: a keyword that opens a block closed by `end`.
constexpr bool opensBlock(TokenKind kind) { return definitionOf(kind).role == KeywordRole::Opener; }

/// `end`, `else`, `case` ...: a keyword that closes a block or a part of one.
constexpr bool isBlockCloser(TokenKind kind) {
  KeywordRole const role = definitionOf(kind).role;
  return role == KeywordRole::Closer || role == KeywordRole::Divider;
}

/// The keyword spelt `word`, or `Identifier` when it is none.
TokenKind keywordKind(std::string_view word);

/// The contextual keyword spelt `word`, or `None`.
ContextualKeyword contextualKeyword(std::string_view word);

/// `properties`, `methods`, `events`, `enumeration`: the blocks of a class body.
bool headsClassBlock(ContextualKeyword word);

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
  /// For `Error` tokens, the index of the lexer's error.
  std::uint32_t errorIndex = 0;

  std::uint32_t endOffset() const { return offset + static_cast<std::uint32_t>(text.size()); }
};

}  // namespace frontend
