// The class-object analysis from source text: which identifiers are the
// object of a method, and which attributes are custom ones.

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include "frontend/analysis/registered_analyses.hpp"
#include "platform/ast/descendant_walk.hpp"
#include "platform/tosk/tosk_analysis.hpp"
#include "tests/support/analysis_text.hpp"

namespace {

namespace ast = ca::ast;
using ca::core::ToskAnnotation;
using lf::astapi::NodeKind;
using plexus::testing::analyzed;
using plexus::testing::text;
using Lines = std::vector<std::string>;

// Every node of `kind` in the tree of `analysis`, in source order.
template <class T>
std::vector<T const*> nodesOf(ca::Analysis const& analysis, NodeKind kind) {
  std::vector<T const*> found;
  lf::astapi::walkDescendants(*analysis.getProgram(), [&](ast::Node const& node) {
    if (node.getKind() == kind) found.push_back(static_cast<T const*>(&node));
    return lf::astapi::WalkStep::Descend;
  });
  std::stable_sort(found.begin(), found.end(), [](T const* a, T const* b) {
    return a->getSourceRange().first.offset < b->getSourceRange().first.offset;
  });
  return found;
}

// "line:col name" of each identifier of the file that bears `annotation`.
Lines annotated(std::string const& source, std::string const& path,
                ToskAnnotation annotation = ToskAnnotation::ObjectParameter) {
  auto const result = analyzed(source, path);
  auto const tosk = result.analysis->getToskAnalysis();
  Lines lines;
  for (ast::Identifier const* identifier : nodesOf<ast::Identifier>(*result.analysis, NodeKind::Identifier)) {
    if (!tosk->hasAnnotation(*identifier, annotation)) continue;
    auto const& at = identifier->getSourceRange().first;
    lines.push_back(std::to_string(at.line) + ":" + std::to_string(at.column) + " " + text(identifier->getText()));
  }
  return lines;
}

TEST(ClassObjects, TheObjectOfEachMethodOfAClassFileInEveryOccurrence) {
  std::string const source =
      "classdef C < handle\n"
      "  properties\n"
      "    P\n"
      "  end\n"
      "  methods\n"
      "    function obj = C(x)\n"  // the constructor's object is its output
      "      obj.P = x;\n"
      "    end\n"
      "    function r = total(self, y)\n"  // any name will do
      "      r = self.P + y + inner(y);\n"
      "      function s = inner(k)\n"  // a nested function shares the object, not its own input
      "        s = self.P * k;\n"
      "      end\n"
      "    end\n"
      "    function v = get.P(obj)\n"
      "      v = obj.P;\n"
      "    end\n"
      "    function obj = set.P(obj, v)\n"
      "      obj.P = v;\n"
      "    end\n"
      "    function r = ignoring(~, y)\n"
      "      r = y;\n"
      "    end\n"
      "    r = declared(this, z)\n"  // a declaration has no body to use an object in
      "  end\n"
      "  methods (Static)\n"
      "    function r = make(a)\n"
      "      r = a;\n"
      "    end\n"
      "  end\n"
      "end\n"
      "function r = helper(obj)\n"  // a local function is no method
      "  r = obj;\n"
      "end\n";
  EXPECT_EQ(annotated(source, "C.m"), (Lines{"6:14 obj", "7:7 obj", "9:24 self", "10:11 self", "12:13 self",
                                             "15:24 obj", "16:11 obj", "18:14 obj", "18:26 obj", "19:7 obj"}));
  // The class file's object parameters are the same in a class folder.
  EXPECT_EQ(annotated(source, "@C/C.m").size(), 10u);
  // A value the analysis has no name for bears nothing.
  EXPECT_EQ(annotated(source, "C.m", static_cast<ToskAnnotation>(7)), Lines{});
}

TEST(ClassObjects, StaticIsReadFromTheAttributesOfTheMethodsBlock) {
  EXPECT_EQ(annotated("classdef K\n"
                      "  methods (Static = true)\n"
                      "    function a(o1)\n    end\n"
                      "  end\n"
                      "  methods (Static = false)\n"
                      "    function b(o2)\n    end\n"
                      "  end\n"
                      "  methods (~Static)\n"
                      "    function c(o3)\n    end\n"
                      "  end\n"
                      "  methods (Static = 0)\n"
                      "    function d(o4)\n    end\n"
                      "  end\n"
                      "  methods (Static = flag)\n"  // not known to be false: no object claimed
                      "    function e(o5)\n    end\n"
                      "  end\n"
                      "  methods (Access = private, Static, Static = false)\n"  // the last one decides
                      "    function f(o6)\n    end\n"
                      "  end\n"
                      "  methods (Access = private, Hidden)\n"
                      "    function g(o7)\n    end\n"
                      "  end\n"
                      "  methods (Static)\n"  // a constructor has its object in any block
                      "    function obj = K()\n    end\n"
                      "  end\n"
                      "end\n",
                      "K.m"),
            (Lines{"7:16 o2", "11:16 o3", "15:16 o4", "23:16 o6", "27:16 o7", "31:14 obj"}));
}

TEST(ClassObjects, TheMainFunctionOfAFileInAClassFolderIsAMethod) {
  std::string const method =
      "function a = area(shape, scale)\n"
      "  a = shape.w * scale * helper(shape) + inner(scale);\n"
      "  function q = inner(p)\n"
      "    q = p + shape.w;\n"
      "  end\n"
      "end\n"
      "function h = helper(other)\n"
      "  h = other.w;\n"
      "end\n";
  Lines const inMethod{"1:19 shape", "2:7 shape", "2:32 shape", "4:13 shape"};
  EXPECT_EQ(annotated(method, "@Shape/area.m"), inMethod);
  EXPECT_EQ(annotated(method, "lib/+geo/@Shape/area.m"), inMethod);
  EXPECT_EQ(annotated(method, "lib\\@Shape\\area.m"), inMethod);
  // Only the folder directly around the file counts, and only a class folder.
  EXPECT_EQ(annotated(method, "@Shape/private/area.m"), Lines{});
  EXPECT_EQ(annotated(method, "lib/Shape/area.m"), Lines{});
  EXPECT_EQ(annotated(method, "lib/@/area.m"), Lines{});
  // The function named like the folder constructs: its object is its output.
  EXPECT_EQ(annotated("function s = Shape(w)\n  s.w = w;\n  s = class(s, 'Shape');\nend\n", "@Shape/Shape.m"),
            (Lines{"1:10 s", "2:3 s", "3:3 s", "3:13 s"}));
  EXPECT_EQ(annotated("function Shape(w)\n  disp(w);\nend\n", "@Shape/Shape.m"), Lines{});
  EXPECT_EQ(annotated("function a = area(~, k)\n  a = k;\nend\n", "@Shape/area.m"), Lines{});
  // A script in a class folder is no method, nor is anything outside one.
  EXPECT_EQ(annotated("obj = 1;\ny = obj;\nfunction r = f(obj)\n  r = obj;\nend\n", "@Shape/setup.m"), Lines{});
  EXPECT_EQ(annotated("function r = f(obj)\n  r = obj;\nend\n", "f.m"), Lines{});
}

// "Place.Name: custom[ logical]" or "Place.Name: -" for each attribute.
Lines customAttributes(ca::tosk::ToskAnalysis const& tosk, ca::Analysis const& analysis) {
  Lines lines;
  for (ast::Attribute const* attribute : nodesOf<ast::Attribute>(analysis, NodeKind::Attribute)) {
    std::ostringstream line;
    line << attribute->getParent()->getKind() << "." << text(attribute->getName()->getText()) << ": ";
    if (tosk.isCustomAttribute(*attribute)) {
      line << "custom" << (tosk.isLogicalCustomAttribute(*attribute) ? " logical" : "");
    } else {
      line << (tosk.isLogicalCustomAttribute(*attribute) ? "logical only" : "-");
    }
    lines.push_back(line.str());
  }
  return lines;
}

constexpr char const* kAttributes =
    "classdef (Nontunable, Color = 2) S < handle\n"
    "  properties (Nontunable, Logical, PositiveInteger, ~DiscreteState, ContinuousState = true, Hidden, Color = 1)\n"
    "    P\n"
    "  end\n"
    "  methods (Nontunable, Color)\n"
    "    function f(obj, x)\n"
    "      arguments (Nontunable, Repeating)\n"
    "        x\n"
    "      end\n"
    "    end\n"
    "  end\n"
    "  events (Nontunable)\n"
    "    Changed\n"
    "  end\n"
    "end\n";

TEST(ClassObjects, CustomAttributesAreTheFrameworkNamesOnPropertiesBlocks) {
  auto const result = analyzed(kAttributes, "S.m");
  EXPECT_EQ(customAttributes(*result.analysis->getToskAnalysis(), *result.analysis),
            (Lines{"Classdef.Nontunable: -", "Classdef.Color: -", "PropertiesBlock.Nontunable: custom logical",
                   "PropertiesBlock.Logical: custom logical", "PropertiesBlock.PositiveInteger: custom logical",
                   "PropertiesBlock.DiscreteState: custom logical", "PropertiesBlock.ContinuousState: custom logical",
                   "PropertiesBlock.Hidden: -", "PropertiesBlock.Color: -", "MethodsBlock.Nontunable: -",
                   "MethodsBlock.Color: -", "ArgumentsBlock.Nontunable: -", "ArgumentsBlock.Repeating: -",
                   "EventsBlock.Nontunable: -"}));
}

TEST(ClassObjects, TheOptionsAddCustomAttributesWhereTheLanguageDefinesNone) {
  auto const result = analyzed(kAttributes, "S.m");
  ca::clients::AnalysisOptions options;
  options.customAttributes = {
      {u"Color", NodeKind::PropertiesBlock, false},
      {u"Color", NodeKind::Classdef, true},
      {u"Nontunable", NodeKind::EventsBlock, true},
      // The language's own attribute keeps its meaning, and an arguments
      // block takes none but the language's.
      {u"Hidden", NodeKind::PropertiesBlock, false},
      {u"Nontunable", NodeKind::ArgumentsBlock, true},
  };
  ca::clients::AnalysisImpl const configured(result.analysis->getTree(), frontend::registeredAnalyses(),
                                             std::move(options));
  EXPECT_EQ(
      customAttributes(*configured.getToskAnalysis(), configured),
      (Lines{"Classdef.Nontunable: -", "Classdef.Color: custom logical", "PropertiesBlock.Nontunable: custom logical",
             "PropertiesBlock.Logical: custom logical", "PropertiesBlock.PositiveInteger: custom logical",
             "PropertiesBlock.DiscreteState: custom logical", "PropertiesBlock.ContinuousState: custom logical",
             "PropertiesBlock.Hidden: -", "PropertiesBlock.Color: custom", "MethodsBlock.Nontunable: -",
             "MethodsBlock.Color: -", "ArgumentsBlock.Nontunable: -", "ArgumentsBlock.Repeating: -",
             "EventsBlock.Nontunable: custom logical"}));
}

}  // namespace
