#include "frontend/token.hpp"

#include <algorithm>
#include <array>

namespace frontend {

namespace {

struct Keyword {
  std::string_view spelling;
  TokenKind kind;
};

constexpr std::size_t keywordCount = [] {
  std::size_t count = 0;
  for (auto const& definition : tokens::definitions) count += definition.role != KeywordRole::None ? 1 : 0;
  return count;
}();

// The keywords ordered by length, so that a word is compared only with the
// keywords as long as it: every identifier of a file is looked up here.
constexpr std::array<Keyword, keywordCount> keywordsByLength = [] {
  std::array<Keyword, keywordCount> keywords{};
  std::size_t next = 0;
  for (std::size_t kind = 0; kind < tokenKindCount; ++kind) {
    auto const& definition = tokens::definitions[kind];
    if (definition.role != KeywordRole::None) keywords[next++] = {definition.spelling, static_cast<TokenKind>(kind)};
  }
  std::sort(keywords.begin(), keywords.end(),
            [](Keyword const& a, Keyword const& b) { return a.spelling.size() < b.spelling.size(); });
  return keywords;
}();

constexpr std::size_t longestKeyword = keywordsByLength.back().spelling.size();

// firstOfLength[n] is where the keywords of n characters start in
// keywordsByLength, and firstOfLength[n + 1] where they end.
constexpr std::array<std::uint8_t, longestKeyword + 2> firstOfLength = [] {
  std::array<std::uint8_t, longestKeyword + 2> first{};
  std::size_t k = 0;
  for (std::size_t length = 0; length < first.size(); ++length) {
    while (k < keywordCount && keywordsByLength[k].spelling.size() < length) ++k;
    first[length] = static_cast<std::uint8_t>(k);
  }
  return first;
}();

}  // namespace

TokenKind keywordKind(std::string_view word) {
  if (word.size() > longestKeyword) return TokenKind::Identifier;
  for (std::size_t k = firstOfLength[word.size()]; k < firstOfLength[word.size() + 1]; ++k) {
    if (keywordsByLength[k].spelling == word) return keywordsByLength[k].kind;
  }
  return TokenKind::Identifier;
}

ContextualKeyword contextualKeyword(std::string_view word) {
  for (auto const& keyword : tokens::contextualKeywords) {
    if (keyword.spelling == word) return keyword.word;
  }
  return ContextualKeyword::None;
}

bool headsClassBlock(ContextualKeyword word) {
  for (auto const& keyword : tokens::contextualKeywords) {
    if (keyword.word == word) return keyword.owner == tokens::Owner::Class;
  }
  return false;
}

}  // namespace frontend
