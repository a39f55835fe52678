// The table of tokens (frontend/tokens.def) against what the lexer reads: the
// table is where keywords and token kinds are declared, the lexer is what
// decides, and the two must agree word for word.

#include <gtest/gtest.h>

#include <algorithm>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "frontend/lexer.hpp"
#include "frontend/parse.hpp"
#include "frontend/token.hpp"
#include "frontend/tree_dump.hpp"

namespace {

using frontend::ContextualKeyword;
using frontend::Lexer;
using frontend::TokenKind;

std::vector<frontend::Token> lexAll(std::string_view source) {
  Lexer lexer(source);
  std::vector<frontend::Token> tokens;
  do {
    tokens.push_back(lexer.next());
  } while (tokens.back().kind != TokenKind::EndOfFile);
  return tokens;
}

TEST(TokenTable, EveryKeywordOfTheTableIsLexedAsItsKindAndNothingElseIs) {
  std::set<std::string> keywords;
  for (std::size_t k = 0; k < frontend::tokenKindCount; ++k) {
    auto const kind = static_cast<TokenKind>(k);
    if (!frontend::isKeyword(kind)) continue;
    std::string const word(frontend::definitionOf(kind).spelling);
    SCOPED_TRACE(word);
    keywords.insert(word);
    EXPECT_EQ(frontend::keywordKind(word), kind);
    auto const tokens = lexAll(word);
    ASSERT_EQ(tokens.size(), 2u);
    EXPECT_EQ(tokens[0].kind, kind);
    EXPECT_EQ(tokens[0].text, word);
    EXPECT_EQ(frontend::describeKind(kind), "'" + word + "'");
    // A keyword is a whole word: longer or shorter, or in capitals, it is a name.
    std::string const capitalised = static_cast<char>(word[0] - 'a' + 'A') + word.substr(1);
    for (std::string const& name : {word + "s", word + "_1", word.substr(1), capitalised}) {
      EXPECT_EQ(lexAll(name)[0].kind, TokenKind::Identifier) << name;
    }
  }
  // The reserved words of the analysed language, as its reference lists them.
  EXPECT_EQ(keywords,
            (std::set<std::string>{"break",      "case",   "catch",    "classdef", "continue", "else",      "elseif",
                                   "end",        "for",    "function", "global",   "if",       "otherwise", "parfor",
                                   "persistent", "return", "spmd",     "switch",   "try",      "while"}));
  // The words that head blocks only in their place are names to the lexer.
  for (auto const& contextual : frontend::tokens::contextualKeywords) {
    EXPECT_EQ(lexAll(contextual.spelling)[0].kind, TokenKind::Identifier) << contextual.spelling;
    EXPECT_EQ(frontend::contextualKeyword(contextual.spelling), contextual.word) << contextual.spelling;
  }
  EXPECT_EQ(frontend::contextualKeyword("property"), ContextualKeyword::None);
  EXPECT_TRUE(frontend::headsClassBlock(ContextualKeyword::Methods));
  EXPECT_FALSE(frontend::headsClassBlock(ContextualKeyword::Arguments));
}

TEST(TokenTable, EveryOperatorOfTheTableIsLexedAsItsKind) {
  std::set<TokenKind> varying;
  for (std::size_t k = 0; k < frontend::tokenKindCount; ++k) {
    auto const kind = static_cast<TokenKind>(k);
    std::string_view const spelling = frontend::definitionOf(kind).spelling;
    if (spelling.empty()) varying.insert(kind);
    if (spelling.empty() || frontend::isKeyword(kind)) continue;
    SCOPED_TRACE(std::string(spelling));
    // After a name, so that a quote is a transpose.
    // Tokens view their source, which must outlive them.
    std::string const source = "x" + std::string(spelling);
    auto const tokens = lexAll(source);
    ASSERT_EQ(tokens.size(), 3u);
    EXPECT_EQ(tokens[1].kind, kind);
    EXPECT_EQ(tokens[1].text, spelling);
  }
  // Every other token has a spelling, and is checked above.
  EXPECT_EQ(varying,
            (std::set<TokenKind>{TokenKind::EndOfFile, TokenKind::Newline, TokenKind::Error, TokenKind::Identifier,
                                 TokenKind::Number, TokenKind::CharVector, TokenKind::String}));
  EXPECT_EQ(lexAll("x!=")[1].kind, TokenKind::NotEqual);
}

// The parser's questions about keywords come from the table too: which open
// a block that `end` closes, and which close a block or a part of one.
TEST(TokenTable, KeywordRolesDecideHowTheParserReadsBlocks) {
  std::vector<std::string_view> openers, closers;
  for (std::size_t k = 0; k < frontend::tokenKindCount; ++k) {
    auto const kind = static_cast<TokenKind>(k);
    if (frontend::opensBlock(kind)) openers.push_back(frontend::definitionOf(kind).spelling);
    if (frontend::isBlockCloser(kind)) closers.push_back(frontend::definitionOf(kind).spelling);
  }
  std::sort(openers.begin(), openers.end());
  std::sort(closers.begin(), closers.end());
  EXPECT_EQ(openers, (std::vector<std::string_view>{"classdef", "for", "function", "if", "parfor", "spmd", "switch",
                                                    "try", "while"}));
  EXPECT_EQ(closers, (std::vector<std::string_view>{"case", "catch", "else", "elseif", "end", "otherwise"}));

  // Skipping a misspelt class block counts the blocks it holds, each opener
  // with its 'end', so that the class and the method after it are read.
  std::string const source =
      "classdef A\n"
      "    method\n"
      "        function r = f(x)\n"
      "            if x, r = 1; end\n"
      "            for k = 1:2, parfor j = 1:2, end, end\n"
      "            while x, switch x, case 1, end, end\n"
      "            try, spmd, end, catch, end\n"
      "        end\n"
      "    end\n"
      "    methods\n"
      "        function s = kept(obj)\n"
      "        end\n"
      "    end\n"
      "end\n";
  auto const result = frontend::parse(source, "A.m");
  ASSERT_EQ(result.diagnostics.size(), 1u);
  EXPECT_EQ(result.diagnostics[0].line, 2u);
  EXPECT_NE(frontend::dumpTree(*result.tree->getProgram()).find("(Identifier kept)"), std::string::npos);
}

}  // namespace
