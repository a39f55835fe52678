// Name resolution from source text: which names are variables, functions,
// methods, the class or external, in which scope, and where they occur.

#include <gtest/gtest.h>

#include <map>
#include <string>
#include <vector>

#include "tests/support/analysis_text.hpp"

namespace {

using plexus::testing::analyzed;
using plexus::testing::symbolsOf;
using Lines = std::vector<std::string>;

TEST(Names, FunctionFileVariablesAndFunctionsOfEachSort) {
  EXPECT_EQ(symbolsOf("function [y, z] = f(x, ~)\n"
                      "  global G\n"
                      "  persistent P\n"
                      "  y = x + g(x) + G + P;\n"
                      "  disp(z)\n"
                      "end\n"
                      "function r = g(a)\n"
                      "  r = a;\n"
                      "end\n"),
            (Lines{"y: Variable Output (2)", "z: Variable Output Undefined (2)", "f: Function Main (1)",
                   "x: Variable Input (3)", "G: Variable Global (2)", "P: Variable Persistent (2)",
                   "g: Function Local (2)", "disp: External (1)", "r: Variable Output (2)", "a: Variable Input (2)"}));
}

TEST(Names, NestedFunctionsShareTheVariablesOfTheFunctionAroundThem) {
  EXPECT_EQ(symbolsOf("function f\n"
                      "  w = 3;\n"
                      "  h = @(x) x + w;\n"
                      "  function inner\n"
                      "    w = w + 1;\n"
                      "    q = 2;\n"
                      "  end\n"
                      "end\n"),
            (Lines{"f: Function Main (1)", "w: Variable Shared (4)", "h: Variable (1)", "x: Variable Input (2)",
                   "inner: Function Nested (1)", "q: Variable (1)"}));
  // Without the nested function, w is an ordinary variable; the anonymous
  // function's input x is its own, whatever is around it.
  EXPECT_EQ(symbolsOf("function f(x)\n  w = 3;\n  h = @(x) x + w;\nend\n"),
            (Lines{"f: Function Main (1)", "x: Variable Input (1)", "w: Variable (2)", "h: Variable (1)",
                   "x: Variable Input (2)"}));
}

TEST(Names, ScriptWorkspaceAndItsLocalFunctions) {
  // A name the script assigns anywhere is a variable, also where it is used
  // before the assignment; names only used are external.
  EXPECT_EQ(symbolsOf("disp(x)\n"
                      "x = 1;\n"
                      "y = foo(x);\n"
                      "hold on\n"
                      "for k = 1:3, end\n"
                      "try, catch err, end\n"
                      "function r = foo(a)\n"
                      "  r = a + x;\n"
                      "end\n"),
            (Lines{"disp: External (1)", "x: Variable (3)", "y: Variable (1)", "foo: Function Local (2)",
                   "hold: External (1)", "k: Variable (1)", "err: Variable (1)", "r: Variable Output (2)",
                   "a: Variable Input (2)", "x: External (1)"}));
}

TEST(Names, ClassFileMethodsConstructorAndClass) {
  EXPECT_EQ(
      symbolsOf("classdef (Sealed) C < handle & pkg.Base\n"
                "  properties\n"
                "    P = 3\n"
                "  end\n"
                "  methods\n"
                "    function obj = C(x)\n"
                "      obj@pkg.Base(x);\n"
                "      obj.P = helper(x);\n"
                "    end\n"
                "    function v = get.P(obj)\n"
                "      v = obj.P;\n"
                "    end\n"
                "    r = declared(obj, y)\n"
                "  end\n"
                "end\n"
                "function h = helper(v)\n"
                "  h = v;\n"
                "end\n"),
      (Lines{"C: Method Constructor Class (2)", "handle: External (1)", "pkg: External (2)", "obj: Variable Output (3)",
             "x: Variable Input (3)", "helper: Function Local (2)", "v: Variable Output (2)", "get.P: Method (1)",
             "obj: Variable Input (2)", "r: Variable Output (1)", "declared: Method (1)", "obj: Variable Input (1)",
             "y: Variable Input (1)", "h: Variable Output (2)", "v: Variable Input (2)"}));
}

TEST(Names, IdentifiersThatDeclareHaveNoSymbolAndOccurrencesAreInSourceOrder) {
  auto result = analyzed(
      "classdef C\n  properties (Access = private)\n    Prop\n  end\n"
      "  events\n    Changed\n  end\nend\n");
  auto const* table = result.analysis->getSymbolTable();
  ASSERT_EQ(table->getSymbols().size(), 2u);  // C and private
  auto result2 = analyzed("import pkg.sub.*\nx = 1; x = x + 1; y(x) = x;\n");
  auto const* symbols = result2.analysis->getSymbolTable();
  auto const& x = *symbols->getSymbols()[0];
  EXPECT_EQ(plexus::testing::text(x.getName()), "x");
  ASSERT_EQ(x.getOccurrences().size(), 5u);
  for (std::size_t i = 1; i < x.getOccurrences().size(); ++i) {
    EXPECT_LT(x.getOccurrences()[i - 1]->getSourceRange().first.offset,
              x.getOccurrences()[i]->getSourceRange().first.offset);
  }
  // Every occurrence refers back to its symbol.
  for (auto const* occurrence : x.getOccurrences()) EXPECT_EQ(symbols->getSymbol(*occurrence), &x);
}

TEST(IdUse, ArgumentSignaturesAndDotAssignments) {
  auto result = analyzed(
      "function [a, b] = f(c, ~)\n"
      "  g = @(d) d;\n"
      "  obj.p = 1;\n"
      "  s.a(2).b = 3;\n"
      "  [t.x, u] = deal(1, 2);\n"
      "  v(2) = 4;\n"
      "  w = obj.p;\n"
      "end\n");
  auto const& uses = *result.analysis->getIdUseAnalysis();
  auto const* table = result.analysis->getSymbolTable();
  auto occurrencesOf = [&](std::string const& name) {
    std::vector<ca::ast::Identifier const*> found;
    for (auto const* symbol : table->getSymbols()) {
      if (plexus::testing::text(symbol->getName()) == name) {
        for (auto const* occurrence : symbol->getOccurrences()) found.push_back(occurrence);
      }
    }
    return found;
  };
  for (std::string name : {"a", "b", "c", "d"}) EXPECT_TRUE(uses.isArgumentSignature(*occurrencesOf(name)[0])) << name;
  EXPECT_FALSE(uses.isArgumentSignature(*occurrencesOf("d")[1]));  // the use in the body
  EXPECT_FALSE(uses.isArgumentSignature(*occurrencesOf("g")[0]));
  EXPECT_TRUE(uses.isDotAssignment(*occurrencesOf("obj")[0]));
  EXPECT_FALSE(uses.isDotAssignment(*occurrencesOf("obj")[1]));  // read in w = obj.p
  EXPECT_TRUE(uses.isDotAssignment(*occurrencesOf("s")[0]));
  EXPECT_TRUE(uses.isDotAssignment(*occurrencesOf("t")[0]));
  EXPECT_FALSE(uses.isDotAssignment(*occurrencesOf("u")[0]));
  EXPECT_FALSE(uses.isDotAssignment(*occurrencesOf("v")[0]));
}

TEST(IdUse, DynamicFieldTargetsReadTheirNamesAndWriteTheirHead) {
  std::string const source =
      "function f(k)\n"
      "  s.(k) = 1;\n"
      "  [t.(k), u(k)] = deal(1, 2);\n"
      "end\n";
  EXPECT_EQ(symbolsOf(source),
            (std::vector<std::string>{"f: Function Main (1)", "k: Variable Input (4)", "s: Variable (1)",
                                      "t: Variable (1)", "u: Variable (1)", "deal: External (1)"}));
  auto result = analyzed(source);
  auto const& uses = *result.analysis->getIdUseAnalysis();
  std::map<std::string, bool> dotAssigned;
  for (auto const* symbol : result.analysis->getSymbolTable()->getSymbols()) {
    dotAssigned[plexus::testing::text(symbol->getName())] = uses.isDotAssignment(*symbol->getOccurrences()[0]);
  }
  EXPECT_EQ(dotAssigned, (std::map<std::string, bool>{
                             {"f", false}, {"k", false}, {"s", true}, {"t", true}, {"u", false}, {"deal", false}}));
}

}  // namespace
