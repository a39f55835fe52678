// The node of a class around a node, from source text: functions, methods,
// classes, and the boundary of an anonymous function.

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "frontend/parse.hpp"
#include "frontend/tree_dump.hpp"
#include "platform/ast/descendant_walk.hpp"
#include "platform/ast/enclosing_node.hpp"
#include "platform/i18n/i18n.hpp"

namespace {

namespace ast = ca::ast;

struct Parsed {
  frontend::ParseResult result;
  std::vector<ast::Node const*> nodes;  // in walk order

  Parsed(std::string const& source, std::string const& path) : result(frontend::parse(source, path)) {
    EXPECT_FALSE(result.hasErrors()) << source;
    lf::astapi::walkDescendants(*result.tree->getProgram(), [&](ast::Node const& node) { nodes.push_back(&node); });
  }

  // The first identifier named `name`, in walk order.
  ast::Identifier const& identifier(std::string const& name) const {
    for (ast::Node const* node : nodes) {
      auto const* found = lf::astapi::dynCast<ast::Identifier>(node);
      if (found != nullptr && fl::i18n::to_utf8(found->getStringId().getString()) == name) return *found;
    }
    throw std::runtime_error("no identifier " + name);
  }
};

std::string nameOf(ast::Function const* function) {
  if (function == nullptr) return "none";
  return fl::i18n::to_utf8(function->getName()->getStringId().getString());
}

TEST(EnclosingNode, FunctionsMethodsAndClassesAround) {
  Parsed const file(
      "classdef C\n"
      "  methods\n"
      "    function r = m(obj)\n"
      "      r = obj.x + inMethod;\n"
      "      g = @() obj.y + inLambda;\n"
      "    end\n"
      "  end\n"
      "end\n",
      "C.m");
  ast::Identifier const& inMethod = file.identifier("inMethod");
  // A method is a function: the innermost function around is the method.
  EXPECT_EQ(nameOf(lf::astapi::getEnclosing<ast::Function>(inMethod)), "m");
  EXPECT_EQ(nameOf(lf::astapi::getEnclosing<ast::MethodDefinition>(inMethod)), "m");
  ASSERT_NE(lf::astapi::getEnclosing<ast::Classdef>(inMethod), nullptr);
  EXPECT_EQ(fl::i18n::to_utf8(lf::astapi::getEnclosing<ast::Classdef>(inMethod)->getName()->getStringId().getString()),
            "C");
  EXPECT_EQ(lf::astapi::getEnclosing<ast::Program>(inMethod), file.result.tree->getProgram());
  EXPECT_EQ(frontend::dumpTree(*lf::astapi::getEnclosing<ast::Assignment>(inMethod)->getLeft()), "(Identifier r)");
  EXPECT_EQ(lf::astapi::getEnclosing<ast::ForStatement>(inMethod), nullptr);

  // An anonymous function as a boundary: nothing is found beyond it.
  ast::Identifier const& inLambda = file.identifier("inLambda");
  EXPECT_EQ(nameOf(lf::astapi::getEnclosing<ast::Function>(inLambda)), "m");
  EXPECT_EQ(nameOf((lf::astapi::getEnclosing<ast::Function, ast::AnonymousFunction>(inLambda))), "none");
  EXPECT_EQ(nameOf((lf::astapi::getEnclosing<ast::Function, ast::AnonymousFunction>(inMethod))), "m");
  // A node of both classes is found, not a boundary.
  EXPECT_NE((lf::astapi::getEnclosing<ast::Expression, ast::Expression>(inLambda)), nullptr);

  // Only proper ancestors count; the root has none.
  ast::Function const* method = lf::astapi::getEnclosing<ast::Function>(inMethod);
  EXPECT_EQ(lf::astapi::getEnclosing<ast::Function>(*method), nullptr);
  EXPECT_EQ(lf::astapi::getEnclosing<ast::Node>(*file.result.tree->getProgram()), nullptr);
}

TEST(EnclosingNode, NestedFunctionsAndTheMethodAroundANode) {
  Parsed const file(
      "function outer()\n"
      "  function inner()\n"
      "    deep = 1;\n"
      "  end\n"
      "  shallow = 2;\n"
      "end\n",
      "outer.m");
  ast::Identifier const& deep = file.identifier("deep");
  EXPECT_EQ(nameOf(lf::astapi::getEnclosing<ast::Function>(deep)), "inner");
  EXPECT_EQ(nameOf(lf::astapi::getEnclosing<ast::Function>(*lf::astapi::getEnclosing<ast::Function>(deep))), "outer");
  EXPECT_EQ(nameOf(lf::astapi::getEnclosing<ast::Function>(file.identifier("shallow"))), "outer");
  // No method around a function's statements.
  EXPECT_EQ(lf::astapi::dynCast<ast::MethodDefinition>(lf::astapi::getEnclosing<ast::Function>(deep)), nullptr);
  EXPECT_EQ(lf::astapi::getEnclosing<ast::Method>(deep), nullptr);
}

}  // namespace
