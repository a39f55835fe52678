// Invariants that headers state and code relies on: checked builds stop where
// one breaks, saying which; every build refuses a control-flow graph that
// does not start with its entry and exit.

#include <gtest/gtest.h>

#include <memory>
#include <stdexcept>
#include <utility>
#include <vector>

#include "platform/controlflow/control_flow.hpp"
#include "tests/support/tree_maker.hpp"

namespace {

namespace ast = ca::ast;
using ca::controlflow::ControlFlowGraph;
using ca::controlflow::ControlFlowNode;
using Nodes = std::vector<std::unique_ptr<ControlFlowNode>>;

std::unique_ptr<ControlFlowNode> node(ControlFlowNode::Kind kind, ast::Node const* syntax) {
  auto made = std::make_unique<ControlFlowNode>();
  made->kind = kind;
  made->syntax = syntax;
  return made;
}

// entry -> statement -> exit, for `owner` whose one statement is `statement`.
Nodes straightLine(ast::Node const* owner, ast::Node const* statement) {
  Nodes nodes;
  nodes.push_back(node(ControlFlowNode::Kind::Entry, owner));
  nodes.push_back(node(ControlFlowNode::Kind::Exit, owner));
  nodes.push_back(node(ControlFlowNode::Kind::Statement, statement));
  nodes[0]->successors.push_back(nodes[2].get());
  nodes[2]->successors.push_back(nodes[1].get());
  return nodes;
}

struct Body {
  plexus::testing::TreeMaker t;
  ast::ExpressionStatement const* statement = t.stmt(t.num(1));
  std::shared_ptr<ca::astapi::SyntaxTree const> tree = t.program({statement});
  ast::Node const* program = tree->getProgram();
};

TEST(ControlFlowGraphInvariants, AGraphStartsWithItsEntryAndExit) {
  Body body;
  ControlFlowGraph const graph(body.program, straightLine(body.program, body.statement));
  EXPECT_EQ(graph.getEntry().kind, ControlFlowNode::Kind::Entry);
  EXPECT_EQ(&graph.getUnconditionalEdge(body.statement), body.program);  // the exit stands for the owner

  Nodes swapped = straightLine(body.program, body.statement);
  std::swap(swapped[0], swapped[1]);
  EXPECT_THROW(ControlFlowGraph(body.program, std::move(swapped)), std::invalid_argument);
  Nodes tooFew;
  tooFew.push_back(node(ControlFlowNode::Kind::Entry, body.program));
  EXPECT_THROW(ControlFlowGraph(body.program, std::move(tooFew)), std::invalid_argument);
}

TEST(ControlFlowGraphInvariants, CheckedBuildsStopAGraphThatBreaksThem) {
#ifndef PLEXUS_CHECKED
  GTEST_SKIP() << "only checked builds (debug, sanitizers) check these invariants";
#else
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  Body body;
  EXPECT_DEATH(
      {
        Nodes nodes = straightLine(body.program, body.statement);
        nodes[0]->syntax = body.statement;
        ControlFlowGraph const graph(body.program, std::move(nodes));
      },
      "plexus: invariant broken at .*control_flow.cpp:[0-9]+: the entry of a control-flow graph stands for the "
      "graph's owner");
  EXPECT_DEATH(
      {
        Nodes nodes = straightLine(body.program, body.statement);
        nodes[1]->syntax = nullptr;
        ControlFlowGraph const graph(body.program, std::move(nodes));
      },
      "the exit of a control-flow graph stands for the graph's owner");
  EXPECT_DEATH(
      {
        Nodes nodes = straightLine(body.program, body.statement);
        nodes[2]->kind = ControlFlowNode::Kind::Entry;
        ControlFlowGraph const graph(body.program, std::move(nodes));
      },
      "a control-flow graph has one entry and one exit, first, and statements after them");
  EXPECT_DEATH(
      {
        auto const stranger = node(ControlFlowNode::Kind::Statement, body.statement);
        Nodes nodes = straightLine(body.program, body.statement);
        nodes[2]->successors.push_back(stranger.get());
        ControlFlowGraph const graph(body.program, std::move(nodes));
      },
      "the successors of a control-flow node lie in its own graph");
#endif
}

TEST(InputArgumentInvariants, CheckedBuildsStopAnInputOfOneChildGivenNone) {
  plexus::testing::TreeMaker t;
  // Malformed input as it came: the constructor of two children allows it.
  auto const* neither = t.b.make<ast::InputArgument>(static_cast<ast::Identifier const*>(nullptr), nullptr);
  EXPECT_EQ(neither->getIdentifier(), nullptr);
  EXPECT_EQ(neither->getIgnored(), nullptr);
#ifndef PLEXUS_CHECKED
  GTEST_SKIP() << "only checked builds (debug, sanitizers) check this invariant";
#else
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  EXPECT_DEATH(t.b.make<ast::InputArgument>(static_cast<ast::Identifier const*>(nullptr)),
               "plexus: invariant broken at .*declarations.hpp:[0-9]+: an InputArgument has exactly one of an "
               "Identifier and an Ignored; this one was given a null Identifier");
  EXPECT_DEATH(t.b.make<ast::InputArgument>(static_cast<ast::Ignored const*>(nullptr)),
               "this one was given a null Ignored");
  // One child of either sort is what the constructors promise.
  EXPECT_NE(t.b.make<ast::InputArgument>(t.id("x"))->getIdentifier(), nullptr);
  EXPECT_NE(t.b.make<ast::InputArgument>(t.b.make<ast::Ignored>())->getIgnored(), nullptr);
#endif
}

}  // namespace
