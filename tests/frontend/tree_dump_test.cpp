// The tree dump of deep trees: indentation that stops growing, and no
// recursion that follows the depth of the input.

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <sstream>
#include <string>
#include <vector>

#include "frontend/parse.hpp"
#include "frontend/tree_dump.hpp"
#include "tests/support/tree_maker.hpp"

namespace {

namespace ast = ca::ast;

std::size_t indentation(std::string const& line) { return line.find_first_not_of(' '); }

TEST(TreeDump, IndentationStopsAtSixtyFourLevelsAndDeeperLinesShowTheirDepth) {
  // x = - - ... - 1, a hundred minus signs deep.
  std::string source = "x =";
  for (int i = 0; i < 100; ++i) source += " -";
  source += " 1;\n";
  frontend::ParseResult const parsed = frontend::parse(source, "deep.m");
  ASSERT_FALSE(parsed.hasErrors());
  std::string const dump = frontend::dumpTree(*parsed.tree->getProgram(), frontend::DumpLayout::Indented);

  std::vector<std::string> lines;
  std::istringstream in(dump);
  for (std::string line; std::getline(in, line);) lines.push_back(line);
  // Program, Assignment, its target, then a line for each minus: line i
  // holds the minus at depth i - 1. The last holds the number on its line.
  ASSERT_EQ(lines.size(), 103u);
  std::size_t deepest = 0;
  for (std::string const& line : lines) deepest = std::max(deepest, indentation(line));
  EXPECT_EQ(deepest, 128u);
  std::string const margin(128, ' ');
  EXPECT_EQ(lines[64], std::string(126, ' ') + "(UnaryOperation -");
  EXPECT_EQ(lines[65], margin + "(UnaryOperation -");
  EXPECT_EQ(lines[66], margin + "[65] (UnaryOperation -");
  EXPECT_EQ(lines[102], margin + "[101] (UnaryOperation - (NumberLiteral 1)" + std::string(102, ')'));
  // The one-line layout is unchanged by depth.
  std::string const oneLine = frontend::dumpTree(*parsed.tree->getProgram());
  EXPECT_EQ(oneLine.find('\n'), std::string::npos);
  EXPECT_EQ(std::count(oneLine.begin(), oneLine.end(), '('), 104);
}

TEST(TreeDump, ATreeFarDeeperThanTheCallStackAllowsIsDumped) {
  // Deeper than the parser builds, and than a recursive dump survives.
  constexpr int depth = 300'000;
  plexus::testing::TreeMaker m;
  ast::Expression const* expression = m.num(1);
  for (int i = 0; i < depth; ++i) expression = m.b.make<ast::UnaryOperation>(lf::astapi::UnaryOperator::Minus, expression);
  auto const tree = m.program({m.stmt(expression)});

  std::string const oneLine = frontend::dumpTree(*tree->getProgram());
  EXPECT_EQ(static_cast<std::size_t>(std::count(oneLine.begin(), oneLine.end(), '(')), depth + 3u);
  EXPECT_TRUE(oneLine.ends_with("(NumberLiteral 1)" + std::string(depth + 2, ')')));

  std::string const indented = frontend::dumpTree(*tree->getProgram(), frontend::DumpLayout::Indented);
  EXPECT_EQ(static_cast<std::size_t>(std::count(indented.begin(), indented.end(), '\n')), depth + 1u);
  EXPECT_NE(indented.find("[300001] (UnaryOperation - (NumberLiteral 1))"), std::string::npos);
}

}  // namespace
