// Every analysis on a tree far deeper than the parser lets through: built
// directly, with chains and nestings a hundred thousand levels deep. A walk
// that recursed over such a tree would overflow the stack (soonest under
// AddressSanitizer, whose frames are large); one that climbed from every node
// to its ancestors would take hours. The answers are checked too.

#include <gtest/gtest.h>

#include <algorithm>
#include <vector>

#include "frontend/analysis/call_resolution.hpp"
#include "frontend/analysis/control_flow.hpp"
#include "frontend/analysis/name_resolution.hpp"
#include "frontend/analysis/use_def.hpp"
#include "tests/support/tree_maker.hpp"

namespace {

namespace ast = ca::ast;
using ca::callresolution::Call;
using lf::astapi::BinaryOperator;
using lf::astapi::UnaryOperator;

constexpr int kDepth = 100'000;

// The script, with the nodes the checks look at.
struct DeepScript {
  plexus::testing::TreeMaker m;
  ast::Identifier const* definitionOfA = nullptr;      // a = 1
  ast::Identifier const* definitionOfX = nullptr;      // x = ((a + 1) + 1) + ...
  ast::Identifier const* deepestA = nullptr;           // the a at the bottom of that chain
  ast::Identifier const* deepestX = nullptr;           // the x in disp(g(g(...g(x))))
  ast::ParenOperation const* innermostCall = nullptr;  // g(x)
  ast::Identifier const* aInNestedIf = nullptr;        // disp(a) inside if a, if a, ...
  ast::Identifier const* aInLambda = nullptr;          // @() @() ... a
  ast::Identifier const* aInNegation = nullptr;        // -(-(... a))
  std::shared_ptr<ca::astapi::SyntaxTree const> tree;
  std::size_t statements = 0;

  DeepScript() {
    std::vector<ast::Node const*> body;
    auto* a = m.id("a");
    definitionOfA = a;
    body.push_back(m.b.make<ast::Assignment>(a, m.num(1)));

    // x = ((a + 1) + 1) + ... + 1
    deepestA = m.id("a");
    ast::Expression const* sum = deepestA;
    for (int i = 0; i < kDepth; ++i) sum = m.b.make<ast::BinaryOperation>(BinaryOperator::Plus, sum, m.num(1));
    auto* x = m.id("x");
    definitionOfX = x;
    body.push_back(m.b.make<ast::Assignment>(x, sum));

    // disp(g(g(... g(x) ...)))
    deepestX = m.id("x");
    ast::Expression const* call = deepestX;
    for (int i = 0; i < kDepth; ++i) {
      call = m.b.make<ast::ParenOperation>(m.id("g"), m.exprs({call}));
      if (i == 0) innermostCall = static_cast<ast::ParenOperation const*>(call);
    }
    body.push_back(m.stmt(m.b.make<ast::ParenOperation>(m.id("disp"), m.exprs({call}))));

    // s.f.f. ... .f = x
    ast::Expression const* target = m.id("s");
    for (int i = 0; i < kDepth; ++i) target = m.b.make<ast::DotOperation>(target, m.field("f"));
    body.push_back(m.b.make<ast::Assignment>(target, m.id("x")));

    // h = @() @() ... @() a
    aInLambda = m.id("a");
    ast::Expression const* lambda = aInLambda;
    for (int i = 0; i < kDepth; ++i) {
      lambda = m.b.make<ast::AnonymousFunction>(lf::astapi::NodeList<ast::InputArgument>{}, lambda);
    }
    body.push_back(m.b.make<ast::Assignment>(m.id("h"), lambda));

    // if a, if a, ... disp(a) ... end, end
    aInNestedIf = m.id("a");
    ast::Node const* inner = m.stmt(m.b.make<ast::ParenOperation>(m.id("disp"), m.exprs({aInNestedIf})));
    for (int i = 0; i < kDepth; ++i) {
      inner = m.b.make<ast::IfStatement>(m.id("a"), m.body({inner}), lf::astapi::NodeList<ast::ElseifBlock>{},
                                         nullptr);
    }
    body.push_back(inner);

    // y = -(-(... a))
    aInNegation = m.id("a");
    ast::Expression const* negation = aInNegation;
    for (int i = 0; i < kDepth; ++i) negation = m.b.make<ast::UnaryOperation>(UnaryOperator::Minus, negation);
    body.push_back(m.b.make<ast::Assignment>(m.id("y"), negation));

    statements = body.size() + kDepth;  // the nested ifs hold disp(a) and all but the outermost if
    tree = m.b.finish(m.b.make<ast::Program>(m.b.text(u"deep.m"), m.b.list<ast::Node>(body)), ca::FileType::Script);
  }
};

std::vector<ast::Node const*> allNodes(ast::Node const& root) {
  std::vector<ast::Node const*> nodes, pending{&root};
  while (!pending.empty()) {
    ast::Node const* node = pending.back();
    pending.pop_back();
    nodes.push_back(node);
    lf::astapi::forEachChild(*node, [&pending](ast::Node const* child) { pending.push_back(child); });
  }
  return nodes;
}

std::vector<ast::Identifier const*> reachingDefinitions(ca::usedef::UseDefAnalysis const& usedefs,
                                                        ast::Identifier const* use) {
  for (auto const* record : usedefs.getAllUseDefs()) {
    if (record->getIdentifier() != use || record->asUse() == nullptr) continue;
    std::vector<ast::Identifier const*> found;
    for (auto const* definition : record->asUse()->getDefinitions()) found.push_back(definition->getIdentifier());
    return found;
  }
  ADD_FAILURE() << "no use record for the identifier";
  return {};
}

TEST(DeepTree, EveryAnalysisWalksChainsAndNestingsAHundredThousandDeep) {
  DeepScript const script;
  ast::Program const& program = *script.tree->getProgram();

  auto const symbols = frontend::FileSymbols::build(program, ca::FileType::Script);
  auto const* a = symbols->getSymbol(*script.deepestA);
  ASSERT_NE(a, nullptr);
  EXPECT_TRUE(a->isVariable());
  EXPECT_EQ(a, symbols->getSymbol(*script.aInNestedIf));
  EXPECT_EQ(a, symbols->getSymbol(*script.aInLambda));
  EXPECT_EQ(a, symbols->getSymbol(*script.aInNegation));
  // a = 1, the bottom of the sum, the lambda, every if and the disp inside, the negation.
  EXPECT_EQ(a->getOccurrences().size(), 4u + kDepth + 1u);

  frontend::FileCalls const calls(symbols);
  std::size_t callsOfG = 0;
  std::size_t withClosestCall = 0;
  for (ast::Node const* node : allNodes(program)) {
    Call const call = calls.getCallInfo(*node);
    if (call.isCall() != Call::NoCall && call.getName() == ca::astapi::StringId(u"g")) ++callsOfG;
    withClosestCall += calls.getClosestCall(*node).has_value() ? 1 : 0;
  }
  EXPECT_EQ(callsOfG, static_cast<std::size_t>(kDepth));
  EXPECT_GT(withClosestCall, 2u * kDepth);
  auto const closest = calls.getClosestCall(*script.deepestX);
  ASSERT_TRUE(closest.has_value());
  EXPECT_EQ(closest->getNode(), script.innermostCall);
  EXPECT_FALSE(calls.getClosestCall(*script.deepestA).has_value());

  auto const flow = frontend::buildControlFlow(program);
  ASSERT_EQ(flow->getGraphs().size(), 1u);
  auto const& graph = *flow->getGraphs().front();
  EXPECT_EQ(graph.getNodes().size(), 2 + script.statements);
  EXPECT_EQ(&flow->getEnclosingGraph(script.aInNestedIf), &graph);

  auto const usedefs = frontend::buildUseDefs(program, *symbols, *flow);
  using Identifiers = std::vector<ast::Identifier const*>;
  EXPECT_EQ(reachingDefinitions(*usedefs, script.deepestA), Identifiers{script.definitionOfA});
  EXPECT_EQ(reachingDefinitions(*usedefs, script.deepestX), Identifiers{script.definitionOfX});
  EXPECT_EQ(reachingDefinitions(*usedefs, script.aInNestedIf), Identifiers{script.definitionOfA});
  EXPECT_EQ(reachingDefinitions(*usedefs, script.aInNegation), Identifiers{script.definitionOfA});
}

}  // namespace
