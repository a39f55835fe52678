#include "frontend/token.hpp"

namespace frontend {

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
