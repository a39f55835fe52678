// What the parser records beyond the tree's shape: literal values and the
// type of the file.

#include <gtest/gtest.h>

#include <cstdint>
#include <vector>

#include "frontend/parse.hpp"

namespace {

namespace ast = ca::ast;
using lf::astapi::ImaginaryDouble;
using lf::astapi::NumericValue;

std::vector<NumericValue> numbersOf(std::string const& row) {
  auto const result = frontend::parse("x = [" + row + "];\n", "t.m");
  EXPECT_FALSE(result.hasErrors());
  auto const& assignment = static_cast<ast::Assignment const&>(*result.tree->getProgram()->getBody()[0]);
  auto const& matrix = static_cast<ast::Matrix const&>(*assignment.getRight());
  std::vector<NumericValue> values;
  for (ast::Expression const* element : matrix.getRows()[0]->getElements()) {
    values.push_back(static_cast<ast::NumberLiteral const&>(*element).getValue());
  }
  return values;
}

TEST(Literals, NumbersTakeTheAlternativeOfTheirForm) {
  std::vector<NumericValue> const values =
      numbersOf("12 1.5 .5 1e-3 1.5E+3 1. 3i 2.5j 1e400 0x1F 0b101 0x1Fu8 0xFFs8 0b101s16 0x100 0x10000 0x100000000 "
                "0xFFFFFFFFFFFFFFFF 0x7u64 2d3");
  std::vector<NumericValue> const expected = {
      12.0, 1.5, 0.5, 1e-3, 1.5e3, 1.0, ImaginaryDouble{3}, ImaginaryDouble{2.5},
      std::numeric_limits<double>::infinity(), std::uint8_t{0x1F}, std::uint8_t{5}, std::uint8_t{0x1F},
      std::int8_t{-1}, std::int16_t{5}, std::uint16_t{0x100}, std::uint32_t{0x10000}, std::uint64_t{0x100000000},
      std::uint64_t{0xFFFFFFFFFFFFFFFF}, std::uint64_t{7}, 2000.0};
  ASSERT_EQ(values.size(), expected.size());
  for (std::size_t i = 0; i < values.size(); ++i) EXPECT_EQ(values[i], expected[i]) << "number " << i;
}

TEST(Literals, TextValuesLoseTheirQuotesAndDoubledQuotes) {
  auto const result = frontend::parse("a = 'it''s';\nb = \"say \"\"hi\"\"\";\nc = '';\n", "t.m");
  ASSERT_FALSE(result.hasErrors());
  auto valueOf = [&](std::size_t statement) {
    auto const& assignment = static_cast<ast::Assignment const&>(*result.tree->getProgram()->getBody()[statement]);
    return std::u16string(ca::astapi::toStdView(
        static_cast<lf::astapi::TextLiteral<ca::astapi::CA> const&>(*assignment.getRight()).getValue()));
  };
  EXPECT_EQ(valueOf(0), u"it's");
  EXPECT_EQ(valueOf(1), u"say \"hi\"");
  EXPECT_EQ(valueOf(2), u"");
}

TEST(FileTypes, TheFirstTokenThatIsNoCommentDecides) {
  auto typeOf = [](std::string const& source) { return frontend::parse(source, "t.m").tree->getFileType(); };
  EXPECT_EQ(typeOf("% help\n%{\nblock\n%}\n\nfunction f\nend\n"), ca::FileType::Function);
  EXPECT_EQ(typeOf("\xEF\xBB\xBF% help\nclassdef C\nend\n"), ca::FileType::Class);
  EXPECT_EQ(typeOf("x = 1;\nfunction f\nend\n"), ca::FileType::Script);
  EXPECT_EQ(typeOf(""), ca::FileType::Script);
  auto const result = frontend::parse("function f\nend\n", "dir/f.m");
  EXPECT_EQ(ca::astapi::toStdView(result.tree->getProgram()->getFilePath()), u"dir/f.m");
}

}  // namespace
