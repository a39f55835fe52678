// The tree dump of deep trees: indentation that stops growing, and no
// recursion that follows the depth of the input.

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <sstream>
#include <string>
#include <vector>

#include "frontend/limits.hpp"
#include "frontend/parse.hpp"
#include "frontend/tree_dump.hpp"
#include "tests/support/tree_maker.hpp"

namespace {

namespace ast = ca::ast;

std::size_t indentation(std::string const& line) { return line.find_first_not_of(' '); }

TEST(TreeDump, IndentationStopsAtSixtyFourLevelsAndDeeperLinesShowTheirDepth) {
  constexpr std::size_t deepest = frontend::maxDumpIndentDepth;
  // x = - - ... - 1, a hundred minus signs deep: past the deepest indentation.
  constexpr std::size_t minuses = 100;
  static_assert(minuses > deepest + 2);
  std::string source = "x =";
  for (std::size_t i = 0; i < minuses; ++i) source += " -";
  source += " 1;\n";
  frontend::ParseResult const parsed = frontend::parse(source, "deep.m");
  ASSERT_FALSE(parsed.hasErrors());
  std::string const dump = frontend::dumpTree(*parsed.tree->getProgram(), frontend::DumpLayout::Indented);

  std::vector<std::string> lines;
  std::istringstream in(dump);
  for (std::string line; std::getline(in, line);) lines.push_back(line);
  // Program, Assignment, its target, then a line for each minus: line i
  // holds the minus at depth i - 1. The last holds the number on its line.
  ASSERT_EQ(lines.size(), minuses + 3);
  std::size_t widest = 0;
  for (std::string const& line : lines) widest = std::max(widest, indentation(line));
  EXPECT_EQ(widest, 2 * deepest);
  std::string const margin(2 * deepest, ' ');
  EXPECT_EQ(lines[deepest], std::string(2 * deepest - 2, ' ') + "(UnaryOperation -");
  EXPECT_EQ(lines[deepest + 1], margin + "(UnaryOperation -");
  EXPECT_EQ(lines[deepest + 2], margin + "[" + std::to_string(deepest + 1) + "] (UnaryOperation -");
  EXPECT_EQ(lines[minuses + 2], margin + "[" + std::to_string(minuses + 1) + "] (UnaryOperation - (NumberLiteral 1)" +
                                    std::string(minuses + 2, ')'));
  // The one-line layout is unchanged by depth.
  std::string const oneLine = frontend::dumpTree(*parsed.tree->getProgram());
  EXPECT_EQ(oneLine.find('\n'), std::string::npos);
  EXPECT_EQ(static_cast<std::size_t>(std::count(oneLine.begin(), oneLine.end(), '(')), minuses + 4);
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
