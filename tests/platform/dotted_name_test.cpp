// The dotted names that chains of dots spell, from source text, and what
// chains that are not plain names give.

#include <gtest/gtest.h>

#include <optional>
#include <string>

#include "frontend/parse.hpp"
#include "platform/ast/dotted_name.hpp"
#include "platform/i18n/i18n.hpp"
#include "tests/support/parser_limit.hpp"
#include "tests/support/tree_maker.hpp"

namespace {

namespace ast = ca::ast;
using Name = std::optional<lf::astapi::DottedName<ca::astapi::CA>>;

// The expression of `source`, a single expression statement, and its name.
struct Parsed {
  frontend::ParseResult result;
  ast::Expression const* expression = nullptr;

  explicit Parsed(std::string const& source) : result(frontend::parse(source + ";\n", "t.m")) {
    EXPECT_FALSE(result.hasErrors()) << source;
    auto const& statement = lf::astapi::cast<ast::ExpressionStatement>(*result.tree->getProgram()->getBody().front());
    expression = statement.getExpression();
  }
  Name name() const { return lf::astapi::getDottedName(*expression); }
};

std::string text(Name const& name) { return name ? fl::i18n::to_utf8(name->text) : "none"; }

TEST(DottedName, PlainNamesAndChainsOfFields) {
  Parsed const chain("a.b.c");
  Name const abc = chain.name();
  ASSERT_TRUE(abc.has_value());
  EXPECT_EQ(text(abc), "a.b.c");
  EXPECT_EQ(abc->fieldCount, 2u);
  EXPECT_EQ(fl::i18n::to_utf8(abc->head->getStringId().getString()), "a");
  EXPECT_EQ(abc->last, &lf::astapi::cast<ast::DotOperation>(*chain.expression).getField());

  Parsed const plain("a");
  Name const a = plain.name();
  ASSERT_TRUE(a.has_value());
  EXPECT_EQ(text(a), "a");
  EXPECT_EQ(a->head, plain.expression);
  EXPECT_EQ(a->last, nullptr);
  EXPECT_EQ(a->fieldCount, 0u);

  // The callee of a call of a package function.
  Parsed const call("pkg.sub.f(x, 2)");
  EXPECT_EQ(text(lf::astapi::getDottedName(*lf::astapi::cast<ast::ParenOperation>(*call.expression).getFunction())),
            "pkg.sub.f");
  // The call itself is no name.
  EXPECT_EQ(text(call.name()), "none");
}

TEST(DottedName, ChainsWithAnythingButNamesSpellNone) {
  for (std::string const source :
       {"a(1).b", "a{1}.b", "a.(n).b", "a.(n)", "(a).b", "f().b", "a.b(1).c", "1", "'a'.b"}) {
    EXPECT_EQ(text(Parsed(source).name()), "none") << source;
  }
}

TEST(DottedName, ChainsAtTheParsersLimitAndFarBeyond) {
  auto const longest = plexus::testing::longestChainTheParserTakes("a", ".b", ";\n");
  ASSERT_GT(longest.links, 200);
  std::string expected = "a";
  for (int i = 0; i < longest.links; ++i) expected += ".b";
  Name const parsed = Parsed(expected).name();
  EXPECT_EQ(text(parsed), expected);
  EXPECT_EQ(parsed->fieldCount, static_cast<std::size_t>(longest.links));

  plexus::testing::TreeMaker t;
  ast::Expression const* deep = t.id("a");
  for (int i = 0; i < 100'000; ++i) deep = t.b.make<ast::DotOperation>(deep, t.field("b"));
  Name const far = lf::astapi::getDottedName(*deep);
  ASSERT_TRUE(far.has_value());
  EXPECT_EQ(far->fieldCount, 100'000u);
  EXPECT_EQ(far->text.size(), 1u + 2u * 100'000u);
}

}  // namespace
