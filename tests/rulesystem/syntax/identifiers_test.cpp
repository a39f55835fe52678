// The identifier vocabulary, from source text through the analyses of the
// front end to what a rule's consumer receives.

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <stdexcept>
#include <string>
#include <typeinfo>
#include <vector>

#include "platform/ast/descendant_walk.hpp"
#include "rulesystem/syntax/identifiers.hpp"
#include "rulesystem/syntax/symbols.hpp"
#include "tests/support/hits.hpp"

namespace {

using namespace ca::rulesystem;
using ca::core::ToskAnnotation;
using plexus::testing::analyse;
using plexus::testing::AnalysedSnippet;
using plexus::testing::ForeignAnalysis;
using plexus::testing::hitsOf;
using plexus::testing::Lines;

// Variables of every sort, a nested and a local function, an external, a
// field assignment.
constexpr char const* idsSource = R"(function [total, out] = ids(values, n)
global counter
persistent cache
total = sum(values) + counter + cache;
s.field = n;
out = helper(s) + nested(n) + undefinedThing;
    function r = nested(m)
        r = m * total;
    end
end

function h = helper(k)
h = k;
end
)";

struct QuestionCase {
  std::function<std::unique_ptr<Predicate<Identifier const&>>()> make;
  std::u16string description;
  std::string source;
  Lines kept;  // one identifier per symbol: its first occurrence
};

TEST(IdentifierSymbol, EachQuestionKeepsTheIdentifiersOfItsSymbolsAndPrintsItsDescription) {
  std::vector<QuestionCase> const cases = {
      {[] { return isVariable(); }, u"IsVariable", idsSource,
       {"1:11 total", "1:18 out", "1:29 values", "1:37 n", "2:8 counter", "3:12 cache", "5:1 s", "7:14 r", "7:25 m",
        "12:10 h", "12:21 k"}},
      {[] { return isInputVariable(); }, u"IsInputVariable", idsSource,
       {"1:29 values", "1:37 n", "7:25 m", "12:21 k"}},
      {[] { return isSharedVariable(); }, u"IsSharedVariable", idsSource, {"1:11 total"}},
      {[] { return isNestedFunction(); }, u"IsNestedFunction", idsSource, {"6:19 nested"}},
      {[] { return isLocalFunction(); }, u"IsLocalFunction", idsSource, {"6:7 helper"}},
      {[] { return isMainFunction(); }, u"IsMainFunction", idsSource, {"1:25 ids"}},
      {[] { return isExternal(); }, u"IsExternal", idsSource, {"4:9 sum", "6:31 undefinedThing"}},
      {[] { return isGlobalVariable(); }, u"IsGlobalVariable", idsSource, {"2:8 counter"}},
      {[] { return isPersistentVariable(); }, u"IsPersistentVariable", idsSource, {"3:12 cache"}},
      // The output is read and never assigned.
      {[] { return isVariableWithoutAnyDefinition(); }, u"isVariableWithoutDefinition",
       "function y = unset(x)\ndisp(y);\nend\n", {"1:10 y"}},
  };
  for (QuestionCase const& question : cases) {
    SCOPED_TRACE(fl::i18n::to_utf8(question.description));
    auto const kept = hitsOf(
        question.source,
        [&](auto& all) {
          auto producer = all.program | getAllSymbols() | getFirstSymbolOccurrence() | question.make();
          EXPECT_EQ(producer->detailsDescription(), question.description);
          return producer;
        },
        "ids.m");
    EXPECT_EQ(kept, question.kept);
  }
}

/// The name of the property `Side`: an identifier without a symbol.
Identifier const& propertyName(ca::Analysis const& analysis) {
  Identifier const* name = nullptr;
  lf::astapi::DescendantWalk<ca::astapi::CA> walk;
  walk.run(*analysis.getProgram(), [&](Node const& node) {
    if (auto const* property = lf::astapi::dynCast<Property>(node)) name = property->getName();
  });
  if (name == nullptr) throw std::logic_error("the snippet has no property");
  return *name;
}

TEST(IdentifierSymbol, AnIdentifierWithoutASymbolFailsEveryQuestionWithoutAFailure) {
  AnalysedSnippet const snippet = analyse("classdef Box\n    properties\n        Side\n    end\nend\n", "Box.m");
  Identifier const& side = propertyName(*snippet.analysis);
  ASSERT_EQ(snippet.analysis->getSymbolTable()->getSymbol(side), nullptr);
  for (auto make : {isVariable, isInputVariable, isSharedVariable, isNestedFunction, isLocalFunction, isMainFunction,
                    isExternal, isGlobalVariable, isPersistentVariable, isVariableWithoutAnyDefinition}) {
    EXPECT_FALSE(make()->test(side, *snippet.analysis));
  }
}

TEST(IdentifierSymbol, OneMemberIsOneStageAndEachMemberAnother) {
  AllNodes all;
  auto const identifiers = all.program | getAllSymbols() | getSymbolOccurences();
  EXPECT_EQ(identifiers | isVariable(), identifiers | isVariable());
  EXPECT_NE(identifiers | isVariable(), identifiers | isInputVariable());
  EXPECT_NE(identifiers | isVariable(), identifiers | isVariableWithoutAnyDefinition());
  EXPECT_EQ(identifiers | isVariableWithoutAnyDefinition(), identifiers | isVariableWithoutAnyDefinition());
}

TEST(Spelling, IsStringIdMatchesExactNamesInAnyOrderAsTwoStages) {
  AnalysedSnippet const snippet = analyse(idsSource, "ids.m");
  auto const spelled = [&](auto make) {
    return hitsOf(snippet, [&](auto& all) { return all.program | getAllSymbols() | getSymbolOccurences() | make(); });
  };
  Lines const valuesAndN = {"1:29 values", "4:13 values", "1:37 n", "5:11 n", "6:26 n"};
  EXPECT_EQ(spelled([] { return isStringId(std::vector<std::u16string>{u"values", u"n"}); }), valuesAndN);
  EXPECT_EQ(spelled([] { return isStringId(std::vector<std::u16string>{u"n", u"values"}); }), valuesAndN);
  EXPECT_EQ(spelled([] { return isStringId(u"total"); }), Lines({"1:11 total", "4:1 total", "8:17 total"}));
  EXPECT_EQ(spelled([] { return isStringId(u"Total"); }), Lines());
  EXPECT_EQ(spelled([] { return isStringId(std::vector<std::u16string>{}); }), Lines());

  AllNodes all;
  auto const identifiers = all.program | getAllSymbols() | getSymbolOccurences();
  auto const ordered = identifiers | isStringId(std::vector<std::u16string>{u"values", u"n"});
  EXPECT_EQ(ordered->detailsDescription(), u"IsStringId values n");
  EXPECT_NE(ordered, identifiers | isStringId(std::vector<std::u16string>{u"n", u"values"}));
  EXPECT_EQ(identifiers | isStringId(u"n"), identifiers | isStringId(std::vector<std::u16string>{u"n"}));
  EXPECT_EQ((identifiers | isStringId(std::vector<std::u16string>{}))->detailsDescription(), u"IsStringId");
}

TEST(Spelling, IsTextCaseInsensitiveIgnoresCaseButTellsStagesApartByIt) {
  AnalysedSnippet const snippet = analyse("abcde = 1;\nABCDE = 2;\nAbcdef = abcde;\n");
  Lines const bothSpellings = {"1:1 abcde", "3:10 abcde", "2:1 ABCDE"};
  for (std::u16string text : {u"abcde", u"ABCDE", u"aBcDe"}) {
    EXPECT_EQ(hitsOf(snippet,
                     [&](auto& all) {
                       return all.program | getAllSymbols() | getSymbolOccurences() | isTextCaseInsensitive(text);
                     }),
              bothSpellings);
  }
  AllNodes all;
  auto const identifiers = all.program | getAllSymbols() | getSymbolOccurences();
  auto const lower = identifiers | isTextCaseInsensitive(u"abcde");
  EXPECT_EQ(lower->detailsDescription(), u"IsTextCaseInsensitive abcde");
  EXPECT_EQ(lower, identifiers | isTextCaseInsensitive(u"abcde"));
  EXPECT_NE(lower, identifiers | isTextCaseInsensitive(u"ABCDE"));
}

TEST(Spelling, RestrictedExternalNamesPassOnTheSpellingAlone) {
  AnalysedSnippet const snippet =
      analyse("function dynamic(name)\neval(name);\nload = 3;\nx = feval;\nevaluate(load);\nend\n", "dynamic.m");
  auto const restricted = [](auto& all) {
    auto kept = all.program | getAllSymbols() | getFirstSymbolOccurrence() | isNameRestrictedExternal();
    EXPECT_EQ(kept->detailsDescription(), u"IsNameRestrictedExternal");
    return kept;
  };
  // `load` is a local variable here, and passes all the same.
  EXPECT_EQ(hitsOf(snippet, restricted), Lines({"2:1 eval", "3:1 load", "4:5 feval"}));
  EXPECT_EQ(hitsOf(snippet,
                   [](auto& all) {
                     return all.program | getAllSymbols() | getFirstSymbolOccurrence() | isNameRestrictedExternal() |
                            isVariable();
                   }),
            Lines({"3:1 load"}));
}

TEST(Length, StrictBoundsEitherWayRoundAndOneStagePerBound) {
  AnalysedSnippet const snippet = analyse("abcd = 1;\nabcde = 2;\nabcdef = 3;\n");
  auto const kept = [&](auto make) {
    return hitsOf(snippet,
                  [&](auto& all) { return all.program | getAllSymbols() | getFirstSymbolOccurrence() | make(); });
  };
  // Five units pass neither bound.
  EXPECT_EQ(kept([] { return identifierLength{} < 5; }), Lines({"1:1 abcd"}));
  EXPECT_EQ(kept([] { return 5 > identifierLength{}; }), Lines({"1:1 abcd"}));
  EXPECT_EQ(kept([] { return identifierLength{} > 5; }), Lines({"3:1 abcdef"}));
  EXPECT_EQ(kept([] { return 5 < identifierLength{}; }), Lines({"3:1 abcdef"}));

  AllNodes all;
  auto const identifiers = all.program | getAllSymbols() | getSymbolOccurences();
  auto const shorter = identifiers | (identifierLength{} < 5);
  auto const longer = identifiers | (identifierLength{} > 5);
  EXPECT_EQ(shorter->detailsDescription(), u"IdentifierLength < 5");
  EXPECT_EQ(longer->detailsDescription(), u"IdentifierLength > 5");
  EXPECT_EQ(shorter, identifiers | (5 > identifierLength{}));
  EXPECT_EQ(longer, identifiers | (5 < identifierLength{}));
  EXPECT_NE(shorter, longer);
  EXPECT_NE(shorter, identifiers | (identifierLength{} < 6));
  EXPECT_EQ((identifiers | (identifierLength{} > 1234567))->detailsDescription(), u"IdentifierLength > 1234567");
}

TEST(IdentifierUse, SignaturesAndDotAssignmentsAreTwoStagesThatPrintAlike) {
  AnalysedSnippet const snippet = analyse(idsSource, "ids.m");
  auto const used = [&](auto make) {
    return hitsOf(snippet, [&](auto& all) { return all.program | getAllSymbols() | getSymbolOccurences() | make(); });
  };
  EXPECT_EQ(used([] { return isUsedAsArgumentSignature(); }),
            Lines({"1:11 total", "1:18 out", "1:29 values", "1:37 n", "7:14 r", "7:25 m", "12:10 h", "12:21 k"}));
  EXPECT_EQ(used([] { return isUsedAsDotAssignment(); }), Lines({"5:1 s"}));

  AllNodes all;
  auto const identifiers = all.program | getAllSymbols() | getSymbolOccurences();
  auto const signature = identifiers | isUsedAsArgumentSignature();
  auto const dotAssignment = identifiers | isUsedAsDotAssignment();
  EXPECT_EQ(signature->detailsDescription(), u"IdUsePredicate");
  EXPECT_EQ(dotAssignment->detailsDescription(), u"IdUsePredicate");
  EXPECT_NE(signature, dotAssignment);
  EXPECT_EQ(signature, identifiers | isUsedAsArgumentSignature());
}

TEST(Occurrences, FromAnIdentifierToEveryOccurrenceOfItsSymbol) {
  EXPECT_EQ(hitsOf("x = 1;\ny = x + x;\n",
                   [](auto& all) {
                     auto occurrences = all.program | getAllSymbols() | getFirstSymbolOccurrence() | getOccurrences();
                     EXPECT_EQ(occurrences->detailsDescription(), u"GetOccurrences");
                     return occurrences;
                   }),
            Lines({"1:1 x", "2:5 x", "2:9 x", "2:1 y"}));
}

/// Annotates the identifiers spelled `obj` as object parameters.
class ObjectsNamedObj final : public ca::tosk::ToskAnalysis {
 public:
  bool hasAnnotation(Identifier const& identifier, ToskAnnotation annotation) const override {
    return annotation == ToskAnnotation::ObjectParameter && identifier.getStringId().getString() == u"obj";
  }
  bool isCustomAttribute(Attribute const&) const override { return false; }
  bool isLogicalCustomAttribute(Attribute const&) const override { return false; }
};

constexpr char const* methodSource = "function obj = withdraw(obj, amount)\nobj.Balance = obj.Balance - amount;\nend\n";

AnalysedSnippet analyseWithObjects(std::string source) {
  return analyse(std::move(source), "@Account/withdraw.m",
                 {{ca::tosk::ToskAnalysis::GetAnalysisId(), [](auto const&) {
                    return std::shared_ptr<void>(
                        std::shared_ptr<ca::tosk::ToskAnalysis>(std::make_shared<ObjectsNamedObj>()));
                  }}});
}

TEST(ToskAnnotation, KeepsTheIdentifiersTheClassObjectAnalysisAnnotates) {
  AnalysedSnippet const snippet = analyseWithObjects(methodSource);
  EXPECT_EQ(hitsOf(snippet,
                   [](auto& all) {
                     auto annotated = all.program | getAllSymbols() | getSymbolOccurences() |
                                      hasToskAnnotation{ToskAnnotation::ObjectParameter};
                     EXPECT_EQ(annotated->detailsDescription(), u"HasToskAnnotation ObjectParameter");
                     return annotated;
                   }),
            Lines({"1:10 obj", "1:25 obj", "2:1 obj", "2:15 obj"}));
  // The annotation asked for is the one the tag holds.
  auto const other = static_cast<ToskAnnotation>(7);
  EXPECT_EQ(hitsOf(snippet,
                   [&](auto& all) {
                     return all.program | getAllSymbols() | getSymbolOccurences() | hasToskAnnotation{other};
                   }),
            Lines());

  AllNodes all;
  auto const identifiers = all.program | getAllSymbols() | getSymbolOccurences();
  auto const objects = identifiers | hasToskAnnotation{ToskAnnotation::ObjectParameter};
  EXPECT_EQ(objects, identifiers | hasToskAnnotation{ToskAnnotation::ObjectParameter});
  auto const others = identifiers | hasToskAnnotation{other};
  EXPECT_NE(objects, others);
  EXPECT_EQ(others->detailsDescription(), u"HasToskAnnotation ToskAnnotation(7)");
}

TEST(IdentifierUse, TheUseAndClassObjectQuestionsNeedTheFrontEndsAnalysisAndTheOthersDoNot) {
  AnalysedSnippet const snippet = analyseWithObjects(methodSource);
  ForeignAnalysis const foreign(*snippet.analysis);
  auto const runOver = [&](auto pipeline) {
    AllNodes all;
    Lines lines;
    plexus::testing::recordHits(pipeline(all), lines, snippet.describer());
    // The program item alone: a whole run would also ask for the use-def
    // analysis, which only the front end's analysis makes.
    all.program.impl->produce(*foreign.getProgram(), foreign, nullptr);
    return lines;
  };
  EXPECT_THROW(runOver([](auto& all) {
                 return all.program | getAllSymbols() | getSymbolOccurences() | isUsedAsArgumentSignature();
               }),
               std::bad_cast);
  EXPECT_THROW(runOver([](auto& all) {
                 return all.program | getAllSymbols() | getSymbolOccurences() |
                        hasToskAnnotation{ToskAnnotation::ObjectParameter};
               }),
               std::bad_cast);
  EXPECT_EQ(runOver([](auto& all) {
              return all.program | getAllSymbols() | getFirstSymbolOccurrence() | isInputVariable();
            }),
            Lines({"1:10 obj", "1:30 amount"}));
}

}  // namespace
