// Attributes by the sort of value they take, attributes by name, and the
// entries of arguments blocks, from source text through the graph.

#include <gtest/gtest.h>

#include <map>
#include <memory>
#include <set>
#include <stdexcept>
#include <string>
#include <typeinfo>
#include <vector>

#include "platform/i18n/i18n.hpp"
#include "platform/tosk/tosk_analysis.hpp"
#include "rulesystem/syntax/attributes.hpp"
#include "tests/support/hits.hpp"
#include "tests/support/recorder.hpp"
#include "tests/support/test_analysis.hpp"
#include "tests/support/tree_maker.hpp"

namespace {

using namespace ca::rulesystem;
using plexus::testing::analyse;
using plexus::testing::AnalysedSnippet;
using plexus::testing::hitsOf;
using plexus::testing::Lines;
using plexus::testing::NaiveRoots;

std::string nameOf(Attribute const& attribute) { return fl::i18n::to_utf8(attribute.getName()->getStringId().getString()); }

/// A class-object analysis that knows the custom attributes of the test and
/// writes down every question it is asked.
class RecordingTosk final : public ca::tosk::ToskAnalysis {
 public:
  RecordingTosk(std::set<std::string> custom, std::set<std::string> logical)
      : custom_(std::move(custom)), logical_(std::move(logical)) {}

  bool hasAnnotation(Identifier const&, ca::core::ToskAnnotation) const override { return false; }
  bool isCustomAttribute(Attribute const& attribute) const override {
    asked.push_back("custom " + nameOf(attribute));
    return custom_.contains(nameOf(attribute));
  }
  bool isLogicalCustomAttribute(Attribute const& attribute) const override {
    asked.push_back("logical " + nameOf(attribute));
    return logical_.contains(nameOf(attribute));
  }

  mutable std::vector<std::string> asked;

 private:
  std::set<std::string> custom_;
  std::set<std::string> logical_;
};

AnalysedSnippet analyseWithTosk(std::string source, std::string const& path, std::shared_ptr<RecordingTosk> tosk) {
  return analyse(std::move(source), path,
                 {{ca::tosk::ToskAnalysis::GetAnalysisId(), [tosk](ca::clients::AnalysisImpl const&) {
                     return std::shared_ptr<void>(std::shared_ptr<ca::tosk::ToskAnalysis>(tosk));
                   }}});
}

TEST(Attributes, EachClassificationMatchesExactlyItsOwnValue) {
  std::string const source =
      "classdef (Sealed, InferiorClasses = {?Other}, TestTags = {'a'}) Account < handle\n"
      "    properties (Access = private, SetAccess = immutable, GetAccess = public)\n"
      "        Balance\n"
      "    end\n"
      "    methods (Static, ParameterCombination = 'pairwise')\n"
      "        function r = create(n)\n"
      "            r = n;\n"
      "        end\n"
      "    end\n"
      "    events (ListenAccess = public)\n"
      "        Changed\n"
      "    end\n"
      "end\n";
  auto const analysed = analyse(source, "Account.m");
  EXPECT_EQ(hitsOf(analysed, [](auto& all) { return all.attribute | isLabelAttribute(); }),
            Lines({"1:47 TestTags = {'a'}", "5:22 ParameterCombination = 'pairwise'"}));
  EXPECT_EQ(hitsOf(analysed, [](auto& all) { return all.attribute | isMetaClassAttribute(); }),
            Lines({"1:19 InferiorClasses = {?Other}"}));
  // The plain access modifier and the one that also takes `immutable` never
  // include each other.
  EXPECT_EQ(hitsOf(analysed, [](auto& all) { return all.attribute | isAccessAttributeWithoutImmutable(); }),
            Lines({"2:17 Access = private", "2:58 GetAccess = public", "10:13 ListenAccess = public"}));
  EXPECT_EQ(hitsOf(analysed, [](auto& all) { return all.attribute | isAccessAttributeWithImmutable(); }),
            Lines({"2:35 SetAccess = immutable"}));
}

TEST(Attributes, LogicalAndUnknownAskTheClassObjectAnalysisOnlyWhenTheTreeCannotTell) {
  std::string const source =
      "classdef (Sealed, Flag, Known, Mystery) Account < handle\n"
      "    methods\n"
      "        function deposit(obj, amount)\n"
      "            arguments (Bogus)\n"
      "                obj\n"
      "                amount double\n"
      "            end\n"
      "        end\n"
      "    end\n"
      "end\n";
  auto const tosk = std::make_shared<RecordingTosk>(std::set<std::string>{"Flag", "Known"},
                                                    std::set<std::string>{"Flag"});
  auto const analysed = analyseWithTosk(source, "Account.m", tosk);

  // Sealed is logical by the tree and is not asked about; Flag is logical by
  // the class-object analysis; Bogus, in an arguments block, is never asked.
  EXPECT_EQ(hitsOf(analysed, [](auto& all) { return all.attribute | isLogicalAttribute(); }),
            Lines({"1:11 Sealed", "1:19 Flag"}));
  EXPECT_EQ(tosk->asked, Lines({"logical Flag", "logical Known", "logical Mystery"}));

  // Only what the tree calls unknown is asked about; what the class-object
  // analysis knows as custom is not unknown; in an arguments block, unknown
  // is unknown at once.
  tosk->asked.clear();
  EXPECT_EQ(hitsOf(analysed, [](auto& all) { return all.attribute | isUnknownAttribute(); }),
            Lines({"1:32 Mystery", "4:24 Bogus"}));
  EXPECT_EQ(tosk->asked, Lines({"custom Flag", "custom Known", "custom Mystery"}));

  // Without an AnalysisImpl there is no class-object analysis to ask: the
  // cast fails, but only where the tree could not settle the answer.
  AnalysedSnippet const settledSnippet = analyse("classdef (Sealed) A\nend\n", "A.m");
  plexus::testing::ForeignAnalysis const settled(*settledSnippet.analysis);
  NaiveRoots roots;
  std::vector<std::string> passed;
  (roots.attribute | isLogicalAttribute()).each(settled, [&](Attribute const& a) { passed.push_back(nameOf(a)); });
  (roots.attribute | isUnknownAttribute()).each(settled, [&](Attribute const& a) { passed.push_back(nameOf(a)); });
  EXPECT_EQ(passed, Lines({"Sealed"}));
  AnalysedSnippet const unsettledSnippet = analyse("classdef (Mystery) A\nend\n", "A.m");
  plexus::testing::ForeignAnalysis const unsettled(*unsettledSnippet.analysis);
  EXPECT_THROW((roots.attribute | isLogicalAttribute()).each(unsettled, [](Attribute const&) {}), std::bad_cast);
  EXPECT_THROW((roots.attribute | isUnknownAttribute()).each(unsettled, [](Attribute const&) {}), std::bad_cast);
}

TEST(Attributes, DescriptionsAndIdentity) {
  AllNodes all;
  EXPECT_EQ(isLabelAttribute()->description(), u"IsAttributeClassification: Label");
  EXPECT_EQ(isMetaClassAttribute()->description(), u"IsAttributeClassification: MetaClass");
  EXPECT_EQ(isAccessAttributeWithoutImmutable()->description(), u"IsAttributeClassification: AccessModifier");
  EXPECT_EQ(isAccessAttributeWithImmutable()->description(),
            u"IsAttributeClassification: ImmutableAccessModifier");
  EXPECT_EQ((all.attribute | isLogicalAttribute())->detailsDescription(), u"IsLogicalAttribute");
  EXPECT_EQ((all.attribute | isUnknownAttribute())->detailsDescription(), u"IsUnknownAttribute");
  EXPECT_EQ((all.argument | isNamedArgumentByClass())->detailsDescription(), u"IsNamedArgumentByClass");
  EXPECT_EQ((all.argument | isNamedArgumentByField())->detailsDescription(), u"IsNamedArgumentByField");
  EXPECT_EQ((all.argument | isIgnoredArgument())->detailsDescription(), u"IsIgnoredArgument");
  // The values without a factory print too, and any other as new.
  EXPECT_EQ(detail::attributeClassificationName(2), u"Numeric");
  EXPECT_EQ(detail::attributeClassificationName(6), u"Text");
  EXPECT_EQ(detail::attributeClassificationName(8), u"New Attribute value");
  EXPECT_EQ(detail::attributeClassificationName(-1), u"New Attribute value");

  // One class, told apart by the value it holds.
  auto const label = isLabelAttribute();
  auto const metaClass = isMetaClassAttribute();
  EXPECT_EQ(typeid(*label), typeid(*metaClass));
  EXPECT_EQ(all.attribute | isLabelAttribute(), all.attribute | isLabelAttribute());
  EXPECT_NE(all.attribute | isLabelAttribute(), all.attribute | isMetaClassAttribute());
  EXPECT_NE(all.attribute | isAccessAttributeWithoutImmutable(), all.attribute | isAccessAttributeWithImmutable());
  EXPECT_EQ(all.attribute | isLogicalAttribute(), all.attribute | isLogicalAttribute());
  EXPECT_NE(all.attribute | isLogicalAttribute(), all.attribute | isUnknownAttribute());
  EXPECT_EQ(all.argument | isIgnoredArgument(), all.argument | isIgnoredArgument());
  EXPECT_NE(all.argument | isNamedArgumentByClass(), all.argument | isNamedArgumentByField());
}

TEST(Attributes, GetAttributesWithNameKeepsEveryExactMatchInOrder) {
  auto const analysed = analyse(
      "classdef Account\n"
      "    properties (Access = private, SetAccess = immutable, Access = public, access = protected)\n"
      "        Balance\n"
      "    end\n"
      "    properties\n"
      "        Owner\n"
      "    end\n"
      "end\n",
      "Account.m");
  std::vector<std::vector<std::string>> found;
  NaiveRoots roots;
  roots.propertiesBlock.each(*analysed.analysis, [&](PropertiesBlock const& block) {
    std::vector<std::string> names;
    auto const attributes = block.getAttributes();
    for (Attribute const* attribute :
         getAttributesWithName(boost::make_iterator_range(attributes.begin(), attributes.end()), u"Access")) {
      names.push_back(plexus::testing::textOf(analysed.source, attribute->getSourceRange()));
    }
    found.push_back(names);
  });
  EXPECT_EQ(found, (std::vector<std::vector<std::string>>{{"Access = private", "Access = public"}, {}}));
  EXPECT_TRUE(getAttributesWithName({}, u"Access").empty());
}

TEST(Attributes, ArgumentsNamedByFieldOrByClass) {
  std::string const source =
      "function out = validated(a, opts)\n"
      "arguments\n"
      "    a (1,:) double\n"
      "    opts.Scale (1,1) double = 1\n"
      "    opts.?matrixOptions\n"
      "end\n"
      "out = a * opts.Scale;\n"
      "end\n";
  EXPECT_EQ(hitsOf(source, [](auto& all) { return all.argument | isNamedArgumentByField(); }),
            Lines({"4:5 opts.Scale (1,1) double = 1"}));
  EXPECT_EQ(hitsOf(source, [](auto& all) { return all.argument | isNamedArgumentByClass(); }),
            Lines({"5:5 opts.?matrixOptions"}));
}

TEST(Attributes, AnIgnoredArgumentIsTheOneNamedByTheIgnoreMark) {
  // Built by hand: an entry named `~`, one with a name, and a malformed one
  // whose name holds neither.
  plexus::testing::TreeMaker t;
  auto* ignored = t.b.make<Argument>(t.b.make<InputArgument>(t.b.make<Ignored>()), nullptr, nullptr, nullptr, nullptr);
  auto* named = t.b.make<Argument>(t.input("x"), nullptr, nullptr, nullptr, nullptr);
  auto const function = [&](std::initializer_list<Argument const*> arguments) {
    auto* block = t.b.make<ArgumentsBlock>(t.list<Attribute>({}), t.list<Argument>(arguments));
    return t.b.make<Function>(t.id("f"), t.list<InputArgument>({}), t.list<Identifier>({}),
                              t.list<ArgumentsBlock>({block}), t.body({}));
  };
  auto const analysis = plexus::testing::makeAnalysis(t.program({function({named, ignored})}, ca::FileType::Function));

  AllNodes all;
  plexus::testing::Log log;
  all.argument | isIgnoredArgument() |
      std::make_shared<plexus::testing::Recorder<Argument const&>>(log, [&](Argument const& argument) {
        return std::string(&argument == ignored ? "~" : "named");
      });
  all.execute(*analysis, nullptr);
  EXPECT_EQ(log, plexus::testing::Log({"~"}));

  plexus::testing::TreeMaker m;
  auto* malformed = m.b.make<Argument>(m.b.make<InputArgument>(nullptr, nullptr), nullptr, nullptr, nullptr, nullptr);
  auto* block = m.b.make<ArgumentsBlock>(m.list<Attribute>({}), m.list<Argument>({malformed}));
  auto const broken = plexus::testing::makeAnalysis(m.program(
      {m.b.make<Function>(m.id("f"), m.list<InputArgument>({}), m.list<Identifier>({}),
                          m.list<ArgumentsBlock>({block}), m.body({}))},
      ca::FileType::Function));
  try {
    all.execute(*broken, nullptr);
    ADD_FAILURE() << "a malformed entry passed without a failure";
  } catch (std::logic_error const& failure) {
    EXPECT_STREQ(failure.what(), "InputArgument has neither an Identifier nor an Ignored");
  }
}

}  // namespace
