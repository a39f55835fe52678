// The shape of a call, end to end from source text: arguments by position,
// the name node, the counts in both spellings, and where the results go.

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <vector>

#include "rulesystem/calls/call_arguments.hpp"
#include "rulesystem/calls/call_selection.hpp"
#include "rulesystem/execution/all_nodes.hpp"
#include "tests/support/hits.hpp"
#include "tests/support/stages.hpp"

namespace {

using namespace ca::rulesystem;
using ca::astapi::StringId;
using plexus::testing::analyse;
using plexus::testing::AnalysedSnippet;
using plexus::testing::hitsOf;
using plexus::testing::Lines;
using plexus::testing::naiveHitsOf;
using CallPredicate = std::unique_ptr<Predicate<ca::callresolution::Call const&>>;

std::string const argumentCounts = "function t\na();\nb(1);\nc(1, 2);\nd(1, 2, 3);\nend\n";

// Each call of `f` takes a different number of results from its context.
std::string const outputContexts =
    "function t(x)\n"
    "f(1);\n"              // a statement: none, definitely not used
    "f(2)\n"               // printed: none, and yet definitely used
    "y = f(3);\n"          // one, to y
    "z = g(f(4));\n"       // one, to g
    "[a, b, c] = f(5);\n"  // three
    "(f(6));\n"            // one, to the parentheses, which a statement drops
    "h = @() f(7);\n"      // none, and whether it is used is not known
    "hold on\n"            // a command: none, not used
    "w = (f(8));\n"        // one, to the parentheses
    "end\n";

/// The hits of `predicate` on the calls of `f` (and on commands) of
/// `snippet`, checked against the naive evaluator.
Lines callsOfFWhere(AnalysedSnippet const& snippet, std::function<CallPredicate()> const& predicate) {
  auto const pipeline = [&predicate](auto& all) { return all.parenOperation | getCalls{StringId(u"f")} | predicate(); };
  auto const commands = [&predicate](auto& all) { return all.commandInvocation | getCalls{} | predicate(); };
  Lines hits = hitsOf(snippet, pipeline);
  EXPECT_EQ(naiveHitsOf(snippet, pipeline), hits);
  for (std::string& line : hitsOf(snippet, commands)) hits.push_back(line);
  return hits;
}

TEST(GetArgument, GivesThePositionCountedFromOneAndNothingBeyondTheEnd) {
  auto const analysed = analyse(argumentCounts, "t.m");
  auto const at = [&analysed](unsigned long index) {
    return hitsOf(analysed, [index](auto& all) { return all.parenOperation | getCalls{} | getArgument{index}; });
  };
  EXPECT_EQ(at(1), Lines({"3:3 1", "4:3 1", "5:3 1"}));
  EXPECT_EQ(at(2), Lines({"4:6 2", "5:6 2"}));
  EXPECT_EQ(at(3), Lines({"5:9 3"}));
  EXPECT_EQ(at(4), Lines());
  auto const every = [](auto& all) { return all.parenOperation | getCalls{} | getArguments{}; };
  EXPECT_EQ(hitsOf(analysed, every), Lines({"3:3 1", "4:3 1", "4:6 2", "5:3 1", "5:6 2", "5:9 3"}));
  EXPECT_EQ(naiveHitsOf(analysed, every), hitsOf(analysed, every));
  // A command's words are its arguments.
  EXPECT_EQ(hitsOf("function t\nhold on\nend\n", [](auto& all) {
              return all.commandInvocation | getCalls{} | getArgument{1};
            }, "t.m"),
            Lines({"2:6 on"}));
}

TEST(GetArgument, PositionsAreStagesOfTheirOwnBehindOneUpcastForTheWholeArgumentList) {
  AllNodes all;
  auto const calls = all.parenOperation | getCalls{};
  auto const first = calls | getArgument{1};
  auto const second = calls | getArgument{2};
  EXPECT_EQ(first, calls | getArgument{1});
  EXPECT_NE(first, second);
  EXPECT_EQ(second->detailsDescription(), u"GetArgument 2");
  EXPECT_EQ(calls->consumers().size(), 2u);

  // Both by-value stages hang behind the one upcast of the calls to values.
  auto const arguments = calls | getArguments{};
  auto const name = calls | getNameNode{};
  EXPECT_EQ(arguments, calls | getArguments{});
  EXPECT_EQ(arguments->detailsDescription(), u"GetArguments");
  EXPECT_EQ(name->detailsDescription(), u"GetNameNode");
  ASSERT_EQ(calls->consumers().size(), 3u);
  EXPECT_EQ(calls->consumers()[2]->detailsDescription(), u"Upcast Call");
}

TEST(ArgumentCount, EachComparisonInBothSpellingsIsOneStageThatKeepsTheCallsItSays) {
  struct Case {
    std::function<CallPredicate()> written;
    std::function<CallPredicate()> mirrored;
    Lines expected;
  };
  std::vector<Case> const cases = {
      {[] { return numArguments{} == 0; }, [] { return 0 == numArguments{}; }, {"2:1 a()"}},
      {[] { return numArguments{} != 1; }, [] { return 1 != numArguments{}; }, {"2:1 a()", "4:1 c(1, 2)", "5:1 d(1, 2, 3)"}},
      {[] { return numArguments{} < 2; }, [] { return 2 > numArguments{}; }, {"2:1 a()", "3:1 b(1)"}},
      {[] { return numArguments{} > 2; }, [] { return 2 < numArguments{}; }, {"5:1 d(1, 2, 3)"}},
      {[] { return numArguments{} <= 1; }, [] { return 1 >= numArguments{}; }, {"2:1 a()", "3:1 b(1)"}},
      {[] { return numArguments{} >= 2; }, [] { return 2 <= numArguments{}; }, {"4:1 c(1, 2)", "5:1 d(1, 2, 3)"}},
  };
  auto const analysed = analyse(argumentCounts, "t.m");
  AllNodes all;
  auto const calls = all.parenOperation | getCalls{};
  for (Case const& c : cases) {
    auto const predicate = [&c](auto& roots) { return roots.parenOperation | getCalls{} | c.written(); };
    EXPECT_EQ(hitsOf(analysed, predicate), c.expected) << fl::i18n::to_utf8(c.written()->description());
    EXPECT_EQ(naiveHitsOf(analysed, predicate), c.expected);
    EXPECT_EQ(calls | c.written(), calls | c.mirrored()) << fl::i18n::to_utf8(c.written()->description());
  }
  EXPECT_EQ(calls->consumers().size(), cases.size());
  EXPECT_EQ((calls | (3 < numArguments{}))->detailsDescription(), u"NumArgs > 3");
  EXPECT_EQ(calls | (3 < numArguments{}), calls | (numArguments{} > 3));
  EXPECT_EQ((calls | (numArguments{} >= 3))->detailsDescription(), u"NumArgs >= 3");
  // The argument and the output count are two questions, though both ask
  // "== 1".
  EXPECT_NE(calls | (numArguments{} == 1), calls | (numOutputArguments{} == 1));
  EXPECT_EQ((calls | (1 != numOutputArguments{}))->detailsDescription(), u"NumOutputArgs != 1");
}

TEST(OutputCount, IsNoneAloneOrPrintedOrInAnAnonymousFunctionOneNestedOrAssignedAndTheTargetsOfAMultiAssignment) {
  struct Case {
    std::function<CallPredicate()> written;
    std::function<CallPredicate()> mirrored;
    Lines expected;
  };
  Lines const none = {"2:1 f(1)", "3:1 f(2)", "8:9 f(7)", "9:1 hold on"};
  std::vector<Case> const cases = {
      {[] { return numOutputArguments{} == 0; }, [] { return 0 == numOutputArguments{}; }, none},
      {[] { return numOutputArguments{} != 1; }, [] { return 1 != numOutputArguments{}; },
       {"2:1 f(1)", "3:1 f(2)", "6:13 f(5)", "8:9 f(7)", "9:1 hold on"}},
      {[] { return numOutputArguments{} < 1; }, [] { return 1 > numOutputArguments{}; }, none},
      {[] { return numOutputArguments{} > 1; }, [] { return 1 < numOutputArguments{}; }, {"6:13 f(5)"}},
      {[] { return numOutputArguments{} <= 0; }, [] { return 0 >= numOutputArguments{}; }, none},
      {[] { return numOutputArguments{} >= 3; }, [] { return 3 <= numOutputArguments{}; }, {"6:13 f(5)"}},
  };
  auto const analysed = analyse(outputContexts, "t.m");
  AllNodes all;
  auto const calls = all.parenOperation | getCalls{};
  for (Case const& c : cases) {
    EXPECT_EQ(callsOfFWhere(analysed, c.written), c.expected) << fl::i18n::to_utf8(c.written()->description());
    EXPECT_EQ(calls | c.written(), calls | c.mirrored()) << fl::i18n::to_utf8(c.written()->description());
  }
  EXPECT_EQ(callsOfFWhere(analysed, [] { return numOutputArguments{} == 1; }),
            Lines({"4:5 f(3)", "5:7 f(4)", "7:2 f(6)", "10:6 f(8)"}));
}

TEST(CallOutputs, UsedAndNotUsedLookThroughParenthesesAndLeaveAnonymousFunctionsOpen) {
  auto const analysed = analyse(outputContexts, "t.m");
  // Printed output is used although the statement takes no result.
  EXPECT_EQ(callsOfFWhere(analysed, isOutputDefinitelyUsed),
            Lines({"3:1 f(2)", "4:5 f(3)", "5:7 f(4)", "6:13 f(5)", "10:6 f(8)"}));
  // `(f(6));` is not used, though its count is one.
  EXPECT_EQ(callsOfFWhere(analysed, isOutputDefinitelyNotUsed), Lines({"2:1 f(1)", "7:2 f(6)", "9:1 hold on"}));

  AllNodes all;
  auto const calls = all.parenOperation | getCalls{};
  EXPECT_EQ((calls | isOutputDefinitelyUsed())->detailsDescription(), u"IsOutputDefinitelyUsed");
  EXPECT_EQ((calls | isOutputDefinitelyNotUsed())->detailsDescription(), u"IsOutputDefinitelyNotUsed");
  EXPECT_EQ(calls | isOutputDefinitelyUsed(), calls | isOutputDefinitelyUsed());
}

TEST(CallOutputs, TheSingleTargetStandsDirectlyLeftOfTheCallAndAMultiTargetByPosition) {
  auto const analysed = analyse(outputContexts, "t.m");
  auto const outputs = [&analysed](auto stage) {
    auto const pipeline = [&stage](auto& all) { return all.parenOperation | getCalls{StringId(u"f")} | stage(); };
    EXPECT_EQ(naiveHitsOf(analysed, pipeline), hitsOf(analysed, pipeline));
    return hitsOf(analysed, pipeline);
  };
  EXPECT_EQ(outputs([] { return getSingleOutput(); }), Lines({"4:1 y"}));
  EXPECT_EQ(outputs([] { return getOutputInMultiAssignment(1); }), Lines({"6:2 a"}));
  EXPECT_EQ(outputs([] { return getOutputInMultiAssignment(3); }), Lines({"6:8 c"}));
  EXPECT_EQ(outputs([] { return getOutputInMultiAssignment(4); }), Lines());

  // Positions print alike and are two stages.
  AllNodes all;
  auto const calls = all.parenOperation | getCalls{};
  auto const second = calls | getOutputInMultiAssignment(2);
  auto const third = calls | getOutputInMultiAssignment(3);
  EXPECT_EQ(second->detailsDescription(), u"GetOutputInMultiAssignment");
  EXPECT_EQ(third->detailsDescription(), u"GetOutputInMultiAssignment");
  EXPECT_NE(second, third);
  EXPECT_EQ(third, calls | getOutputInMultiAssignment(3));
  EXPECT_EQ((calls | getSingleOutput())->detailsDescription(), u"GetSingleOutput");
}

// `obj` is the object of a method of K, so `obj.step` is a method call with
// and without parentheses; `pkg` is no variable, so `pkg.sub.func` is a
// package function.
std::string const classWithCalls =
    "classdef K < Base\n"
    "    methods\n"
    "        function obj = K(x)\n"
    "            obj@Base(x);\n"
    "        end\n"
    "        function run(obj)\n"
    "            obj.step(1);\n"
    "            obj.step;\n"
    "            step(obj);\n"
    "            hold on\n"
    "            pkg.sub.func(2);\n"
    "        end\n"
    "        function step(obj, n)\n"
    "        end\n"
    "    end\n"
    "end\n";

TEST(CallName, TheNameNodeAndDotSyntaxOfEachSortOfCall) {
  auto const analysed = analyse(classWithCalls, "K.m");
  auto const statementCalls = [](auto& all) {
    return all.expressionStatement | std::make_unique<plexus::testing::StatementExpression>() | getCalls{};
  };
  auto const names = [&](auto& all) { return statementCalls(all) | getNameNode{}; };
  EXPECT_EQ(hitsOf(analysed, names),
            Lines({"4:13 obj@Base", "7:13 obj.step", "8:13 obj.step", "9:13 step", "11:13 pkg.sub.func"}));
  EXPECT_EQ(naiveHitsOf(analysed, names), hitsOf(analysed, names));
  EXPECT_EQ(hitsOf(analysed, [](auto& all) { return all.commandInvocation | getCalls{} | getNameNode{}; }),
            Lines({"10:13 hold"}));

  auto const dotted = [&](auto& all) { return statementCalls(all) | isDotSyntax(); };
  EXPECT_EQ(hitsOf(analysed, dotted), Lines({"7:13 obj.step(1)", "8:13 obj.step", "11:13 pkg.sub.func(2)"}));
  EXPECT_EQ(naiveHitsOf(analysed, dotted), hitsOf(analysed, dotted));
  EXPECT_EQ(hitsOf(analysed, [](auto& all) { return all.commandInvocation | getCalls{} | isDotSyntax(); }), Lines());

  AllNodes all;
  EXPECT_EQ((all.parenOperation | getCalls{} | isDotSyntax())->detailsDescription(), u"IsDotSyntax");
}

}  // namespace
