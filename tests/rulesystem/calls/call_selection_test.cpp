// From nodes to calls, end to end from source text: which answers of call
// resolution pass in each mode, the switch on the called name, and the
// closest call around a node.

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <typeinfo>

#include "rulesystem/calls/call_selection.hpp"
#include "rulesystem/execution/all_nodes.hpp"
#include "tests/support/hits.hpp"
#include "tests/support/naive_pipeline.hpp"
#include "tests/support/stages.hpp"

namespace {

using namespace ca::rulesystem;
using ca::astapi::StringId;
using plexus::testing::analyse;
using plexus::testing::hitsOf;
using plexus::testing::Lines;
using plexus::testing::naiveHitsOf;

auto const allCalls = [](auto& all) { return all.parenOperation | getCalls{}; };
auto const knownCalls = [](auto& all) {
  return all.parenOperation | getCalls{StringId(), getCalls::GetStrictlyKnownCalls};
};

// In a script a name the script does not define may have been made a
// variable by earlier code: its calls are only potential.
TEST(GetCalls, PotentialCallsPassOnlyTheFirstModeKnownCallsBothAndOtherNodesNeither) {
  std::string const script = "x = 3;\ny = max(x, 4);\nz = x(1);\nr = addOne(2);\nhold on\n\n"
                             "function r = addOne(v)\nr = v + 1;\nend\n";
  auto const analysed = analyse(script, "script.m");
  EXPECT_EQ(hitsOf(analysed, allCalls), Lines({"2:5 max(x, 4)", "4:5 addOne(2)"}));
  EXPECT_EQ(hitsOf(analysed, knownCalls), Lines({"4:5 addOne(2)"}));
  auto const commands = [](auto& all) {
    return all.commandInvocation | getCalls{StringId(), getCalls::GetStrictlyKnownCalls};
  };
  EXPECT_EQ(hitsOf(analysed, commands), Lines({"5:1 hold on"}));

  // In a function the same external call is known.
  auto const function = analyse("function f(x)\ny = max(x, 4);\nz = x(1);\nend\n", "f.m");
  EXPECT_EQ(hitsOf(function, allCalls), Lines({"2:5 max(x, 4)"}));
  EXPECT_EQ(hitsOf(function, knownCalls), Lines({"2:5 max(x, 4)"}));

  for (auto const* snippet : {&analysed, &function}) {
    EXPECT_EQ(naiveHitsOf(*snippet, allCalls), hitsOf(*snippet, allCalls));
    EXPECT_EQ(naiveHitsOf(*snippet, knownCalls), hitsOf(*snippet, knownCalls));
  }
}

TEST(GetCalls, ANameSelectsItsCallsAndAnUnknownNameNone) {
  std::string const source = "function f(x)\nmax(x, 1);\ndisp(x);\ny = max(min(x), 2);\nend\n";
  auto const analysed = analyse(source, "f.m");
  auto const maxCalls = [](auto& all) { return all.parenOperation | getCalls{StringId(u"max")}; };
  EXPECT_EQ(hitsOf(analysed, maxCalls), Lines({"2:1 max(x, 1)", "4:5 max(min(x), 2)"}));
  EXPECT_EQ(naiveHitsOf(analysed, maxCalls), hitsOf(analysed, maxCalls));
  EXPECT_EQ(hitsOf(analysed, [](auto& all) { return all.parenOperation | getCalls{StringId(u"plot")}; }), Lines());
  // Calls stand at the node whatever its class: a command behind the upcast
  // of its root, an identifier alone behind a stage that reaches it.
  auto const named = [](auto& all) {
    return all.expressionStatement | std::make_unique<plexus::testing::StatementExpression>() |
           getCalls{StringId(u"tic")};
  };
  EXPECT_EQ(hitsOf("function f\ntic;\ntoc;\nend\n", named, "f.m"), Lines({"2:1 tic"}));
}

TEST(GetCalls, NamesShareOneSelectorAndOneSwitchAndModesShareNothing) {
  AllNodes all;
  Producer<Node const&> nodes = upcast<Node const&>(all.parenOperation);
  auto const every = all.parenOperation | getCalls{};
  EXPECT_EQ(every, nodes | getCalls{});
  EXPECT_EQ(every->detailsDescription(), u"GetCalls: GetAllPotentialCalls");
  EXPECT_TRUE(every->consumers().empty()) << "every name asks for no switch";

  auto const max = all.parenOperation | getCalls{StringId(u"max")};
  auto const disp = all.parenOperation | getCalls{StringId(u"disp")};
  EXPECT_EQ(max, all.parenOperation | getCalls{StringId(u"max")});
  EXPECT_NE(max, disp);
  EXPECT_EQ(max->kindDescription(), u"Case");
  EXPECT_EQ(max->detailsDescription(), u"max");
  ASSERT_EQ(every->consumers().size(), 1u);
  auto const* names = every->consumers()[0];
  EXPECT_EQ(names->kindDescription(), u"Switch");
  EXPECT_EQ(names->detailsDescription(), u"GetCallName");
  EXPECT_EQ(names->extraChildren().size(), 2u);

  auto const strict = all.parenOperation | getCalls{StringId(), getCalls::GetStrictlyKnownCalls};
  auto const strictMax = all.parenOperation | getCalls{StringId(u"max"), getCalls::GetStrictlyKnownCalls};
  EXPECT_NE(strict, every);
  EXPECT_EQ(strict->detailsDescription(), u"GetCalls: GetStrictlyKnownCalls");
  EXPECT_NE(strictMax, max);
  ASSERT_EQ(strict->consumers().size(), 1u);
  EXPECT_EQ(strict->consumers()[0]->extraChildren().size(), 1u);
  // One upcast in front of both selectors.
  EXPECT_EQ(all.parenOperation->consumers().size(), 1u);
  EXPECT_EQ(nodes->consumers().size(), 2u);
}

TEST(GetClosestCall, GivesTheCallAroundANodeAndNothingOutsideAnyCall) {
  auto const closest = [](auto& all) { return upcast<Node const&>(all.numberLiteral) | getClosestCall(); };
  std::string const source = "function f(x)\ny = 3;\nz = max(x, min(4, 5));\nw = x(6);\nend\n";
  auto const analysed = analyse(source, "f.m");
  EXPECT_EQ(hitsOf(analysed, closest), Lines({"3:12 min(4, 5)", "3:12 min(4, 5)"}));
  EXPECT_EQ(naiveHitsOf(analysed, closest), hitsOf(analysed, closest));

  AllNodes all;
  auto const vertex = closest(all);
  EXPECT_EQ(vertex, closest(all));
  EXPECT_EQ(vertex->detailsDescription(), u"GetClosestCall");
}

TEST(CallSelectionFailures, AnAnalysisThatIsNoAnalysisImplRaisesBadCastAndAnEmptySinkBadFunctionCall) {
  auto const analysed = analyse("function f(x)\ny = max(x, 1);\nend\n", "f.m");
  plexus::testing::ForeignAnalysis const bare(*analysed.analysis);
  ParenOperation const* call = nullptr;
  NumberLiteral const* one = nullptr;
  plexus::testing::detail::eachNodeInWalkOrder(*analysed.analysis->getProgram(), [&](Node const& node) {
    if (auto const* paren = lf::astapi::dynCast<ParenOperation>(node)) call = paren;
    if (auto const* number = lf::astapi::dynCast<NumberLiteral>(node)) one = number;
  });
  ASSERT_TRUE(call != nullptr && one != nullptr);

  // The items go straight to the roots, so that nothing but the stages asks
  // the analysis.
  AllNodes all;
  Lines received;
  plexus::testing::recordHits(allCalls(all), received, analysed.describer());
  plexus::testing::recordHits(upcast<Node const&>(all.numberLiteral) | getClosestCall(), received,
                              analysed.describer());
  EXPECT_THROW(all.parenOperation->produce(*call, bare, nullptr), std::bad_cast);
  EXPECT_THROW(all.numberLiteral->produce(*one, bare, nullptr), std::bad_cast);
  all.parenOperation->produce(*call, *analysed.analysis, nullptr);
  all.numberLiteral->produce(*one, *analysed.analysis, nullptr);
  EXPECT_EQ(received, Lines({"2:5 max(x, 1)", "2:5 max(x, 1)"}));

  // A sink is called as it is: an empty one raises what std::function does.
  EXPECT_THROW(getClosestCall()->select(*one, *analysed.analysis, {}), std::bad_function_call);
}

}  // namespace
