// Call resolution from source text: which nodes are calls, known or
// potential, of which names, with which arguments, and the closest call.

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "frontend/tree_dump.hpp"
#include "tests/support/analysis_text.hpp"

namespace {

namespace ast = ca::ast;
using ca::callresolution::Call;
using plexus::testing::analyzed;
using Lines = std::vector<std::string>;

// Every node of the tree that call resolution calls a call, in walk order:
// "Kind name status/arguments".
Lines callsIn(std::string const& source) {
  auto result = analyzed(source);
  auto const& calls = *result.analysis->getCallResolutionAnalysis();
  Lines out;
  std::vector<ast::Node const*> pending{result.analysis->getProgram()};
  while (!pending.empty()) {
    ast::Node const* node = pending.back();
    pending.pop_back();
    Call const call = calls.getCallInfo(*node);
    if (call.isCall() != Call::NoCall) {
      EXPECT_EQ(call.getNode(), node);
      out.push_back(
          std::string(lf::astapi::nodeKindName(node->getKind())) + " " + fl::i18n::to_utf8(call.getName().getString()) +
          (call.isCall() == Call::KnownCall ? " known/" : " potential/") + std::to_string(call.getNumArguments()));
    }
    std::vector<ast::Node const*> children;
    lf::astapi::forEachChild(*node, [&children](ast::Node const* child) { children.push_back(child); });
    pending.insert(pending.end(), children.rbegin(), children.rend());
  }
  return out;
}

TEST(Calls, InFunctionsNamesThatAreNoVariablesAreKnownCalls) {
  EXPECT_EQ(callsIn("function f(x)\n"
                    "  y = x(2);\n"             // x is a variable: an index
                    "  z = g(x, 1);\n"          // a local function
                    "  w = pi;\n"               // an external without parentheses
                    "  v = pkg.sub.fn(y);\n"    // a package function
                    "  u = pkg.sub.konst;\n"    // and without parentheses
                    "  s.f = 1; t = s.f(1);\n"  // fields of a variable
                    "  h = @sin;\n"             // a handle is no call
                    "  hold on\n"               // command syntax
                    "  q = cellfun(@(a) numel(a), z);\n"
                    "end\n"
                    "function r = g(a, b)\n  r = a + b;\nend\n"),
            (Lines{"ParenOperation g known/2", "Identifier pi known/0", "ParenOperation pkg.sub.fn known/1",
                   "DotOperation pkg.sub.konst known/0", "CommandInvocation hold known/1",
                   "ParenOperation cellfun known/2", "ParenOperation numel known/1"}));
}

TEST(Calls, InAScriptNamesItDoesNotDefineArePotentialCalls) {
  EXPECT_EQ(callsIn("x = 1;\n"
                    "y = x(1) + foo(x) + bar;\n"
                    "disp hello\n"
                    "z = local(2);\n"
                    "function r = local(a)\n"
                    "  r = helper(a);\n"
                    "end\n"),
            (Lines{"ParenOperation foo potential/1", "Identifier bar potential/0", "CommandInvocation disp known/1",
                   "ParenOperation local known/1", "ParenOperation helper known/1"}));
}

TEST(Calls, MethodsThroughTheObjectAndSuperclassCalls) {
  EXPECT_EQ(callsIn("classdef C < pkg.Base\n"
                    "  methods\n"
                    "    function obj = C(x)\n"
                    "      obj@pkg.Base(x);\n"
                    "      obj.update(x);\n"
                    "      obj.Data = x;\n"
                    "      n = obj.count;\n"
                    "    end\n"
                    "    function update(obj, v)\n"
                    "    end\n"
                    "    function n = count(obj)\n"
                    "      n = 0;\n"
                    "    end\n"
                    "  end\n"
                    "end\n"),
            (Lines{"ParenOperation pkg.Base known/1", "ParenOperation update known/1", "DotOperation count known/0"}));
}

TEST(Calls, ArgumentsAreHandedOutInOrder) {
  auto result = analyzed("function f\n  g(1, 'a', x);\nend\n");
  auto const& statement = static_cast<ast::ExpressionStatement const&>(
      *static_cast<ast::Function const&>(*result.analysis->getProgram()->getBody()[0]).getBody()[0]);
  Call const call = result.analysis->getCallResolutionAnalysis()->getCallInfo(*statement.getExpression());
  ASSERT_EQ(call.getNumArguments(), 3u);
  std::vector<std::string> seen;
  call.yieldArguments([&seen](ast::Expression const& argument) { seen.push_back(frontend::dumpTree(argument)); });
  EXPECT_EQ(seen, (Lines{"(NumberLiteral 1)", "(CharVectorLiteral 'a')", "(Identifier x)"}));
  EXPECT_EQ(call.getArguments()[2]->getKind(), lf::astapi::NodeKind::Identifier);
}

TEST(Calls, TheClosestCallEnclosesTheNodeWithinItsStatement) {
  auto result = analyzed("function f(x)\n  y = g(h(x) + 1);\n  z = x;\nend\n");
  auto const& function = static_cast<ast::Function const&>(*result.analysis->getProgram()->getBody()[0]);
  auto const& calls = *result.analysis->getCallResolutionAnalysis();
  auto const& first = static_cast<ast::Assignment const&>(*function.getBody()[0]);
  auto const& outer = static_cast<ast::ParenOperation const&>(*first.getRight());
  auto const& sum = static_cast<ast::BinaryOperation const&>(*outer.getArguments()[0]);
  auto const& inner = static_cast<ast::ParenOperation const&>(*sum.getLeft());
  auto nameOf = [](std::optional<Call> const& call) {
    return call ? fl::i18n::to_utf8(call->getName().getString()) : std::string("none");
  };
  EXPECT_EQ(nameOf(calls.getClosestCall(*inner.getArguments()[0])), "h");  // x in h(x)
  EXPECT_EQ(nameOf(calls.getClosestCall(*inner.getFunction())), "h");      // the name itself
  EXPECT_EQ(nameOf(calls.getClosestCall(*sum.getRight())), "g");           // 1 in g(... + 1)
  EXPECT_EQ(nameOf(calls.getClosestCall(*first.getLeft())), "none");       // y, outside any call
  auto const& second = static_cast<ast::Assignment const&>(*function.getBody()[1]);
  EXPECT_EQ(nameOf(calls.getClosestCall(*second.getRight())), "none");
  EXPECT_EQ(nameOf(calls.getClosestCall(second)), "none");
}

}  // namespace
