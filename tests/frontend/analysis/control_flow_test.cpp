// The control-flow graphs that the front end builds, end to end from source
// text: each graph is described as one line per node, "label -> successor |
// successor", where a statement's label is its line and the first line of its
// source text, and the entry and exit are "entry" and "exit".

#include "frontend/analysis/control_flow.hpp"

#include <gtest/gtest.h>

#include <cstddef>
#include <memory>
#include <set>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "frontend/parse.hpp"

namespace {

namespace ast = ca::ast;
using ca::controlflow::ControlFlowAnalysis;
using ca::controlflow::ControlFlowGraph;
using ca::controlflow::ControlFlowNode;
using lf::astapi::NodeKind;
using Lines = std::vector<std::string>;

/// A parsed snippet and its graphs; the tree lives as long as the graphs.
struct Flow {
  std::string source;
  frontend::ParseResult parsed;
  std::shared_ptr<ControlFlowAnalysis> analysis;

  ast::Program const& program() const { return *parsed.tree->getProgram(); }
};

std::unique_ptr<Flow> build(std::string source) {
  auto flow = std::make_unique<Flow>();
  flow->source = std::move(source);
  flow->parsed = frontend::parse(flow->source, "t.m");
  for (auto const& diagnostic : flow->parsed.diagnostics) ADD_FAILURE() << frontend::formatDiagnostic(diagnostic);
  if (flow->parsed.tree == nullptr) {
    ADD_FAILURE() << "no tree";
    return flow;
  }
  flow->analysis = frontend::buildControlFlow(flow->program());
  return flow;
}

/// "line:text" of a statement: the first line of its source text, without
/// the `;` or `,` that ends it.
std::string label(std::string_view source, ControlFlowNode const& node) {
  if (node.kind == ControlFlowNode::Kind::Entry) return "entry";
  if (node.kind == ControlFlowNode::Kind::Exit) return "exit";
  auto const& range = node.syntax->getSourceRange();
  std::string_view text = source.substr(range.first.offset, range.last.offset + 1 - range.first.offset);
  text = text.substr(0, text.find_first_of("\r\n"));
  while (!text.empty() && (text.back() == ' ' || text.back() == ';' || text.back() == ',')) text.remove_suffix(1);
  return std::to_string(range.first.line) + ":" + std::string(text);
}

/// Every node but the exit, in node order, with its successors in order.
Lines describe(Flow const& flow, ControlFlowGraph const& graph) {
  Lines lines;
  for (auto const& node : graph.getNodes()) {
    if (node->kind == ControlFlowNode::Kind::Exit) continue;
    std::string line = label(flow.source, *node) + " ->";
    for (std::size_t i = 0; i < node->successors.size(); ++i) {
      line += (i == 0 ? " " : " | ") + label(flow.source, *node->successors[i]);
    }
    lines.push_back(line);
  }
  return lines;
}

/// Calls `fn` with every node below `node` (not `node` itself), depth first.
template <class Fn>
void forEachDescendant(ast::Node const& node, Fn const& fn) {
  lf::astapi::forEachChild(node, [&](ast::Node const* child) {
    if (fn(*child)) forEachDescendant(*child, fn);
  });
}

bool isStatement(ast::Node const& node) { return (node.getKindFlags() & lf::astapi::kindflags::statement) != 0; }
bool isBodyOwner(ast::Node const& node) {
  return node.getKind() == NodeKind::Function || node.getKind() == NodeKind::MethodDefinition ||
         node.getKind() == NodeKind::Classdef;
}

/// The statements of a body, nested blocks included and nested functions
/// excluded, found by a walk of the tree independent of the builder.
std::set<ast::Node const*> statementsOf(ast::Node const& owner) {
  std::set<ast::Node const*> statements;
  forEachDescendant(owner, [&](ast::Node const& node) {
    if (isBodyOwner(node)) return false;
    if (isStatement(node)) statements.insert(&node);
    return true;
  });
  return statements;
}

/// What holds for every graph: entry, exit, then exactly one node for each
/// statement of the body; successors inside the graph; none for the exit.
void expectWellFormed(ControlFlowGraph const& graph) {
  auto const& nodes = graph.getNodes();
  ASSERT_GE(nodes.size(), 2u);
  EXPECT_EQ(nodes[0]->kind, ControlFlowNode::Kind::Entry);
  EXPECT_EQ(nodes[1]->kind, ControlFlowNode::Kind::Exit);
  EXPECT_EQ(nodes[0]->syntax, graph.getOwner());
  EXPECT_EQ(nodes[1]->syntax, graph.getOwner());
  EXPECT_TRUE(nodes[1]->successors.empty());
  EXPECT_EQ(nodes[0]->successors.size(), 1u);
  std::set<ControlFlowNode const*> inGraph;
  std::set<ast::Node const*> syntax;
  for (auto const& node : nodes) inGraph.insert(node.get());
  for (std::size_t i = 2; i < nodes.size(); ++i) {
    EXPECT_EQ(nodes[i]->kind, ControlFlowNode::Kind::Statement);
    EXPECT_FALSE(nodes[i]->successors.empty());
    syntax.insert(nodes[i]->syntax);
  }
  for (auto const& node : nodes) {
    for (auto const* successor : node->successors) EXPECT_TRUE(inGraph.contains(successor));
  }
  EXPECT_EQ(syntax.size(), nodes.size() - 2) << "a statement has two nodes";
  EXPECT_EQ(syntax, statementsOf(*graph.getOwner()));
}

void expectAllWellFormed(Flow const& flow) {
  ASSERT_NE(flow.analysis, nullptr);
  for (auto const& graph : flow.analysis->getGraphs()) {
    SCOPED_TRACE(label(flow.source, graph->getEntry()));
    expectWellFormed(*graph);
  }
}

/// The name of a graph's owner, or "<program>".
std::u16string ownerName(ast::Node const& owner) {
  if (owner.getKind() == NodeKind::Program) return u"<program>";
  return static_cast<ast::Function const&>(owner).getName()->getStringId().getString();
}

std::vector<std::u16string> ownerNames(Flow const& flow) {
  std::vector<std::u16string> names;
  for (auto const& graph : flow.analysis->getGraphs()) names.push_back(ownerName(*graph->getOwner()));
  return names;
}

ControlFlowGraph const& graphOf(Flow const& flow, std::u16string_view name) {
  for (auto const& graph : flow.analysis->getGraphs()) {
    if (ownerName(*graph->getOwner()) == name) return *graph;
  }
  throw std::logic_error("no graph of that name");
}

ControlFlowGraph const& programGraph(Flow const& flow) { return graphOf(flow, u"<program>"); }

/// The statement labelled `wanted` in `graph`.
ast::Node const* statement(Flow const& flow, ControlFlowGraph const& graph, std::string_view wanted) {
  for (auto const& node : graph.getNodes()) {
    if (node->kind == ControlFlowNode::Kind::Statement && label(flow.source, *node) == wanted) return node->syntax;
  }
  throw std::logic_error("no statement labelled " + std::string(wanted));
}

/// How many nodes of `graph` have `target` as a successor.
std::size_t predecessorCount(ControlFlowGraph const& graph, ast::Node const* target) {
  std::size_t count = 0;
  for (auto const& node : graph.getNodes()) {
    for (auto const* successor : node->successors) count += successor->syntax == target ? 1 : 0;
  }
  return count;
}

ast::Node const* findFirst(ast::Node const& root, NodeKind kind) {
  ast::Node const* found = nullptr;
  forEachDescendant(root, [&](ast::Node const& node) {
    if (found == nullptr && node.getKind() == kind) found = &node;
    return found == nullptr;
  });
  return found;
}

TEST(ControlFlowSequences, StraightLineEmptyAndSimpleStatements) {
  auto flow = build("x = 1;\n[a, b] = f(x);\ndisp(a)\nb\nhold on\nglobal g\nimport pkg.*\n!ls\n;\n");
  expectAllWellFormed(*flow);
  ASSERT_EQ(flow->analysis->getGraphs().size(), 1u);
  EXPECT_EQ(flow->analysis->getGraphs()[0]->getOwner(), &flow->program());
  EXPECT_EQ(describe(*flow, programGraph(*flow)), (Lines{
                                                      "entry -> 1:x = 1",
                                                      "1:x = 1 -> 2:[a, b] = f(x)",
                                                      "2:[a, b] = f(x) -> 3:disp(a)",
                                                      "3:disp(a) -> 4:b",
                                                      "4:b -> 5:hold on",
                                                      "5:hold on -> 6:global g",
                                                      "6:global g -> 7:import pkg.*",
                                                      "7:import pkg.* -> 8:!ls",
                                                      "8:!ls -> 9:",
                                                      "9: -> exit",
                                                  }));

  auto oneLine = build("x = 1; y = 2, z = 3\n");
  expectAllWellFormed(*oneLine);
  EXPECT_EQ(describe(*oneLine, programGraph(*oneLine)),
            (Lines{"entry -> 1:x = 1", "1:x = 1 -> 1:y = 2", "1:y = 2 -> 1:z = 3", "1:z = 3 -> exit"}));

  for (char const* empty : {"", "% only a comment\n", "\n\n"}) {
    auto none = build(empty);
    expectAllWellFormed(*none);
    EXPECT_EQ(describe(*none, programGraph(*none)), (Lines{"entry -> exit"})) << empty;
  }

  auto emptyFunction = build("function f\nend\n");
  expectAllWellFormed(*emptyFunction);
  EXPECT_EQ(describe(*emptyFunction, graphOf(*emptyFunction, u"f")), (Lines{"entry -> exit"}));
  EXPECT_EQ(describe(*emptyFunction, programGraph(*emptyFunction)), (Lines{"entry -> exit"}));
}

TEST(ControlFlowBranches, IfWithElseifAndElse) {
  auto flow = build(
      "if a\n"
      "  x = 1;\n"
      "elseif b\n"
      "  x = 2;\n"
      "  x = 22;\n"
      "elseif c\n"
      "else\n"
      "  x = 3;\n"
      "end\n"
      "y = x;\n");
  expectAllWellFormed(*flow);
  EXPECT_EQ(describe(*flow, programGraph(*flow)), (Lines{
                                                      "entry -> 1:if a",
                                                      "1:if a -> 2:x = 1 | 4:x = 2 | 10:y = x | 8:x = 3",
                                                      "2:x = 1 -> 10:y = x",
                                                      "4:x = 2 -> 5:x = 22",
                                                      "5:x = 22 -> 10:y = x",
                                                      "8:x = 3 -> 10:y = x",
                                                      "10:y = x -> exit",
                                                  }));
}

TEST(ControlFlowBranches, IfWithoutElseEmptyBodiesAndNesting) {
  auto flow = build(
      "function f(a, b)\n"
      "if a\n"
      "  if b\n"
      "    x = 1;\n"
      "  end\n"
      "end\n"
      "if b\n"
      "end\n"
      "if a\n"
      "else\n"
      "  y = 2;\n"
      "end\n"
      "end\n");
  expectAllWellFormed(*flow);
  EXPECT_EQ(describe(*flow, graphOf(*flow, u"f")), (Lines{
                                                       "entry -> 2:if a",
                                                       "2:if a -> 3:if b | 7:if b",
                                                       "3:if b -> 4:x = 1 | 7:if b",
                                                       "4:x = 1 -> 7:if b",
                                                       "7:if b -> 9:if a | 9:if a",
                                                       "9:if a -> exit | 11:y = 2",
                                                       "11:y = 2 -> exit",
                                                   }));
}

TEST(ControlFlowBranches, SwitchWithAndWithoutOtherwise) {
  auto flow = build(
      "switch k\n"
      "  case 1\n"
      "    x = 1;\n"
      "  case {2, 3}\n"
      "  case 4\n"
      "    x = 4;\n"
      "    x = 44;\n"
      "  otherwise\n"
      "    x = 0;\n"
      "end\n"
      "switch x\n"
      "  case 1\n"
      "    y = 1;\n"
      "end\n"
      "switch y\n"
      "  otherwise\n"
      "end\n");
  expectAllWellFormed(*flow);
  EXPECT_EQ(describe(*flow, programGraph(*flow)), (Lines{
                                                      "entry -> 1:switch k",
                                                      "1:switch k -> 3:x = 1 | 11:switch x | 6:x = 4 | 9:x = 0",
                                                      "3:x = 1 -> 11:switch x",
                                                      "6:x = 4 -> 7:x = 44",
                                                      "7:x = 44 -> 11:switch x",
                                                      "9:x = 0 -> 11:switch x",
                                                      "11:switch x -> 13:y = 1 | 15:switch y",
                                                      "13:y = 1 -> 15:switch y",
                                                      "15:switch y -> exit",
                                                  }));
}

TEST(ControlFlowLoops, WhileForAndParfor) {
  auto flow = build(
      "while c\n"
      "  c = f(c);\n"
      "  d = c;\n"
      "end\n"
      "for i = 1:3\n"
      "  s = i;\n"
      "end\n"
      "parfor (j = 1:4, 2)\n"
      "  y(j) = j;\n"
      "end\n"
      "parfor k = 1:2\n"
      "end\n"
      "while true\n"
      "end\n");
  expectAllWellFormed(*flow);
  EXPECT_EQ(describe(*flow, programGraph(*flow)), (Lines{
                                                      "entry -> 1:while c",
                                                      "1:while c -> 2:c = f(c) | 5:for i = 1:3",
                                                      "2:c = f(c) -> 3:d = c",
                                                      "3:d = c -> 1:while c",
                                                      "5:for i = 1:3 -> 6:s = i | 8:parfor (j = 1:4, 2)",
                                                      "6:s = i -> 5:for i = 1:3",
                                                      "8:parfor (j = 1:4, 2) -> 9:y(j) = j | 11:parfor k = 1:2",
                                                      "9:y(j) = j -> 8:parfor (j = 1:4, 2)",
                                                      "11:parfor k = 1:2 -> 11:parfor k = 1:2 | 13:while true",
                                                      "13:while true -> 13:while true | exit",
                                                  }));
}

TEST(ControlFlowLoops, BreakAndContinueGoToTheInnermostLoop) {
  auto flow = build(
      "for i = 1:3\n"
      "  while c\n"
      "    if d\n"
      "      break\n"
      "    end\n"
      "    switch e\n"
      "      case 1\n"
      "        continue\n"
      "    end\n"
      "    try\n"
      "      break;\n"
      "    catch\n"
      "      continue;\n"
      "    end\n"
      "  end\n"
      "  if f, break, end\n"
      "  w = 2;\n"
      "end\n"
      "done = 1;\n");
  expectAllWellFormed(*flow);
  EXPECT_EQ(describe(*flow, programGraph(*flow)), (Lines{
                                                      "entry -> 1:for i = 1:3",
                                                      "1:for i = 1:3 -> 2:while c | 19:done = 1",
                                                      "2:while c -> 3:if d | 16:if f, break, end",
                                                      "3:if d -> 4:break | 6:switch e",
                                                      "4:break -> 16:if f, break, end",
                                                      "6:switch e -> 8:continue | 10:try",
                                                      "8:continue -> 2:while c",
                                                      "10:try -> 11:break | 13:continue",
                                                      "11:break -> 16:if f, break, end",
                                                      "13:continue -> 2:while c",
                                                      "16:if f, break, end -> 16:break | 17:w = 2",
                                                      "16:break -> 19:done = 1",
                                                      "17:w = 2 -> 1:for i = 1:3",
                                                      "19:done = 1 -> exit",
                                                  }));
}

TEST(ControlFlowLoops, BreakAndContinueOutsideLoopsGoToTheExit) {
  auto flow = build(
      "function f(a)\n"
      "if a\n"
      "  break\n"
      "end\n"
      "continue\n"
      "x = 1;\n"
      "end\n");
  expectAllWellFormed(*flow);
  auto const& graph = graphOf(*flow, u"f");
  EXPECT_EQ(describe(*flow, graph), (Lines{
                                        "entry -> 2:if a",
                                        "2:if a -> 3:break | 5:continue",
                                        "3:break -> exit",
                                        "5:continue -> exit",
                                        "6:x = 1 -> exit",
                                    }));
  EXPECT_EQ(predecessorCount(graph, statement(*flow, graph, "6:x = 1")), 0u);
}

TEST(ControlFlowLoops, DeepNestingFollowsTheInnermostLoop) {
  constexpr int depth = 200;
  std::string source;
  for (int i = 0; i < depth; ++i) source += "while c" + std::to_string(i) + "\n";
  source += "break\n";
  for (int i = 0; i < depth; ++i) source += "end\n";
  auto flow = build(source);
  expectAllWellFormed(*flow);
  auto const& graph = programGraph(*flow);
  ASSERT_EQ(graph.getNodes().size(), static_cast<std::size_t>(depth + 3));
  // The innermost loop's next is the loop around it, whose last statement it is.
  auto const* innermost = statement(*flow, graph, std::to_string(depth) + ":while c" + std::to_string(depth - 1));
  auto const* around = statement(*flow, graph, std::to_string(depth - 1) + ":while c" + std::to_string(depth - 2));
  EXPECT_EQ(&graph.getUnconditionalEdge(statement(*flow, graph, std::to_string(depth + 1) + ":break")), around);
  EXPECT_EQ(graph.getNode(innermost)->successors[1]->syntax, around);
  EXPECT_EQ(graph.getNode(statement(*flow, graph, "1:while c0"))->successors[1], &graph.getExit());
}

TEST(ControlFlowTry, TryCatchWithAndWithoutCatch) {
  auto flow = build(
      "try\n"
      "  x = f();\n"
      "  y = x;\n"
      "catch err\n"
      "  disp(err)\n"
      "end\n"
      "try\n"
      "  z = 1;\n"
      "end\n"
      "try\n"
      "catch\n"
      "  w = 1;\n"
      "end\n"
      "try\n"
      "  v = 1;\n"
      "catch\n"
      "end\n");
  expectAllWellFormed(*flow);
  EXPECT_EQ(describe(*flow, programGraph(*flow)), (Lines{
                                                      "entry -> 1:try",
                                                      "1:try -> 2:x = f() | 5:disp(err)",
                                                      "2:x = f() -> 3:y = x",
                                                      "3:y = x -> 7:try",
                                                      "5:disp(err) -> 7:try",
                                                      "7:try -> 8:z = 1 | 10:try",
                                                      "8:z = 1 -> 10:try",
                                                      "10:try -> 14:try | 12:w = 1",
                                                      "12:w = 1 -> 14:try",
                                                      "14:try -> 15:v = 1 | exit",
                                                      "15:v = 1 -> exit",
                                                  }));
}

TEST(ControlFlowBranches, SpmdRunsItsBodyOnce) {
  auto flow = build(
      "spmd\n"
      "  x = 1;\n"
      "  y = 2;\n"
      "end\n"
      "spmd (4)\n"
      "end\n"
      "z = 3;\n");
  expectAllWellFormed(*flow);
  EXPECT_EQ(describe(*flow, programGraph(*flow)), (Lines{
                                                      "entry -> 1:spmd",
                                                      "1:spmd -> 2:x = 1",
                                                      "2:x = 1 -> 3:y = 2",
                                                      "3:y = 2 -> 5:spmd (4)",
                                                      "5:spmd (4) -> 7:z = 3",
                                                      "7:z = 3 -> exit",
                                                  }));
}

TEST(ControlFlowReturn, ReturnGoesToTheExitAndLeavesUnreachableStatements) {
  auto flow = build(
      "function r = f(a)\n"
      "r = 0;\n"
      "for i = 1:a\n"
      "  if i > 2\n"
      "    return\n"
      "  end\n"
      "end\n"
      "r = 1;\n"
      "return\n"
      "r = 2;\n"
      "while r\n"
      "  r = 3;\n"
      "end\n"
      "end\n");
  expectAllWellFormed(*flow);
  auto const& graph = graphOf(*flow, u"f");
  EXPECT_EQ(describe(*flow, graph), (Lines{
                                        "entry -> 2:r = 0",
                                        "2:r = 0 -> 3:for i = 1:a",
                                        "3:for i = 1:a -> 4:if i > 2 | 8:r = 1",
                                        "4:if i > 2 -> 5:return | 3:for i = 1:a",
                                        "5:return -> exit",
                                        "8:r = 1 -> 9:return",
                                        "9:return -> exit",
                                        "10:r = 2 -> 11:while r",
                                        "11:while r -> 12:r = 3 | exit",
                                        "12:r = 3 -> 11:while r",
                                    }));
  EXPECT_EQ(predecessorCount(graph, statement(*flow, graph, "10:r = 2")), 0u);
  EXPECT_EQ(predecessorCount(graph, statement(*flow, graph, "11:while r")), 2u);
}

TEST(ControlFlowFunctions, NestedAndLocalFunctionsGetTheirOwnGraphs) {
  auto flow = build(
      "function outer\n"
      "x = 1;\n"
      "  function inner\n"
      "    x = x + 1;\n"
      "    function deepest\n"
      "      z = 0;\n"
      "    end\n"
      "    w = 1;\n"
      "  end\n"
      "y = x;\n"
      "  function second\n"
      "  end\n"
      "end\n"
      "function local(a)\n"
      "disp(a)\n"
      "end\n");
  expectAllWellFormed(*flow);
  EXPECT_EQ(ownerNames(*flow),
            (std::vector<std::u16string>{u"<program>", u"outer", u"inner", u"deepest", u"second", u"local"}));
  EXPECT_EQ(describe(*flow, programGraph(*flow)), (Lines{"entry -> exit"}));
  EXPECT_EQ(describe(*flow, graphOf(*flow, u"outer")), (Lines{
                                                           "entry -> 2:x = 1",
                                                           "2:x = 1 -> 10:y = x",
                                                           "10:y = x -> exit",
                                                       }));
  EXPECT_EQ(describe(*flow, graphOf(*flow, u"inner")), (Lines{
                                                           "entry -> 4:x = x + 1",
                                                           "4:x = x + 1 -> 8:w = 1",
                                                           "8:w = 1 -> exit",
                                                       }));
  EXPECT_EQ(describe(*flow, graphOf(*flow, u"deepest")), (Lines{"entry -> 6:z = 0", "6:z = 0 -> exit"}));
  EXPECT_EQ(describe(*flow, graphOf(*flow, u"second")), (Lines{"entry -> exit"}));
  EXPECT_EQ(describe(*flow, graphOf(*flow, u"local")), (Lines{"entry -> 15:disp(a)", "15:disp(a) -> exit"}));
  // The statements of a nested function are not in the graph around it.
  auto const& outer = graphOf(*flow, u"outer");
  EXPECT_EQ(outer.getNode(statement(*flow, graphOf(*flow, u"inner"), "4:x = x + 1")), nullptr);
}

TEST(ControlFlowFunctions, ScriptWithLocalFunctionsAndFunctionsWithoutEnd) {
  auto script = build(
      "x = helper(2);\n"
      "disp(x);\n"
      "\n"
      "function y = helper(a)\n"
      "y = a * 2;\n"
      "end\n"
      "function other\n"
      "end\n");
  expectAllWellFormed(*script);
  EXPECT_EQ(ownerNames(*script), (std::vector<std::u16string>{u"<program>", u"helper", u"other"}));
  EXPECT_EQ(describe(*script, programGraph(*script)), (Lines{
                                                          "entry -> 1:x = helper(2)",
                                                          "1:x = helper(2) -> 2:disp(x)",
                                                          "2:disp(x) -> exit",
                                                      }));
  EXPECT_EQ(describe(*script, graphOf(*script, u"helper")), (Lines{"entry -> 5:y = a * 2", "5:y = a * 2 -> exit"}));

  auto withoutEnd = build(
      "function main\n"
      "helper(1);\n"
      "function helper(x)\n"
      "if x, disp(x); end\n");
  expectAllWellFormed(*withoutEnd);
  EXPECT_EQ(ownerNames(*withoutEnd), (std::vector<std::u16string>{u"<program>", u"main", u"helper"}));
  EXPECT_EQ(describe(*withoutEnd, graphOf(*withoutEnd, u"main")),
            (Lines{"entry -> 2:helper(1)", "2:helper(1) -> exit"}));
  EXPECT_EQ(describe(*withoutEnd, graphOf(*withoutEnd, u"helper")), (Lines{
                                                                        "entry -> 4:if x, disp(x); end",
                                                                        "4:if x, disp(x); end -> 4:disp(x) | exit",
                                                                        "4:disp(x) -> exit",
                                                                    }));
}

TEST(ControlFlowFunctions, MethodsOfAClassGetTheirOwnGraphs) {
  auto flow = build(
      "classdef Counter < handle\n"
      "  properties\n"
      "    Count = 0\n"
      "  end\n"
      "  methods\n"
      "    function obj = Counter(n)\n"
      "      obj.Count = n;\n"
      "    end\n"
      "    function add(obj, k)\n"
      "      if k > 0\n"
      "        obj.Count = obj.Count + k;\n"
      "      end\n"
      "    end\n"
      "    r = declared(obj)\n"
      "  end\n"
      "  methods (Static)\n"
      "    function z = zero()\n"
      "      z = 0;\n"
      "    end\n"
      "  end\n"
      "end\n"
      "function helper\n"
      "end\n");
  expectAllWellFormed(*flow);
  // The declaration without a body gets no graph.
  EXPECT_EQ(ownerNames(*flow), (std::vector<std::u16string>{u"<program>", u"Counter", u"add", u"zero", u"helper"}));
  EXPECT_EQ(graphOf(*flow, u"add").getOwner()->getKind(), NodeKind::MethodDefinition);
  EXPECT_EQ(describe(*flow, programGraph(*flow)), (Lines{"entry -> exit"}));
  EXPECT_EQ(describe(*flow, graphOf(*flow, u"Counter")),
            (Lines{"entry -> 7:obj.Count = n", "7:obj.Count = n -> exit"}));
  EXPECT_EQ(describe(*flow, graphOf(*flow, u"add")), (Lines{
                                                         "entry -> 10:if k > 0",
                                                         "10:if k > 0 -> 11:obj.Count = obj.Count + k | exit",
                                                         "11:obj.Count = obj.Count + k -> exit",
                                                     }));
  EXPECT_EQ(describe(*flow, graphOf(*flow, u"zero")), (Lines{"entry -> 18:z = 0", "18:z = 0 -> exit"}));
}

TEST(ControlFlowQueries, UnconditionalEdges) {
  auto flow = build(
      "function r = f(a)\n"
      "r = a;\n"
      "if a\n"
      "  r = 2;\n"
      "  return\n"
      "end\n"
      "r = 3;\n"
      "  function g\n"
      "    q = 1;\n"
      "  end\n"
      "end\n");
  expectAllWellFormed(*flow);
  auto const& graph = graphOf(*flow, u"f");
  ast::Node const& function = *graph.getOwner();
  ASSERT_EQ(function.getKind(), NodeKind::Function);

  ast::Node const& beforeReturn = graph.getUnconditionalEdge(statement(*flow, graph, "4:r = 2"));
  EXPECT_EQ(beforeReturn.getKind(), NodeKind::ReturnStatement);
  EXPECT_EQ(&beforeReturn, statement(*flow, graph, "5:return"));
  EXPECT_EQ(&graph.getUnconditionalEdge(statement(*flow, graph, "2:r = a")), statement(*flow, graph, "3:if a"));
  // The last statement and the return go to the exit, whose syntax is the function.
  EXPECT_EQ(&graph.getUnconditionalEdge(statement(*flow, graph, "7:r = 3")), &function);
  EXPECT_EQ(&graph.getUnconditionalEdge(&beforeReturn), &function);
  EXPECT_EQ(graph.getExit().syntax, &function);

  EXPECT_THROW(graph.getUnconditionalEdge(statement(*flow, graph, "3:if a")), std::invalid_argument);
  // A statement of the nested function is not in the graph around it.
  ast::Node const* nested = statement(*flow, graphOf(*flow, u"g"), "9:q = 1");
  EXPECT_THROW(graph.getUnconditionalEdge(nested), std::invalid_argument);
  EXPECT_EQ(&graphOf(*flow, u"g").getUnconditionalEdge(nested), graphOf(*flow, u"g").getOwner());
}

TEST(ControlFlowQueries, EnclosingGraphs) {
  auto flow = build(
      "function outer\n"
      "h = @(x) x + offset;\n"
      "  function inner\n"
      "    if true\n"
      "      y = 2;\n"
      "    end\n"
      "  end\n"
      "end\n");
  expectAllWellFormed(*flow);
  auto const& analysis = *flow->analysis;
  auto const& outer = graphOf(*flow, u"outer");
  auto const& inner = graphOf(*flow, u"inner");

  ast::Node const* anonymous = findFirst(flow->program(), NodeKind::AnonymousFunction);
  ASSERT_NE(anonymous, nullptr);
  ast::Node const* body = static_cast<ast::AnonymousFunction const*>(anonymous)->getBody();
  ASSERT_NE(body, nullptr);
  EXPECT_EQ(&analysis.getEnclosingGraph(body), &outer);
  EXPECT_EQ(&analysis.getEnclosingGraph(anonymous), &outer);

  ast::Node const* deep = statement(*flow, inner, "5:y = 2");
  EXPECT_EQ(&analysis.getEnclosingGraph(deep), &inner);
  ast::Node const* number = findFirst(*deep, NodeKind::NumberLiteral);
  ASSERT_NE(number, nullptr);
  EXPECT_EQ(&analysis.getEnclosingGraph(number), &inner);
  EXPECT_EQ(&analysis.getEnclosingGraph(inner.getOwner()), &inner);
  EXPECT_EQ(&analysis.getEnclosingGraph(&flow->program()), &programGraph(*flow));

  auto script = build("for i = 1:2\n  x = i;\nend\n");
  ast::Node const* inLoop = statement(*script, programGraph(*script), "2:x = i");
  EXPECT_EQ(&script->analysis->getEnclosingGraph(inLoop), &programGraph(*script));
}

}  // namespace
