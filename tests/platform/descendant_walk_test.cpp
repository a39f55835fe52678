// The shared descendant walk: its order, leaving subtrees out, state handed
// down, and trees far deeper than a recursive walk would survive.

#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <vector>

#include "frontend/parse.hpp"
#include "platform/ast/descendant_walk.hpp"
#include "tests/support/parser_limit.hpp"
#include "tests/support/tree_maker.hpp"

namespace {

namespace ast = ca::ast;
using lf::astapi::NodeKind;
using lf::astapi::WalkStep;
using Names = std::vector<std::string>;

std::string kindOf(ast::Node const& node) { return std::string(lf::astapi::nodeKindName(node.getKind())); }

frontend::ParseResult parsed(std::string const& source) {
  frontend::ParseResult result = frontend::parse(source, "t.m");
  EXPECT_FALSE(result.hasErrors()) << source;
  return result;
}

TEST(DescendantWalk, PreorderInWalkOrderAndSkippingSubtrees) {
  auto const result = parsed("x = f(a, b.c) + 1;\ndisp(x);\n");
  ast::Program const& program = *result.tree->getProgram();

  Names all;
  lf::astapi::walkDescendants(program, [&](ast::Node const& node) { all.push_back(kindOf(node)); });
  EXPECT_EQ(all, (Names{"Program", "Assignment", "Identifier", "BinaryOperation", "ParenOperation", "Identifier",
                        "Identifier", "DotOperation", "Identifier", "Field", "NumberLiteral", "ExpressionStatement",
                        "ParenOperation", "Identifier", "Identifier"}));

  // Below a skipped node nothing is visited; its siblings and what follows are.
  Names skipping;
  lf::astapi::walkDescendants(program, [&](ast::Node const& node) {
    skipping.push_back(kindOf(node));
    return node.getKind() == NodeKind::ParenOperation ? WalkStep::SkipChildren : WalkStep::Descend;
  });
  EXPECT_EQ(skipping, (Names{"Program", "Assignment", "Identifier", "BinaryOperation", "ParenOperation",
                             "NumberLiteral", "ExpressionStatement", "ParenOperation"}));

  // Over the statements of a body, one after the other, from each statement.
  Names fromBody;
  lf::astapi::walkDescendants(program.getBody(), [&](ast::Node const& node) {
    fromBody.push_back(kindOf(node));
    return node.getKind() == NodeKind::Assignment ? WalkStep::SkipChildren : WalkStep::Descend;
  });
  EXPECT_EQ(fromBody, (Names{"Assignment", "ExpressionStatement", "ParenOperation", "Identifier", "Identifier"}));
}

TEST(DescendantWalk, StateHandedFromEachNodeToItsChildren) {
  auto const result = parsed(
      "function r = f(a)\n"
      "  if a\n"
      "    r = g(a(1), @() a);\n"
      "  end\n"
      "end\n");
  // The depth handed down equals the number of ancestors of each node.
  int visited = 0;
  lf::astapi::DescendantWalk<ca::astapi::CA, int> walk;
  walk.runWithState(*result.tree->getProgram(), 0, [&](ast::Node const& node, int depth) -> std::optional<int> {
    int ancestors = 0;
    for (ast::Node const* at = node.getParent(); at != nullptr; at = at->getParent()) ++ancestors;
    EXPECT_EQ(depth, ancestors) << kindOf(node);
    ++visited;
    return depth + 1;
  });
  EXPECT_EQ(visited, 17);

  // Nothing for a node skips its children, and the same walk serves again.
  Names upToIf;
  walk.runWithState(*result.tree->getProgram(), 0, [&](ast::Node const& node, int depth) -> std::optional<int> {
    upToIf.push_back(kindOf(node));
    if (node.getKind() == NodeKind::IfStatement) return std::nullopt;
    return depth + 1;
  });
  EXPECT_EQ(upToIf,
            (Names{"Program", "Function", "Identifier", "InputArgument", "Identifier", "Identifier", "IfStatement"}));
}

TEST(DescendantWalk, AbsentChildrenAreSkipped) {
  plexus::testing::TreeMaker t;
  // An anonymous function without a body, as a tree producer may leave one.
  auto* lambda = t.b.make<ast::AnonymousFunction>(t.b.list<ast::InputArgument>({t.input("k")}), nullptr);
  Names seen;
  lf::astapi::walkDescendants(*lambda, [&](ast::Node const& node) { seen.push_back(kindOf(node)); });
  EXPECT_EQ(seen, (Names{"AnonymousFunction", "InputArgument", "Identifier"}));
}

TEST(DescendantWalk, ChainsAtTheParsersLimitAndTreesFarDeeper) {
  // A chain of fields as long as the parser takes.
  auto const longest = plexus::testing::longestChainTheParserTakes("s", ".f", ";\n");
  ASSERT_GT(longest.links, 200);
  auto const result = parsed(longest.source);
  int fields = 0;
  lf::astapi::walkDescendants(*result.tree->getProgram(), [&](ast::Node const& node) {
    if (node.getKind() == NodeKind::Field) ++fields;
  });
  EXPECT_EQ(fields, longest.links);

  // Nestings a hundred thousand deep: a walk that recursed would run out of
  // stack long before their end.
  constexpr int kDepth = 100'000;
  plexus::testing::TreeMaker t;
  ast::Expression const* sum = t.id("a");
  for (int i = 0; i < kDepth; ++i)
    sum = t.b.make<ast::BinaryOperation>(lf::astapi::BinaryOperator::Plus, sum, t.num(1));
  ast::Expression const* lambda = sum;
  for (int i = 0; i < kDepth; ++i) {
    lambda = t.b.make<ast::AnonymousFunction>(lf::astapi::NodeList<ast::InputArgument>{}, lambda);
  }
  auto tree = t.program({t.stmt(lambda)});
  int nodes = 0;
  ast::Node const* last = nullptr;
  lf::astapi::walkDescendants(*tree->getProgram(), [&](ast::Node const& node) {
    ++nodes;
    last = &node;
  });
  EXPECT_EQ(nodes, 2 + kDepth + 2 * kDepth + 1);  // program, statement, lambdas, sums and ones, a
  // Preorder, left first: the last node visited is the last 1 added.
  EXPECT_EQ(last, lf::astapi::cast<ast::BinaryOperation>(*sum).getRight());
}

}  // namespace
