// Many rules asking one question with different keys cost one key and one
// lookup per item.

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <ostream>
#include <stdexcept>
#include <string>

#include "rulesystem/execution/all_nodes.hpp"
#include "rulesystem/graph/switch.hpp"
#include "tests/support/fragile_key.hpp"
#include "tests/support/recorder.hpp"
#include "tests/support/switchables.hpp"
#include "tests/support/test_analysis.hpp"
#include "tests/support/tree_maker.hpp"

namespace {

using namespace ca::rulesystem;
using plexus::testing::isFieldNamed;
using plexus::testing::Log;
using plexus::testing::TreeMaker;
using FieldSwitch = Switch<Field const&, Field const&, ca::astapi::StringId>;

// s.a; s.b; s.c; s.d as statements.
struct Fields {
  TreeMaker t;
  std::unique_ptr<ca::clients::AnalysisImpl> analysis;
  Fields() {
    std::vector<Node*> statements;
    for (char const* name : {"a", "b", "c", "d"}) {
      statements.push_back(t.stmt(t.b.make<DotOperation>(t.id("s"), t.field(name))));
    }
    analysis = plexus::testing::makeAnalysis(
        t.b.finish(t.b.make<Program>(t.b.text(u"f.m"), t.b.list<Node>(statements))));
  }
};

std::string nameOf(Field const& field) {
  return fl::i18n::to_utf8(field.getStringId().getString());
}

// The switch among the consumers of the field root; there is at most one.
FieldSwitch const* switchOf(AllNodes const& all) {
  FieldSwitch const* found = nullptr;
  for (ConsumerBase const* consumer : all.field->consumers()) {
    if (auto const* branching = dynamic_cast<FieldSwitch const*>(consumer)) {
      EXPECT_EQ(found, nullptr) << "two switches on one key";
      found = branching;
    }
  }
  EXPECT_NE(found, nullptr);
  return found;
}

TEST(Switch, OneKeyGivesTheCaseItselfAndAskingAgainGivesTheSameCase) {
  AllNodes all;
  auto first = all.field | isFieldNamed({u"a"});
  auto second = all.field | isFieldNamed({u"a"});
  EXPECT_EQ(first, second);
  auto branching = switchOf(all);
  EXPECT_EQ(branching->cases.size(), 1u);
  EXPECT_EQ(first->kindDescription(), u"Case");
  EXPECT_EQ(first->detailsDescription(), u"a");
  EXPECT_EQ(branching->kindDescription(), u"Switch");
  EXPECT_EQ(branching->detailsDescription(), u"FieldName");
}

TEST(Switch, ItemsGoToTheOneCaseOfTheirKeyAndOthersEndSilently) {
  Fields fields;
  AllNodes all;
  Log log;
  int keyEvaluations = 0;
  for (char16_t const* name : {u"a", u"b", u"x"}) {
    auto branch = all.field | isFieldNamed({name}, &keyEvaluations);
    branch | std::make_shared<plexus::testing::Recorder<Field const&>>(
                 log, [](Field const& f) { return "case got " + nameOf(f); });
  }
  Profiler profiler;
  MessageHelper helper{nullptr, &profiler};
  all.execute(*fields.analysis, &helper);
  EXPECT_EQ(log, Log({"case got a", "case got b"}));
  // One key per item, whatever the number of cases.
  EXPECT_EQ(keyEvaluations, 4);
  // Items without a case are counted nowhere below the switch.
  auto branching = switchOf(all);
  EXPECT_EQ(profiler.numConsumed.at(branching), 4);
  int produced = 0;
  for (auto const& [key, branch] : branching->cases) produced += profiler.numProduced.count(branch.get()) ? 1 : 0;
  EXPECT_EQ(produced, 2);
}

TEST(Switch, SeveralKeysMeetInOneCombinationSharedWithTheCasesAlone) {
  Fields fields;
  AllNodes all;
  auto ab = all.field | isFieldNamed({u"a", u"b"});
  auto abAgain = all.field | isFieldNamed({u"b", u"a"});
  auto aAlone = all.field | isFieldNamed({u"a"});
  auto ac = all.field | isFieldNamed({u"a", u"c"});
  EXPECT_EQ(ab, abAgain);
  EXPECT_EQ(ab->kindDescription(), u"Combine");
  EXPECT_NE(ab, ac);

  auto branching = switchOf(all);
  ASSERT_EQ(branching->cases.size(), 3u);
  EXPECT_EQ(branching->extraChildren().size(), 3u);
  auto caseA = branching->cases.at(ca::astapi::StringId(u"a"));
  EXPECT_EQ(aAlone.impl, caseA);
  // Case a feeds both combinations, once each.
  EXPECT_EQ(caseA->consumers().size(), 2u);
  auto const* combinationAB = dynamic_cast<ConsumerBase const*>(ab.impl.get());
  auto const* combinationAC = dynamic_cast<ConsumerBase const*>(ac.impl.get());
  EXPECT_EQ(caseA->consumers(), (std::vector<ConsumerBase const*>{combinationAB, combinationAC}));

  Log log;
  ab | std::make_shared<plexus::testing::Recorder<Field const&>>(log, [](Field const& f) { return "ab " + nameOf(f); });
  ac | std::make_shared<plexus::testing::Recorder<Field const&>>(log, [](Field const& f) { return "ac " + nameOf(f); });
  all.execute(*fields.analysis, nullptr);
  EXPECT_EQ(log, Log({"ab a", "ac a", "ab b", "ac c"}));
}

TEST(Switch, CaseDependsOnWhatItsSwitchDependsOn) {
  AllNodes all;
  auto other = all.field | std::make_unique<plexus::testing::FieldName>();
  auto branch = all.field | isFieldNamed({u"a"});
  auto const& caseProducer = dynamic_cast<ConsumerDependent const&>(*branch.impl);
  EXPECT_TRUE(caseProducer.dependsOn(switchOf(all)));
  EXPECT_FALSE(caseProducer.dependsOn(dynamic_cast<ConsumerBase const*>(other.impl.get())));

  // And a stage below the case depends on the switch through it.
  Log log;
  auto below = plexus::testing::record(branch, log, "below");
  EXPECT_TRUE(below->dependsOn(switchOf(all)));
}

TEST(Switch, EqualTransformKeyingAnotherKindOfSwitchGivesNoSwitch) {
  AllNodes all;
  auto fieldSwitch =
      all.field->getSwitch<Field const&, ca::astapi::StringId>(std::make_unique<plexus::testing::FieldName>());
  ASSERT_NE(fieldSwitch, nullptr);
  EXPECT_EQ(fieldSwitch, (all.field->getSwitch<Field const&, ca::astapi::StringId>(
                             std::make_unique<plexus::testing::FieldName>())));
  // Same transform, other output type: a different switch class, not there.
  auto mismatched =
      all.field->getSwitch<Node const&, ca::astapi::StringId>(std::make_unique<plexus::testing::FieldName>());
  EXPECT_EQ(mismatched, nullptr);
  EXPECT_EQ(all.field->consumers().size(), 1u);
}

TEST(Switch, CasesDescribeTheirKeysAsText) {
  Switch<Node const&, Node const&, lf::astapi::NodeKind> byKind(nullptr);
  EXPECT_EQ(byKind.getCase(lf::astapi::NodeKind::Field)->detailsDescription(), u"Field");
  Switch<Node const&, Node const&, std::u16string> byText(nullptr);
  EXPECT_EQ(byText.getCase(u"gr\u00fc\u00dfe")->detailsDescription(), u"gr\u00fc\u00dfe");
  Switch<Node const&, Node const&, int> byNumber(nullptr);
  EXPECT_EQ(byNumber.getCase(12345)->detailsDescription(), u"12345");
  EXPECT_EQ(byNumber.getCases({1, 2, 12345}).size(), 3u);
  EXPECT_EQ(byNumber.cases.size(), 3u);
}

TEST(SwitchDeathTest, CheckedBuildsStopASwitchableWithoutKeys) {
#ifndef PLEXUS_CHECKED
  GTEST_SKIP() << "only checked builds (debug, sanitizers) look for a switchable without keys";
#else
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  EXPECT_DEATH(
      {
        AllNodes all;
        all.field | isFieldNamed({});
      },
      "plexus::testing::IsFieldNamed gave no keys; a Switchable selects at least one");
#endif
}

using plexus::testing::ConstantKey;
using plexus::testing::FragileKey;

// A case that could not be made leaves no trace in the switch: the next item
// with its key finds no case rather than a null one.
TEST(Switch, ACaseThatFailsToBeMadeLeavesNoKeyBehind) {
  Fields f;
  auto const& statement = static_cast<ExpressionStatement const&>(*f.analysis->getProgram()->getBody()[0]);
  Field const& field = static_cast<DotOperation const&>(*statement.getExpression()).getField();
  for (int failingCopy : {1, 2, 3}) {
    Switch<Field const&, Field const&, FragileKey> branching(std::make_unique<ConstantKey>());
    FragileKey const key(7);
    FragileKey::copiesUntilFailure = failingCopy;
    try {
      branching.getCase(key);
    } catch (std::runtime_error const&) {
    }
    FragileKey::copiesUntilFailure = 0;
    for (auto const& [k, branch] : branching.cases) EXPECT_NE(branch, nullptr) << "failing copy " << failingCopy;
    branching.consume(field, *f.analysis, nullptr);  // must not meet a null case
  }
}

}  // namespace
