// Counts of inputs and outputs as intervals, compared with numbers, from
// source text through the graph.

#include <gtest/gtest.h>

#include <string>

#include "rulesystem/syntax/signature_counts.hpp"
#include "tests/support/hits.hpp"

namespace {

using namespace ca::rulesystem;
using plexus::testing::analyse;
using plexus::testing::hitsOf;
using plexus::testing::Lines;
using plexus::testing::naiveHitsOf;

/// The first line of each hit: a function's position and its signature.
Lines signatures(Lines hits) {
  for (std::string& hit : hits) hit = hit.substr(0, hit.find('\n'));
  return hits;
}

/// Whether the one function of `source` passes the stage that `makeStage` makes.
template <class MakeStage>
bool passes(std::string const& source, MakeStage makeStage) {
  return !hitsOf(source, [&](auto& all) { return all.function | makeStage(); }).empty();
}

TEST(SignatureCounts, AnOpenInputListAnswersOnlyWhatHoldsForEveryCount) {
  // Two ordinary inputs and varargin: the count is anywhere from 2 up.
  std::string const open = "function r = f(a, b, varargin)\nr = a;\nend\n";
  EXPECT_TRUE(passes(open, [] { return functionInputs{} > 1; }));
  EXPECT_FALSE(passes(open, [] { return functionInputs{} > 2; }));
  EXPECT_TRUE(passes(open, [] { return functionInputs{} >= 2; }));
  EXPECT_FALSE(passes(open, [] { return functionInputs{} >= 3; }));
  EXPECT_FALSE(passes(open, [] { return functionInputs{} == 2; }));
  EXPECT_FALSE(passes(open, [] { return functionInputs{} != 2; }));
  EXPECT_TRUE(passes(open, [] { return functionInputs{} != 1; }));
  EXPECT_FALSE(passes(open, [] { return functionInputs{} < 5; }));
  EXPECT_FALSE(passes(open, [] { return functionInputs{} <= 5; }));
  // Not even the marker itself bounds an open list from above.
  EXPECT_FALSE(passes(open, [] { return functionInputs{} < 4294967295u; }));

  // The same questions of a closed list of two.
  std::string const closed = "function r = f(a, b)\nr = a;\nend\n";
  EXPECT_TRUE(passes(closed, [] { return functionInputs{} == 2; }));
  EXPECT_TRUE(passes(closed, [] { return functionInputs{} != 3; }));
  EXPECT_TRUE(passes(closed, [] { return functionInputs{} < 3; }));
  EXPECT_FALSE(passes(closed, [] { return functionInputs{} < 2; }));
  EXPECT_TRUE(passes(closed, [] { return functionInputs{} <= 2; }));
  EXPECT_FALSE(passes(closed, [] { return functionInputs{} <= 1; }));
}

TEST(SignatureCounts, EmptyListsOpenEndedNamesAndIgnoredInputs) {
  std::string const nothing = "function f\nend\n";
  EXPECT_TRUE(passes(nothing, [] { return functionOutputs{} == 0; }));
  EXPECT_FALSE(passes(nothing, [] { return functionOutputs{} != 0; }));
  EXPECT_TRUE(passes(nothing, [] { return functionOutputs{} <= 0; }));
  EXPECT_FALSE(passes(nothing, [] { return functionOutputs{} > 0; }));
  EXPECT_TRUE(passes(nothing, [] { return functionOutputs{} < 1; }));
  EXPECT_TRUE(passes(nothing, [] { return functionInputs{} == 0; }));

  std::string const onlyVarargin = "function f(varargin)\nend\n";
  EXPECT_FALSE(passes(onlyVarargin, [] { return functionInputs{} == 0; }));
  EXPECT_TRUE(passes(onlyVarargin, [] { return functionInputs{} >= 0; }));
  EXPECT_FALSE(passes(onlyVarargin, [] { return functionInputs{} > 0; }));
  EXPECT_FALSE(passes(onlyVarargin, [] { return functionInputs{} != 0; }));

  // varargout opens the outputs; what stands after it still counts.
  std::string const openOutputs = "function [a, varargout, b] = f()\na = 1; b = 2;\nend\n";
  EXPECT_TRUE(passes(openOutputs, [] { return functionOutputs{} >= 2; }));
  EXPECT_FALSE(passes(openOutputs, [] { return functionOutputs{} >= 3; }));
  EXPECT_FALSE(passes(openOutputs, [] { return functionOutputs{} <= 1000; }));
  EXPECT_FALSE(passes(openOutputs, [] { return functionOutputs{} < 4294967295u; }));

  // In a file of several functions, each is counted by its own signature.
  std::string const file =
      "function main(~, x)\n"           // an ignored input counts: [2, 2]
      "end\n"
      "function [varargin] = a(varargout)\n"  // each name open only on its own side: [1, 1] both
      "end\n"
      "function b(Varargin)\n"          // the test is exact: an ordinary name
      "end\n"
      "function c(varargin, z, varargin)\n"  // position and repetition play no part: [1, open]
      "end\n";
  auto const stage = [&](auto makeStage) {
    return signatures(hitsOf(file, [&](auto& all) { return all.function | makeStage(); }));
  };
  EXPECT_EQ(stage([] { return functionInputs{} == 2; }), Lines({"1:1 function main(~, x)"}));
  EXPECT_EQ(stage([] { return functionInputs{} == 1; }),
            Lines({"3:1 function [varargin] = a(varargout)", "5:1 function b(Varargin)"}));
  EXPECT_EQ(stage([] { return functionOutputs{} == 1; }), Lines({"3:1 function [varargin] = a(varargout)"}));
  EXPECT_EQ(stage([] { return functionInputs{} >= 1; }),
            Lines({"1:1 function main(~, x)", "3:1 function [varargin] = a(varargout)", "5:1 function b(Varargin)",
                   "7:1 function c(varargin, z, varargin)"}));
  EXPECT_EQ(stage([] { return functionInputs{} > 1; }), Lines({"1:1 function main(~, x)"}));
  EXPECT_EQ(stage([] { return functionInputs{} != 0; }),
            Lines({"1:1 function main(~, x)", "3:1 function [varargin] = a(varargout)", "5:1 function b(Varargin)",
                   "7:1 function c(varargin, z, varargin)"}));
  EXPECT_EQ(stage([] { return functionInputs{} < 2; }),
            Lines({"3:1 function [varargin] = a(varargout)", "5:1 function b(Varargin)"}));
}

TEST(SignatureCounts, MethodsAreCountedWithTheirObjectDeclaredOrDefined) {
  std::string const source =
      "classdef Account < handle\n"
      "    methods\n"
      "        function obj = Account(owner)\n"
      "        end\n"
      "        function deposit(obj, amount, varargin)\n"
      "        end\n"
      "        r = declared(obj, x)\n"
      "    end\n"
      "end\n";
  auto const methods = [&](auto pipeline) { return signatures(hitsOf(source, pipeline, "Account.m")); };
  EXPECT_EQ(methods([](auto& all) { return all.method | (methodInputs{} == 2); }),
            Lines({"7:9 r = declared(obj, x)"}));
  EXPECT_EQ(methods([](auto& all) { return all.method | (methodInputs{} > 1); }),
            Lines({"5:9 function deposit(obj, amount, varargin)", "7:9 r = declared(obj, x)"}));
  EXPECT_EQ(methods([](auto& all) { return all.method | (methodInputs{} < 2); }),
            Lines({"3:9 function obj = Account(owner)"}));
  EXPECT_EQ(methods([](auto& all) { return all.method | (methodInputs{} <= 1); }),
            Lines({"3:9 function obj = Account(owner)"}));
  EXPECT_EQ(methods([](auto& all) { return all.method | (methodInputs{} >= 2); }),
            Lines({"5:9 function deposit(obj, amount, varargin)", "7:9 r = declared(obj, x)"}));
  EXPECT_EQ(methods([](auto& all) { return all.method | (methodInputs{} >= 3); }), Lines());
  EXPECT_EQ(methods([](auto& all) { return all.method | (methodInputs{} != 1); }),
            Lines({"5:9 function deposit(obj, amount, varargin)", "7:9 r = declared(obj, x)"}));
  EXPECT_EQ(methods([](auto& all) { return all.methodDefinition | (methodOutputs{} == 1); }),
            Lines({"3:9 function obj = Account(owner)"}));
  EXPECT_EQ(methods([](auto& all) { return all.method | (methodOutputs{} != 1); }),
            Lines({"5:9 function deposit(obj, amount, varargin)"}));
  EXPECT_EQ(methods([](auto& all) { return all.method | (methodOutputs{} > 0); }),
            Lines({"3:9 function obj = Account(owner)", "7:9 r = declared(obj, x)"}));
  EXPECT_EQ(methods([](auto& all) { return all.method | (methodOutputs{} < 1); }),
            Lines({"5:9 function deposit(obj, amount, varargin)"}));
  EXPECT_EQ(methods([](auto& all) { return all.methodDeclaration | (methodOutputs{} <= 1); }),
            Lines({"7:9 r = declared(obj, x)"}));
  EXPECT_EQ(methods([](auto& all) { return all.method | (methodOutputs{} >= 1); }),
            Lines({"3:9 function obj = Account(owner)", "7:9 r = declared(obj, x)"}));
  // Methods are not functions, so the function stages never see them.
  EXPECT_EQ(methods([](auto& all) { return all.function | (functionInputs{} >= 0); }), Lines());

  // The naive evaluator runs the very same stages to the same answer, and
  // its function root, like the walk, holds no methods either.
  auto const analysed = analyse(source, "Account.m");
  EXPECT_EQ(naiveHitsOf(analysed, [](auto& all) { return all.function | (functionInputs{} >= 0); }), Lines());
  EXPECT_EQ(signatures(naiveHitsOf(analysed, [](auto& all) { return all.method | (methodInputs{} > 1); })),
            Lines({"5:9 function deposit(obj, amount, varargin)", "7:9 r = declared(obj, x)"}));
}

TEST(SignatureCounts, DescriptionsNameSideComparatorAndNumberAndIdentityKeepsClassesApart) {
  AllNodes all;
  auto const describe = [](auto const& producer) { return producer->detailsDescription(); };
  EXPECT_EQ(describe(all.function | (functionInputs{} == 2)), u"InputArg IntervalEqual2");
  EXPECT_EQ(describe(all.function | (functionInputs{} != 2)), u"InputArg IntervalNotEqual2");
  EXPECT_EQ(describe(all.function | (functionInputs{} > 12)), u"InputArg IntervalGreater12");
  EXPECT_EQ(describe(all.function | (functionInputs{} < 3)), u"InputArg IntervalLess3");
  EXPECT_EQ(describe(all.function | (functionInputs{} <= 0)), u"InputArg IntervalLessEqual0");
  EXPECT_EQ(describe(all.function | (functionInputs{} >= 1)), u"InputArg IntervalGreaterEqual1");
  EXPECT_EQ(describe(all.function | (functionOutputs{} <= 4294967295u)), u"OutputArg IntervalLessEqual4294967295");
  EXPECT_EQ(describe(all.method | (methodOutputs{} == 1)), u"OutputArg IntervalEqual1");

  // Equal stages are one vertex; the number, the comparator, the side and
  // the item class each tell stages apart.
  EXPECT_EQ(all.function | (functionInputs{} == 2), all.function | (functionInputs{} == 2));
  EXPECT_NE(all.function | (functionInputs{} == 2), all.function | (functionInputs{} == 3));
  EXPECT_NE(all.function | (functionInputs{} == 2), all.function | (functionOutputs{} == 2));
  // Two stages with the same behaviour.
  EXPECT_NE(all.function | (functionInputs{} > 1), all.function | (functionInputs{} >= 2));
  // Printed alike, yet a function stage and a method stage are two classes.
  EXPECT_EQ((functionInputs{} == 2)->description(), (methodInputs{} == 2)->description());
  EXPECT_NE(all.method | (functionInputs{} == 2), all.method | (methodInputs{} == 2));
}

}  // namespace
