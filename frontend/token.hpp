#pragma once

#include <algorithm>
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

namespace tokens {

// The keywords in a table of 64 slots, found by a hash of a word's length and
// its first and last letters that puts no two keywords in one slot: every
// identifier of a file is looked up, and most are no keyword, so a lookup
// costs one slot and at most one comparison.
struct KeywordSlot {
  std::string_view spelling;  // empty for a slot without a keyword
  TokenKind kind = TokenKind::Identifier;
};

inline constexpr std::size_t keywordSlotCount = 64;

struct KeywordHash {
  std::size_t first, last;  // the multipliers of the first and the last letter

  constexpr std::size_t operator()(std::string_view word) const {
    return (word.size() + first * static_cast<unsigned char>(word.front()) +
            last * static_cast<unsigned char>(word.back())) %
           keywordSlotCount;
  }
};

// The smallest multipliers that place every keyword in a slot of its own.
inline constexpr KeywordHash keywordHash = [] {
  for (std::size_t first = 1; first < keywordSlotCount; ++first) {
    for (std::size_t last = 1; last < keywordSlotCount; ++last) {
      KeywordHash const hash{first, last};
      std::array<bool, keywordSlotCount> taken{};
      bool collides = false;
      for (auto const& definition : definitions) {
        if (definition.role == KeywordRole::None) continue;
        bool& slot = taken[hash(definition.spelling)];
        collides = collides || slot;
        slot = true;
      }
      if (!collides) return hash;
    }
  }
  throw "no multipliers place every keyword in a slot of its own";  // fails the compilation
}();

inline constexpr std::array<KeywordSlot, keywordSlotCount> keywordSlots = [] {
  std::array<KeywordSlot, keywordSlotCount> slots{};
  for (std::size_t kind = 0; kind < std::size(definitions); ++kind) {
    if (definitions[kind].role == KeywordRole::None) continue;
    slots[keywordHash(definitions[kind].spelling)] = {definitions[kind].spelling, static_cast<TokenKind>(kind)};
  }
  return slots;
}();

inline constexpr std::size_t longestKeyword = [] {
  std::size_t longest = 0;
  for (auto const& slot : keywordSlots) longest = std::max(longest, slot.spelling.size());
  return longest;
}();

}  // namespace tokens

/// The keyword spelt `word`, or `Identifier` when it is none.
inline TokenKind keywordKind(std::string_view word) {
  if (word.empty() || word.size() > tokens::longestKeyword) return TokenKind::Identifier;
  tokens::KeywordSlot const& slot = tokens::keywordSlots[tokens::keywordHash(word)];
  if (slot.spelling.size() != word.size()) return TokenKind::Identifier;
  // Keywords are short: a loop, rather than a call of memcmp.
  for (std::size_t i = 0; i < word.size(); ++i) {
    if (slot.spelling[i] != word[i]) return TokenKind::Identifier;
  }
  return slot.kind;
}

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
