// The symbol vocabulary, from source text through the name resolution of the
// front end to what a rule's consumer receives.

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <set>
#include <string>
#include <vector>

#include "rulesystem/graph/switch.hpp"
#include "rulesystem/syntax/identifiers.hpp"
#include "rulesystem/syntax/symbols.hpp"
#include "tests/support/hits.hpp"

namespace {

using namespace ca::rulesystem;
using ca::nameresolution::SymbolTableEntry;
using plexus::testing::analyse;
using plexus::testing::AnalysedSnippet;
using plexus::testing::hitsOf;
using plexus::testing::Lines;

// A function file with variables of every sort, a nested and a local
// function, and two externals (`disp`, `w`).
constexpr char const* sortsSource = R"(function [a, b] = sorts(x)
global g
persistent p
a = x + g + p;
b = inner(a);
disp(b);
    function r = inner(v)
        r = v + a + w;
    end
end

function helper()
end
)";

// A class file: the class is also its constructor; `area` is declared only.
constexpr char const* classSource = R"(classdef Shape < handle
    properties
        Side
    end
    methods
        function obj = Shape(s)
            obj.Side = s;
        end
        a = area(obj)
    end
end
)";

struct SortCase {
  std::function<std::unique_ptr<Predicate<ca::Symbol const&>>()> make;
  std::u16string description;
  std::string source;
  std::string path;
  Lines kept;
};

TEST(SymbolSorts, EachQuestionKeepsItsSymbolsAndPrintsItsOwnDescription) {
  std::vector<SortCase> const cases = {
      {[] { return isSymbolVariable(); }, u"IsSymbolVariable", sortsSource, "sorts.m",
       {"1:11 a", "1:14 b", "1:25 x", "2:8 g", "3:12 p", "7:14 r", "7:24 v"}},
      {[] { return isSymbolSharedVariable(); }, u"IsSharedSymbolVariable", sortsSource, "sorts.m", {"1:11 a"}},
      {[] { return isSymbolOutputVariable(); }, u"IsSymbolOutputVariable", sortsSource, "sorts.m",
       {"1:11 a", "1:14 b", "7:14 r"}},
      {[] { return isSymbolFunction(); }, u"IsSymbolFunction", sortsSource, "sorts.m",
       {"1:19 sorts", "5:5 inner", "12:10 helper"}},
      {[] { return isSymbolExternal(); }, u"IsSymbolExternal", sortsSource, "sorts.m", {"6:1 disp", "8:21 w"}},
      {[] { return isSymbolGlobalVariable(); }, u"IsSymbolGlobalVariable", sortsSource, "sorts.m", {"2:8 g"}},
      {[] { return isSymbolPersistentVariable(); }, u"IsSymbolPersistentVariable", sortsSource, "sorts.m",
       {"3:12 p"}},
      // An output that is read but never assigned.
      {[] { return isSymbolVariableUse(); }, u"IsSymbolVariableUse", "function y = unset(x)\ndisp(y);\nend\n",
       "unset.m", {"1:10 y"}},
      {[] { return isSymbolClass(); }, u"IsSymbolClass", classSource, "Shape.m", {"1:10 Shape"}},
      {[] { return isSymbolMethod(); }, u"IsSymbolMethod", classSource, "Shape.m", {"1:10 Shape", "9:13 area"}},
      {[] { return isSymbolLastOutputVariable(); }, u"IsSymbolLastOutputVariable", sortsSource, "sorts.m",
       {"1:14 b", "7:14 r"}},
  };
  for (SortCase const& sort : cases) {
    SCOPED_TRACE(fl::i18n::to_utf8(sort.description));
    auto const kept = hitsOf(analyse(sort.source, sort.path), [&](auto& all) {
      auto producer = all.program | getAllSymbols() | sort.make();
      EXPECT_EQ(producer->detailsDescription(), sort.description);
      return producer;
    });
    EXPECT_EQ(kept, sort.kept);
  }
}

TEST(SymbolSorts, OneQuestionIsOneStageWhateverTheRuleAndTwoQuestionsAreTwo) {
  AllNodes all;
  auto const symbols = all.program | getAllSymbols();
  EXPECT_EQ(symbols, all.program | getAllSymbols());
  EXPECT_EQ(symbols | isSymbolVariable(), symbols | isSymbolVariable());
  EXPECT_NE(symbols | isSymbolVariable(), symbols | isSymbolClass());
  EXPECT_NE(symbols | isSymbolOutputVariable(), symbols | isSymbolLastOutputVariable());
  EXPECT_EQ(symbols | isSymbolLastOutputVariable(), symbols | isSymbolLastOutputVariable());
  EXPECT_EQ(symbols | getSymbolOccurences(), symbols | getSymbolOccurences());
  EXPECT_EQ(symbols | getFirstSymbolOccurrence(), symbols | getFirstSymbolOccurrence());
}

TEST(LastOutputVariable, OnlyTheLastOfTheOutputListPassesWhereverTheVariablesAreUsed) {
  auto const lastOutputs = [](auto& all) { return all.program | getAllSymbols() | isSymbolLastOutputVariable(); };
  // Later uses, in any order, change nothing; an input does not pass, not
  // even when it is also the output.
  EXPECT_EQ(hitsOf(R"(function [a, b] = pair(c)
b = c;
a = b;
end
function [x, varargout] = rest()
x = 1; varargout = {};
end
function obj = self(obj)
end
)",
                   lastOutputs, "pair.m"),
            Lines({"1:14 b", "5:14 varargout", "8:10 obj"}));
  // The outputs of a constructor and of a method that is only declared.
  EXPECT_EQ(hitsOf(classSource, lastOutputs, "Shape.m"), Lines({"6:18 obj", "9:9 a"}));
  // A nested function's output that the enclosing function shares first
  // occurs in the enclosing body: only the first occurrence counts, and it
  // stands in no output list.
  EXPECT_EQ(hitsOf("function outer\ny = 1;\n    function y = inner\n    end\nend\n", lastOutputs, "outer.m"), Lines());
}

TEST(AllSymbols, TheWholeTableForEachProgramItemAndNothingForAnEmptyTable) {
  EXPECT_EQ(hitsOf("% only a comment\n", [](auto& all) { return all.program | getAllSymbols(); }), Lines());

  AnalysedSnippet const snippet = analyse("x = f;\n");
  AllNodes all;
  Lines lines;
  auto const symbols = all.program | getAllSymbols();
  EXPECT_EQ(symbols->detailsDescription(), u"GetAllSymbols");
  plexus::testing::recordHits(symbols, lines, snippet.describer());
  all.program.impl->produce(*snippet.analysis->getProgram(), *snippet.analysis, nullptr);
  all.program.impl->produce(*snippet.analysis->getProgram(), *snippet.analysis, nullptr);
  EXPECT_EQ(lines, Lines({"1:1 x", "1:5 f", "1:1 x", "1:5 f"}));
}

TEST(SymbolOccurrences, EveryOccurrenceInOrderOrTheFirstOnly) {
  AnalysedSnippet const snippet = analyse("x = 1;\ny = x + x;\n");
  EXPECT_EQ(hitsOf(snippet,
                   [](auto& all) {
                     auto occurrences = all.program | getAllSymbols() | getSymbolOccurences();
                     EXPECT_EQ(occurrences->detailsDescription(), u"GetSymbolOccurrences");
                     return occurrences;
                   }),
            Lines({"1:1 x", "2:5 x", "2:9 x", "2:1 y"}));
  EXPECT_EQ(hitsOf(snippet,
                   [](auto& all) {
                     auto first = all.program | getAllSymbols() | getFirstSymbolOccurrence();
                     EXPECT_EQ(first->detailsDescription(), u"getFirstSymbolOccurrence");
                     return first;
                   }),
            Lines({"1:1 x", "2:1 y"}));

  // An empty sink fails at the first occurrence, not before: a symbol
  // without any does not fail.
  ca::Symbol const& x = *snippet.analysis->getSymbolTable()->getSymbols().front();
  EXPECT_THROW(getSymbolOccurences()->select(x, *snippet.analysis, {}), std::bad_function_call);
  SymbolTableEntry const unseen(ca::astapi::StringId(u"unseen"), SymbolTableEntry::External);
  EXPECT_NO_THROW(getSymbolOccurences()->select(unseen, *snippet.analysis, {}));
}

TEST(SymbolName, NamesMeetInOneSwitchAndMatchExactly) {
  AnalysedSnippet const snippet = analyse("x = 1;\nX = 2;\ny = x + X;\n");
  EXPECT_EQ(hitsOf(snippet, [](auto& all) { return all.program | getAllSymbols() | isSymbolName(u"x"); }),
            Lines({"1:1 x"}));
  EXPECT_EQ(hitsOf(snippet,
                   [](auto& all) {
                     return all.program | getAllSymbols() | isSymbolName(std::set<std::u16string>{u"X", u"y"});
                   }),
            Lines({"2:1 X", "3:1 y"}));

  AllNodes all;
  auto const symbols = all.program | getAllSymbols();
  auto const x = symbols | isSymbolName(u"x");
  EXPECT_EQ(x, symbols | isSymbolName(std::set<std::u16string>{u"x"}));
  auto const both = symbols | isSymbolName(std::set<std::u16string>{u"x", u"y"});
  EXPECT_NE(both, x);
  EXPECT_EQ(both, symbols | isSymbolName(std::set<std::u16string>{u"y", u"x"}));
  // One switch on the name below the symbols, with a case for each name.
  ASSERT_EQ(symbols->consumers().size(), 1u);
  using NameSwitch = Switch<ca::Symbol const&, ca::Symbol const&, std::u16string>;
  auto const* names = dynamic_cast<NameSwitch const*>(symbols->consumers().front());
  ASSERT_NE(names, nullptr);
  EXPECT_EQ(names->detailsDescription(), u"GetSymbolName");
  EXPECT_EQ(names->cases.size(), 2u);

  // No name, no case: nothing passes.
  auto const none = isSymbolName(std::set<std::u16string>{});
  EXPECT_TRUE(none->getKeys().empty());
  EXPECT_EQ(plexus::testing::naiveHitsOf(snippet,
                                         [](auto& roots) {
                                           return roots.program | getAllSymbols() |
                                                  isSymbolName(std::set<std::u16string>{});
                                         }),
            Lines());
}

/// A symbol of a table of another make: a name and a classification of its
/// own, given by overriding the entry's virtual questions.
class RenamedVariable final : public SymbolTableEntry {
 public:
  RenamedVariable() : SymbolTableEntry(ca::astapi::StringId(u"stored"), SymbolTableEntry::External) {}
  ca::astapi::TextView getName() const override { return ca::astapi::toTextView(u"shown"); }
  bool isVariable() const override { return true; }
};

class TableOfOneSymbol final : public ca::nameresolution::SymbolTable {
 public:
  SymbolTableEntry const* getSymbol(Identifier const&) const override { return nullptr; }
  std::vector<SymbolTableEntry const*> getSymbols() const override { return {&symbol}; }

  RenamedVariable symbol;
};

TEST(SymbolName, AskedOfTheSymbolsOwnVirtualQuestions) {
  AnalysedSnippet const snippet =
      analyse("z = 1;\n", "t.m", {{ca::nameresolution::SymbolTable::GetAnalysisId(), [](auto const&) {
                                     return std::shared_ptr<void>(std::shared_ptr<ca::nameresolution::SymbolTable>(
                                         std::make_shared<TableOfOneSymbol>()));
                                   }}});
  EXPECT_EQ(hitsOf(snippet, [](auto& all) { return all.program | getAllSymbols() | isSymbolName(u"shown"); }),
            Lines({"-:- shown"}));
  EXPECT_EQ(hitsOf(snippet, [](auto& all) { return all.program | getAllSymbols() | isSymbolName(u"stored"); }),
            Lines());
  EXPECT_EQ(hitsOf(snippet, [](auto& all) { return all.program | getAllSymbols() | isSymbolVariable(); }),
            Lines({"-:- shown"}));
  EXPECT_EQ(hitsOf(snippet, [](auto& all) { return all.program | getAllSymbols() | isSymbolExternal(); }),
            Lines({"-:- shown"}));
}

}  // namespace
