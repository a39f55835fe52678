// How deep a tree the parser gives: nesting by recursion (parentheses,
// blocks) and chains that grow to the left without recursion (a.b.c,
// 1+2+3, x(1){2}') count against one limit, so that whoever walks the tree
// recursively cannot run out of stack, however long the input.

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <functional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "frontend/analyze.hpp"
#include "frontend/parse.hpp"
#include "frontend/tree_dump.hpp"
#include "platform/ast/ast.hpp"
#include "platform/callresolution/call.hpp"
#include "platform/controlflow/control_flow.hpp"
#include "platform/nameresolution/symbol_table.hpp"
#include "platform/usedef/usedef_analysis.hpp"
#include "rulesystem/execution/all_nodes.hpp"
#include "tests/support/recorder.hpp"

namespace {

using frontend::maxNestingDepth;

constexpr std::string_view chainError = "expression chain is nested deeper than 256 levels";
constexpr std::string_view nestingError = "nesting is deeper than 256 levels";

// No tree is deeper than the limit, give or take the program, the statement
// and the few levels that the limit does not count (the row between a matrix
// and its elements, the parts of a function's header).
constexpr std::size_t depthBound = maxNestingDepth + 8;

// The deepest path from the root to a leaf, in nodes, found without
// recursion: the trees under test are meant to be deep.
std::size_t depthOf(ca::ast::Node const& root) {
  std::size_t deepest = 0;
  std::vector<std::pair<ca::ast::Node const*, std::size_t>> pending{{&root, 1}};
  while (!pending.empty()) {
    auto const [node, depth] = pending.back();
    pending.pop_back();
    deepest = std::max(deepest, depth);
    lf::astapi::forEachChild(*node, [&pending, depth](ca::ast::Node const* child) {
      if (child != nullptr) pending.emplace_back(child, depth + 1);
    });
  }
  return deepest;
}

std::string repeat(std::string_view text, int times) {
  std::string out;
  out.reserve(text.size() * static_cast<std::size_t>(times));
  for (int i = 0; i < times; ++i) out += text;
  return out;
}

struct Parsed {
  std::vector<std::string> errors;  // messages of the error diagnostics
  std::size_t depth = 0;
  std::string dump;
};

Parsed parseDeep(std::string const& source) {
  frontend::ParseResult const result = frontend::parse(source, "deep.m");
  Parsed parsed;
  for (frontend::Diagnostic const& d : result.diagnostics) {
    if (d.severity == frontend::Severity::Error) parsed.errors.push_back(d.message);
  }
  if (result.tree != nullptr) {
    parsed.depth = depthOf(*result.tree->getProgram());
    parsed.dump = frontend::dumpTree(*result.tree->getProgram());
  }
  return parsed;
}

// A source that nests or chains `n` times.
struct Shape {
  std::string name;
  std::function<std::string(int)> make;
};

// The largest size of a shape that parses without an error, found by
// bisection between 1 and `largest`.
int largestCleanSize(Shape const& shape, int largest) {
  int clean = 1, failing = largest;
  while (failing - clean > 1) {
    int const middle = clean + (failing - clean) / 2;
    (parseDeep(shape.make(middle)).errors.empty() ? clean : failing) = middle;
  }
  return clean;
}

// Each shape near its limit and far past it: the largest size that parses
// cleanly (found by bisection) gives a deep tree, yet no tree comes out
// deeper than the bound, at that size, just past it, or far past it; far
// past it the parser reports `error` and, when `goesOn`, reads the next
// statement.
void checkShapes(std::vector<Shape> const& shapes, std::string_view error, int largest, bool goesOn) {
  std::string const next = "\ny = 2;\n";
  for (Shape const& shape : shapes) {
    SCOPED_TRACE(shape.name);
    auto parseSize = [&](int n) { return parseDeep(shape.make(n) + next); };
    ASSERT_TRUE(parseSize(1).errors.empty()) << parseSize(1).errors.front();
    Parsed const far = parseSize(largest);
    ASSERT_FALSE(far.errors.empty());
    EXPECT_EQ(far.errors.front(), error);
    EXPECT_LE(far.depth, depthBound);
    if (goesOn) {
      EXPECT_NE(far.dump.find("(Assignment (Identifier y) (NumberLiteral 2))"), std::string::npos);
    }

    int const clean = largestCleanSize(shape, largest);
    int const failing = clean + 1;
    Parsed const deepest = parseSize(clean);
    EXPECT_GT(deepest.depth, static_cast<std::size_t>(maxNestingDepth) / 2) << "the limit is reached too early";
    EXPECT_LE(deepest.depth, depthBound);
    for (int n : {failing, failing + 1, failing + 2, 2 * failing}) {
      Parsed const past = parseSize(n);
      EXPECT_FALSE(past.errors.empty()) << n;
      EXPECT_LE(past.depth, depthBound) << n;
    }
  }
}

TEST(DeepChains, LongChainsAreReportedAndTheTreeStaysWithinTheBound) {
  auto chain = [](std::string before, std::string link, std::string after) {
    return [=](int n) { return before + repeat(link, n) + after; };
  };
  std::vector<Shape> const shapes = {
      {"fields", chain("x = a", ".b", ";")},
      {"sums", chain("x = 1", "+1", ";")},
      {"products and differences", chain("x = a", "*b-c/d", ";")},
      {"comparisons and logic", chain("x = a", "<b&c||d", ";")},
      {"ranges", chain("x = 1", ":2", ";")},
      {"powers", chain("x = 2", "^2", ";")},
      {"powers of negatives", chain("x = 2", "^-2", ";")},
      {"transposes", chain("x = a", "'", ";")},
      {"indices", chain("x = a", "(1)", ";")},
      {"brace indices", chain("x = c", "{1}", ";")},
      {"dynamic fields", chain("x = s", ".(n)", ";")},
      {"a mix of postfix operations", chain("x = a", "(1).b{2}'.c", ";")},
      {"a mix of postfix and binary operations", chain("x = a", ".b(2)+c'*d{1}", ";")},
      {"a function handle to a long name", chain("f = @a", ".b", ";")},
      {"a metaclass of a long name", chain("m = ?a", ".b", ";")},
      {"a superclass with a long name", chain("obj = obj@a", ".b", "(x);")},
      {"a superclass method through a long chain", chain("obj = obj", ".b", ".m@Base(x);")},
      {"an assignment to a long chain", chain("a", ".b", " = 1;")},
      {"a chain in a matrix", chain("x = [a", ".b", " 1];")},
      {"a chain in a cell array", chain("x = {1, a", "{1}", "};")},
      {"a chain in an argument", chain("x = f(1, a", "+b", ");")},
      {"a chain in a name-value argument", chain("x = f(1, Name=a", "+b", ");")},
      {"a chain in an anonymous function", chain("f = @(x) x", "+x", ";")},
      {"a chain as an output", chain("[a", ".b", ", c] = f();")},
      {"a chain in a condition", chain("if a", "&&b", "\n  y = 1;\nend")},
      // A chain inside deep nesting counts the nesting too, and nesting
      // inside a long chain counts the chain.
      {"a chain inside parentheses", [](int n) { return "x = " + repeat("(", 60) + "a" + repeat(".b", n) + repeat(")", 60) + ";"; }},
      {"a chain after parenthesised sums",
       [](int n) { return "x = " + repeat("(", 60) + "a" + repeat(")+b", 60) + repeat("+c", n) + ";"; }},
      {"chains of parenthesised chains",
       [](int n) { return "x = " + repeat("(", 20) + "a" + repeat(repeat(".b", n / 20) + ")", 20) + ";"; }},
      {"nested calls around a chain", [](int n) { return "x = " + repeat("f(", 60) + "a" + repeat(".b", n) + repeat(")", 60) + ";"; }},
      {"a chain inside blocks", [](int n) { return repeat("if c\n", 60) + "x = a" + repeat(".b", n) + ";\n" + repeat("end\n", 60); }},
  };
  checkShapes(shapes, chainError, 65'000, true);
}

TEST(DeepNesting, EveryKindOfNestingStaysWithinTheBound) {
  auto nest = [](std::string before, std::string open, std::string middle, std::string close, std::string after) {
    return [=](int n) { return before + repeat(open, n) + middle + repeat(close, n) + after; };
  };
  std::vector<Shape> const expressions = {
      {"parentheses", nest("x = ", "(", "1", ")", ";")},
      {"matrices", nest("x = ", "[", "1", "]", ";")},
      {"cell arrays", nest("x = ", "{", "1", "}", ";")},
      {"prefix operators", nest("x = ", "-", "1", "", ";")},
      {"prefix operators on powers", nest("x = 2^", "-", "1", "", ";")},
      {"anonymous functions", nest("x = ", "@(y) ", "1", "", ";")},
      {"calls", nest("x = ", "f(", "1", ")", ";")},
      {"name-value arguments", nest("x = ", "f(a=", "1", ")", ";")},
      {"dynamic fields", nest("x = ", "a.(", "n", ")", ";")},
  };
  std::vector<Shape> const statements = {
      {"ifs", nest("", "if c\n", "x = 1;\n", "end\n", "")},
      {"elseifs", nest("", "if c\nelseif d\n", "x = 1;\n", "end\n", "")},
      {"elses", nest("", "if c\nelse\n", "x = 1;\n", "end\n", "")},
      {"cases", nest("", "switch c\ncase 1\n", "x = 1;\n", "end\n", "")},
      {"otherwise blocks", nest("", "switch c\notherwise\n", "x = 1;\n", "end\n", "")},
      {"catch blocks", nest("", "try\ncatch\n", "x = 1;\n", "end\n", "")},
      {"loops", nest("", "for k = 1:2\n", "x = 1;\n", "end\n", "")},
      {"nested functions", nest("function f\n", "function g\n", "x = 1;\n", "end\n", "end\n")},
  };
  // Blocks nested past the limit give an error at each level beyond it, so
  // the parser stops at the most errors it reports for a file.
  checkShapes(expressions, nestingError, 5'000, true);
  checkShapes(statements, nestingError, 5'000, false);
}

TEST(DeepChains, TheDiagnosticSaysWhereTheChainGrewTooDeep) {
  frontend::ParseResult const result = frontend::parse("z = 1;\nx = a" + repeat(".b", 1000) + ";\n", "deep.m");
  ASSERT_EQ(result.diagnostics.size(), 1u);
  frontend::Diagnostic const& d = result.diagnostics.front();
  EXPECT_EQ(d.message, chainError);
  EXPECT_EQ(d.line, 2u);
  // At a dot of the chain, where it passes the limit.
  EXPECT_GT(d.column, 6u + 2 * static_cast<unsigned>(maxNestingDepth - 16));
  EXPECT_LT(d.column, 6u + 2 * static_cast<unsigned>(maxNestingDepth));
  EXPECT_EQ((d.column - 6) % 2, 0u) << "not the column of a dot: " << d.column;
}

}  // namespace

namespace {

// The deepest trees the parser gives go through every analysis and the rule
// engine's walk, which recurse along the tree.
TEST(DeepChains, TheDeepestTreesGoThroughEveryAnalysisAndTheRuleWalk) {
  std::vector<Shape> const shapes = {
      {"sums", [](int n) { return "x = 1" + repeat("+1", n) + ";"; }},
      {"fields", [](int n) { return "x = a" + repeat(".b", n) + " + 1;"; }},
      {"a mix of postfix and binary operations", [](int n) { return "x = a" + repeat(".b(2)+c'*d{1}", n) + ";"; }},
      {"parentheses", [](int n) { return "x = " + repeat("(", n) + "1" + repeat(")", n) + ";"; }},
      {"ifs", [](int n) { return repeat("if c\n", n) + "x = 1;\n" + repeat("end\n", n); }},
  };
  for (Shape const& shape : shapes) {
    SCOPED_TRACE(shape.name);
    std::string const source = shape.make(largestCleanSize(shape, 2'000));
    frontend::AnalysisResult const result = frontend::analyze(source, "deep.m");
    ASSERT_NE(result.analysis, nullptr);
    ca::clients::AnalysisImpl const& analysis = *result.analysis;
    ASSERT_GT(depthOf(*analysis.getProgram()), static_cast<std::size_t>(maxNestingDepth) / 2);

    EXPECT_FALSE(analysis.getSymbolTable()->getSymbols().empty());
    auto const& calls = *analysis.getCallResolutionAnalysis();
    std::size_t numbers = 0;
    std::vector<ca::ast::Node const*> pending{analysis.getProgram()};
    while (!pending.empty()) {
      ca::ast::Node const* node = pending.back();
      pending.pop_back();
      if (node->getKind() == lf::astapi::NodeKind::NumberLiteral) ++numbers;
      EXPECT_EQ(calls.getCallInfo(*node).getNode(), node);
      lf::astapi::forEachChild(*node, [&pending](ca::ast::Node const* child) { pending.push_back(child); });
    }
    analysis.get<ca::controlflow::ControlFlowAnalysis>();
    EXPECT_FALSE(analysis.get<ca::usedef::UseDefAnalysis>().getAllUseDefs().empty());

    ca::rulesystem::AllNodes all;
    plexus::testing::Log log;
    auto const recorder = plexus::testing::record(all.numberLiteral, log, "number");
    all.execute(analysis, nullptr);
    EXPECT_EQ(log.size(), numbers) << "the walk did not reach every number";
  }
}

}  // namespace
