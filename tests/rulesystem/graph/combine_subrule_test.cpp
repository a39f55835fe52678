// Joining branches, and one branch asking what another delivered.

#include <gtest/gtest.h>

#include <memory>
#include <optional>
#include <stdexcept>
#include <string>

#include "rulesystem/execution/all_nodes.hpp"
#include "rulesystem/graph/combinators.hpp"
#include "rulesystem/graph/combine.hpp"
#include "rulesystem/graph/subrule.hpp"
#include "tests/support/recorder.hpp"
#include "tests/support/stages.hpp"
#include "tests/support/test_analysis.hpp"
#include "tests/support/tree_maker.hpp"

namespace {

using namespace ca::rulesystem;
using lf::astapi::NodeKind;
using plexus::testing::AcceptAll;
using plexus::testing::HasKind;
using plexus::testing::Log;
using plexus::testing::TreeMaker;

struct Roots {
  std::shared_ptr<RootProducer<Node const&>> a = std::make_shared<RootProducer<Node const&>>(u"A");
  std::shared_ptr<RootProducer<Node const&>> b = std::make_shared<RootProducer<Node const&>>(u"B");
  std::shared_ptr<RootProducer<Node const&>> c = std::make_shared<RootProducer<Node const&>>(u"C");
};

// One node and two analyses of it.
struct Runs {
  TreeMaker t;
  Row* row = t.b.make<Row>(t.exprs({}));
  std::shared_ptr<ca::astapi::SyntaxTree const> tree = t.program({t.stmt(row)});
  std::unique_ptr<ca::clients::AnalysisImpl> first = plexus::testing::makeAnalysis(tree);
  std::unique_ptr<ca::clients::AnalysisImpl> second = plexus::testing::makeAnalysis(tree);
};

TEST(Combine, SameSetGivesSameVertexAttachedOnceToEachInput) {
  Roots r;
  std::set<ProducerImpl<Node const&>*> const ab{r.a.get(), r.b.get()};
  auto first = combine(ab);
  auto again = combine(ab);
  EXPECT_EQ(first, again);
  EXPECT_EQ(r.a->consumers().size(), 1u);
  EXPECT_EQ(r.b->consumers().size(), 1u);
  EXPECT_EQ(first->kindDescription(), u"Combine");
  EXPECT_EQ(first->detailsDescription(), u"");
  EXPECT_EQ(dynamic_cast<CombineProducer<Node const&> const&>(*first).inputCount, 2u);

  auto abc = combine(std::set<ProducerImpl<Node const&>*>{r.a.get(), r.b.get(), r.c.get()});
  EXPECT_NE(abc, first);
  EXPECT_EQ(r.a->consumers().size(), 2u);

  // The handle form joins what rule code holds.
  Producer<Node const&> pa(r.a), pb(r.b);
  EXPECT_EQ(combine(std::set<Producer<Node const&>>{pa, pb}).impl, first);
}

TEST(CombineDeathTest, CheckedBuildsStopACombinationOfNoInputs) {
#ifndef PLEXUS_CHECKED
  GTEST_SKIP() << "only checked builds (debug, sanitizers) look for a combination of no inputs";
#else
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  EXPECT_DEATH(combine(std::set<ProducerImpl<Node const&>*>{}),
               "combine was given no inputs; a combination needs at least one");
#endif
}

TEST(Combine, AnItemFromTwoInputsReachesEachConsumerTwice) {
  Roots r;
  Runs runs;
  Log log;
  auto joined = combine(std::set<ProducerImpl<Node const&>*>{r.a.get(), r.b.get()});
  plexus::testing::record(Producer<Node const&>(joined), log, "joined");
  r.a->produce(*runs.row, *runs.first, nullptr);
  r.b->produce(*runs.row, *runs.first, nullptr);
  EXPECT_EQ(log, Log({"joined", "joined"}));
}

TEST(Subrule, SignalsAreUsedUpByTestsAndKeptPerAnalysis) {
  Roots r;
  Runs runs;
  SubrulePredicate<Node const&> watching{Producer<Node const&>(r.a)};
  auto& first = *runs.first;
  auto& second = *runs.second;
  EXPECT_FALSE(watching.test(Typeless{}, first));
  EXPECT_TRUE(watching.signals().matches.empty());

  r.a->produce(*runs.row, first, nullptr);
  EXPECT_TRUE(watching.test(Typeless{}, first));
  EXPECT_FALSE(watching.test(Typeless{}, first));

  for (int i = 0; i < 3; ++i) r.a->produce(*runs.row, first, nullptr);
  EXPECT_FALSE(watching.test(Typeless{}, second));
  EXPECT_TRUE(watching.test(Typeless{}, first));
  EXPECT_FALSE(watching.test(Typeless{}, first));

  EXPECT_EQ(watching.description(), u"Subrule");
  EXPECT_EQ(watching.signals().consumer->kindDescription(), u"SubruleConsumer");
  EXPECT_EQ(watching.signals().consumer->detailsDescription(), u"?");
}

TEST(Subrule, NegationAndDisjunctionStillUseTheSignalUp) {
  Roots r;
  Runs runs;
  auto const& analysis = *runs.first;
  auto negated = !subrule(Producer<Node const&>(r.a));
  EXPECT_TRUE(negated->test(Typeless{}, analysis));
  r.a->produce(*runs.row, analysis, nullptr);
  EXPECT_FALSE(negated->test(Typeless{}, analysis));
  EXPECT_TRUE(negated->test(Typeless{}, analysis));

  // With the subrule as the second operand and the first one true, the signal
  // is used up all the same.
  OrPredicate<Node const&, Node const&, Typeless> either(std::make_unique<AcceptAll>(),
                                                         subrule(Producer<Node const&>(r.b)));
  auto const& watching = dynamic_cast<SubrulePredicate<Node const&> const&>(either.second());
  r.b->produce(*runs.row, analysis, nullptr);
  EXPECT_EQ(watching.signals().matches.size(), 1u);
  EXPECT_TRUE(either.test(*runs.row, analysis));
  EXPECT_TRUE(watching.signals().matches.empty());
}

TEST(Subrule, EqualSubrulesShareAndTheDuplicateDetachesOnlyItsOwnConsumer) {
  Roots r;
  auto watched = Producer<Node const&>(r.a) | std::make_unique<HasKind>(NodeKind::Row);
  auto stage = r.b->where<Typeless>(subrule(watched));
  ASSERT_EQ(watched->consumers().size(), 1u);
  ConsumerBase const* kept = watched->consumers()[0];

  auto again = r.b->where<Typeless>(subrule(watched));
  EXPECT_EQ(stage, again);
  EXPECT_EQ(watched->consumers(), std::vector<ConsumerBase const*>{kept});

  // A subrule on another producer is another stage.
  auto other = r.b->where<Typeless>(subrule(Producer<Node const&>(r.c)));
  EXPECT_NE(stage, other);

  // Destroying the stage's owner detaches its consumer.
  auto lone = std::make_unique<SubrulePredicate<Node const&>>(Producer<Node const&>(r.c));
  EXPECT_EQ(r.c->consumers().size(), 2u);
  lone.reset();
  EXPECT_EQ(r.c->consumers().size(), 1u);
}

TEST(Subrule, AStageWithASubruleDependsOnTheWatchedBranch) {
  Roots r;
  auto watched = Producer<Node const&>(r.a) | std::make_unique<HasKind>(NodeKind::Row);
  auto testing = Producer<Node const&>(r.a) | (std::make_unique<AcceptAll>() || subrule(watched));
  auto const* watchedStage = dynamic_cast<ConsumerBase const*>(watched.impl.get());
  auto const* testingStage = dynamic_cast<ConsumerBase const*>(testing.impl.get());
  EXPECT_TRUE(testingStage->dependsOn(watchedStage));
  EXPECT_FALSE(watchedStage->dependsOn(testingStage));
}

TEST(Subrule, AnswersAboutTheItemAtHandDuringAWalk) {
  // Rows that hold a number: the subrule watches rows that pass "has a number
  // element"; the testing stage is attached to the row root after it.
  TreeMaker t;
  auto* numbers = t.b.make<Row>(t.exprs({t.num(1)}));
  auto* names = t.b.make<Row>(t.exprs({t.id("x")}));
  auto* mixed = t.b.make<Row>(t.exprs({t.id("y"), t.num(2)}));
  auto analysis = plexus::testing::makeAnalysis(t.program({t.stmt(numbers), t.stmt(names), t.stmt(mixed)}));

  AllNodes all;
  Log log;
  auto withNumbers = all.row | std::make_unique<plexus::testing::HasNumber>();
  auto tested = all.row | subrule(withNumbers);
  tested | std::make_shared<plexus::testing::Recorder<Row const&>>(log, [&](Row const& row) {
    return &row == numbers ? std::string("numbers") : &row == mixed ? std::string("mixed") : std::string("names");
  });
  all.execute(*analysis, nullptr);
  EXPECT_EQ(log, Log({"numbers", "mixed"}));
}

// A signal that no stage tested during a run ends with the run, also when the
// run ends by an exception: an analysis made later at the same address must
// not be answered true.
TEST(Subrule, SignalsPendingWhenARunEndsAreDropped) {
  TreeMaker t;
  std::shared_ptr<ca::astapi::SyntaxTree const> tree = t.program({t.stmt(t.b.make<Row>(t.exprs({})))});
  AllNodes all;
  auto rows = all.row | std::make_unique<AcceptAll>();
  SubrulePredicate<Row const&> watching(rows);  // delivers, but nothing tests it

  std::optional<ca::clients::AnalysisImpl> slot;
  slot.emplace(tree, std::make_shared<plexus::testing::TestProvider>());
  ca::Analysis const* const address = &*slot;
  all.execute(*slot, nullptr);
  EXPECT_TRUE(watching.signals().matches.empty());
  slot.reset();
  slot.emplace(tree, std::make_shared<plexus::testing::TestProvider>());
  ASSERT_EQ(&*slot, address);
  EXPECT_FALSE(watching.test(Typeless{}, *slot)) << "a new analysis inherited a signal of a freed one";

  // Ended by an exception: a consumer after the subrule's branch throws.
  all.row | std::make_shared<plexus::testing::Thrower<Row const&>>();
  EXPECT_THROW(all.execute(*slot, nullptr), std::runtime_error);
  EXPECT_TRUE(watching.signals().matches.empty());

  // Outside a run the signal stays until tested, as it always did.
  auto const& row = *static_cast<ExpressionStatement const&>(*slot->getProgram()->getBody()[0]).getExpression();
  rows.impl->produce(static_cast<Row const&>(row), *slot, nullptr);
  EXPECT_FALSE(watching.signals().matches.empty());
  EXPECT_TRUE(watching.test(Typeless{}, *slot));
}

}  // namespace
