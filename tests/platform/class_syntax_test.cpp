// Questions about class syntax, asked of trees parsed from source text.

#include <gtest/gtest.h>

#include <map>
#include <sstream>
#include <string>
#include <vector>

#include "frontend/parse.hpp"
#include "platform/ast/class_syntax.hpp"
#include "platform/i18n/i18n.hpp"

namespace {

namespace ast = ca::ast;
using ast::AttributeValueType;
using lf::astapi::NodeKind;

// Every node of `kind` in the tree of `source`, in walk order.
template <class T>
std::vector<T const*> nodesOf(frontend::ParseResult const& result, NodeKind kind) {
  std::vector<T const*> found;
  std::vector<ast::Node const*> pending{result.tree->getProgram()};
  while (!pending.empty()) {
    ast::Node const* node = pending.back();
    pending.pop_back();
    if (node->getKind() == kind) found.push_back(static_cast<T const*>(node));
    std::vector<ast::Node const*> children;
    lf::astapi::forEachChild(*node, [&children](ast::Node const* child) { children.push_back(child); });
    pending.insert(pending.end(), children.rbegin(), children.rend());
  }
  return found;
}

frontend::ParseResult parsed(std::string const& source, std::string const& path = "C.m") {
  frontend::ParseResult result = frontend::parse(source, path);
  EXPECT_FALSE(result.hasErrors()) << source;
  return result;
}

std::string where(ast::Attribute const& attribute) {
  std::ostringstream text;
  text << attribute.getParent()->getKind() << "." << fl::i18n::to_utf8(ca::astapi::toStdView(attribute.getName()->getText()));
  return text.str();
}

TEST(ClassSyntax, AttributesAreClassifiedByNameAndPlace) {
  auto const result = parsed(
      "classdef (Sealed, AllowedSubclasses = ?D, Color = 1) C < handle\n"
      "  properties (SetAccess = immutable, GetAccess = private, Description = 'd', PartialMatchPriority = 2, "
      "Static)\n"
      "    p\n"
      "  end\n"
      "  methods (Access = protected, Static, TestTags = {'a'}, Constant)\n"
      "  end\n"
      "  events (ListenAccess = public, SetAccess = private)\n"
      "  end\n"
      "  methods\n"
      "    function f(obj, varargin)\n"
      "      arguments (Repeating, Static)\n"
      "        varargin\n"
      "      end\n"
      "      arguments (Output, Input, Access = private)\n"
      "      end\n"
      "    end\n"
      "  end\n"
      "end\n");
  std::map<std::string, AttributeValueType> types;
  for (ast::Attribute const* attribute : nodesOf<ast::Attribute>(result, NodeKind::Attribute)) {
    types[where(*attribute)] = ast::getAttributeValueType(*attribute);
  }
  std::map<std::string, AttributeValueType> const expected{
      {"Classdef.Sealed", AttributeValueType::Logical},
      {"Classdef.AllowedSubclasses", AttributeValueType::MetaClass},
      {"Classdef.Color", AttributeValueType::Unknown},
      {"PropertiesBlock.SetAccess", AttributeValueType::ImmutableAccessModifier},
      {"PropertiesBlock.GetAccess", AttributeValueType::AccessModifier},
      {"PropertiesBlock.Description", AttributeValueType::Text},
      {"PropertiesBlock.PartialMatchPriority", AttributeValueType::Numeric},
      // Static is a method attribute, not a property attribute.
      {"PropertiesBlock.Static", AttributeValueType::Unknown},
      {"MethodsBlock.Access", AttributeValueType::AccessModifier},
      {"MethodsBlock.Static", AttributeValueType::Logical},
      {"MethodsBlock.TestTags", AttributeValueType::Label},
      {"MethodsBlock.Constant", AttributeValueType::Unknown},
      {"EventsBlock.ListenAccess", AttributeValueType::AccessModifier},
      {"EventsBlock.SetAccess", AttributeValueType::Unknown},
      // An arguments block says what it validates, and takes nothing else.
      {"ArgumentsBlock.Repeating", AttributeValueType::Logical},
      {"ArgumentsBlock.Output", AttributeValueType::Logical},
      {"ArgumentsBlock.Input", AttributeValueType::Logical},
      {"ArgumentsBlock.Static", AttributeValueType::Unknown},
      {"ArgumentsBlock.Access", AttributeValueType::Unknown},
  };
  EXPECT_EQ(types, expected);
  std::ostringstream printed;
  printed << AttributeValueType::ImmutableAccessModifier << " " << static_cast<std::uint32_t>(AttributeValueType::Text);
  EXPECT_EQ(printed.str(), "ImmutableAccessModifier 6");
}

// Each `@` operation of `source` with whether it calls a superclass
// constructor, in source order.
std::vector<bool> superclassCalls(std::string const& source, std::string const& path = "C.m") {
  auto const result = parsed(source, path);
  std::vector<bool> answers;
  for (auto const* operation : nodesOf<ast::BinaryOperation>(result, NodeKind::BinaryOperation)) {
    answers.push_back(ca::astapi::isSuperclassConstructorCall(*operation));
  }
  return answers;
}

TEST(ClassSyntax, AClassFolderIsTheFolderDirectlyAroundTheFile) {
  auto folderOf = [](std::string const& path) {
    return fl::i18n::to_utf8(ast::getClassFolderName(*parsed("x = 1;\n", path).tree->getProgram()));
  };
  EXPECT_EQ(folderOf("@C/m.m"), "C");
  EXPECT_EQ(folderOf("/src/+pkg/@Shape/area.m"), "Shape");
  EXPECT_EQ(folderOf("src\\@Shape\\area.m"), "Shape");
  EXPECT_EQ(folderOf("src//@Shape//area.m"), "Shape");
  EXPECT_EQ(folderOf("@Shape/private/area.m"), "");
  EXPECT_EQ(folderOf("src/Shape/area.m"), "");
  EXPECT_EQ(folderOf("src/@/area.m"), "");
  EXPECT_EQ(folderOf("area.m"), "");
}

TEST(ClassSyntax, SuperclassConstructorCallsAreTheObjectAtSuperInAConstructor) {
  // In the constructor: the object is an output. A superclass method called
  // through `method@Base` and an `@` on a name that is no output are not.
  EXPECT_EQ(superclassCalls("classdef C < pkg.B & D\n"
                            "  methods\n"
                            "    function obj = C(x)\n"
                            "      obj@pkg.B(x);\n"
                            "      obj = obj@D();\n"
                            "      other@D(obj);\n"
                            "    end\n"
                            "    function disp(obj)\n"
                            "      disp@pkg.B(obj);\n"
                            "      obj@pkg.B();\n"
                            "    end\n"
                            "  end\n"
                            "end\n"),
            (std::vector<bool>{true, true, false, false, false}));
  // A constructor of a class folder is the function named like its folder.
  EXPECT_EQ(superclassCalls("function o = C(x)\n  o@B(x);\nend\n", "lib/@C/C.m"), std::vector<bool>{true});
  EXPECT_EQ(superclassCalls("function o = C(x)\n  o@B(x);\nend\n", "lib/C/C.m"), std::vector<bool>{false});
  EXPECT_EQ(superclassCalls("function o = C(x)\n  o@B(x);\nend\n", "lib\\@C\\C.m"), std::vector<bool>{true});
  // An anonymous function in a constructor is a function of its own.
  EXPECT_EQ(superclassCalls("classdef C < B\n  methods\n    function obj = C()\n      f = @() obj@B();\n"
                            "    end\n  end\nend\n"),
            std::vector<bool>{false});
}

}  // namespace
