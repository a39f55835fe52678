// Negation, disjunction, item-free predicates and the order on member pointers.

#include <gtest/gtest.h>

#include <memory>
#include <thread>
#include <typeinfo>

#include "rulesystem/execution/all_nodes.hpp"
#include "rulesystem/graph/combinators.hpp"
#include "rulesystem/graph/method_comparator.hpp"
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

bool equal(PredicateBase const& a, PredicateBase const& b) {
  return !PredicateCompare()(&a, &b) && !PredicateCompare()(&b, &a);
}

// A node and an analysis to test predicates on.
struct Item {
  TreeMaker t;
  Row* row = t.b.make<Row>(t.exprs({}));
  std::unique_ptr<ca::clients::AnalysisImpl> analysis = plexus::testing::makeAnalysis(t.program({t.stmt(row)}));
};

TEST(Not, NegatesDescribesAndComparesThroughItsOperand) {
  Item item;
  auto notRow = !std::make_unique<HasKind>(NodeKind::Row);
  EXPECT_FALSE(notRow->test(*item.row, *item.analysis));
  EXPECT_TRUE((!std::make_unique<HasKind>(NodeKind::Matrix))->test(*item.row, *item.analysis));
  EXPECT_EQ(notRow->description(), u"!( HasKind )");

  EXPECT_TRUE(equal(*notRow, *!std::make_unique<HasKind>(NodeKind::Row)));
  EXPECT_FALSE(equal(*notRow, *!std::make_unique<HasKind>(NodeKind::Matrix)));
  EXPECT_FALSE(equal(*notRow, *std::make_unique<HasKind>(NodeKind::Row)));

  // A double negation is two nested negations, not simplified away.
  auto twice = !(!std::make_unique<HasKind>(NodeKind::Row));
  EXPECT_EQ(twice->description(), u"!( !( HasKind ) )");
  EXPECT_TRUE(twice->test(*item.row, *item.analysis));
  auto const& outer = dynamic_cast<NotPredicate<Node const&> const&>(*twice);
  EXPECT_NE(dynamic_cast<NotPredicate<Node const&> const*>(&outer.operand()), nullptr);
}

TEST(Or, OperandOrderIsFixedByClassSoBothSpellingsShareOneStage) {
  auto ab = std::make_unique<AcceptAll>() || std::make_unique<HasKind>(NodeKind::Row);
  auto ba = std::make_unique<HasKind>(NodeKind::Row) || std::make_unique<AcceptAll>();
  EXPECT_TRUE(equal(*ab, *ba));
  bool const acceptAllFirst = typeid(AcceptAll).before(typeid(HasKind));
  EXPECT_EQ(ab->description(), acceptAllFirst ? u"(AcceptAll) || (HasKind)" : u"(HasKind) || (AcceptAll)");

  auto root = std::make_shared<RootProducer<Node const&>>(u"Root");
  auto first = root->where<Node const&>(std::move(ab));
  auto second = root->where<Node const&>(std::move(ba));
  EXPECT_EQ(first, second);
  EXPECT_EQ(root->consumers().size(), 1u);
}

TEST(Or, SameClassOperandsShareOnlyWhenEqual) {
  auto rowOrMatrix = std::make_unique<HasKind>(NodeKind::Row) || std::make_unique<HasKind>(NodeKind::Matrix);
  auto matrixOrRow = std::make_unique<HasKind>(NodeKind::Matrix) || std::make_unique<HasKind>(NodeKind::Row);
  auto rowOrMatrixAgain = std::make_unique<HasKind>(NodeKind::Row) || std::make_unique<HasKind>(NodeKind::Matrix);
  EXPECT_FALSE(equal(*rowOrMatrix, *matrixOrRow));
  EXPECT_TRUE(equal(*rowOrMatrix, *rowOrMatrixAgain));
  auto rowOrRow = std::make_unique<HasKind>(NodeKind::Row) || std::make_unique<HasKind>(NodeKind::Row);
  EXPECT_TRUE(equal(*rowOrRow, *(std::make_unique<HasKind>(NodeKind::Row) || std::make_unique<HasKind>(NodeKind::Row))));
}

TEST(Or, BothOperandsAreTestedForEveryItem) {
  Item item;
  int firstCalls = 0, secondCalls = 0;
  auto either = std::make_unique<HasKind>(NodeKind::Row, &firstCalls) ||
                std::make_unique<HasKind>(NodeKind::Matrix, &secondCalls);
  EXPECT_TRUE(either->test(*item.row, *item.analysis));
  EXPECT_EQ(firstCalls + secondCalls, 2);
  EXPECT_EQ(firstCalls, 1);
  EXPECT_FALSE((std::make_unique<HasKind>(NodeKind::Field) || std::make_unique<HasKind>(NodeKind::Matrix))
                   ->test(*item.row, *item.analysis));
}

TEST(Or, NullOperandRaisesBadTypeid) {
  EXPECT_THROW(std::unique_ptr<AcceptAll>() || std::make_unique<AcceptAll>(), std::bad_typeid);
  EXPECT_THROW(std::make_unique<AcceptAll>() || std::unique_ptr<HasKind>(), std::bad_typeid);
}

using plexus::testing::IsScript;

TEST(Typeless, ItemFreePredicatesFilterATypedPipelineByTheAnalysis) {
  AllNodes all;
  Log log;
  auto scriptRows = all.row | std::make_unique<IsScript>();
  EXPECT_EQ(scriptRows, all.row | std::make_unique<IsScript>());
  plexus::testing::record(scriptRows, log, "row in a script");
  EXPECT_EQ(scriptRows->kindDescription(), u"Where");
  EXPECT_EQ(scriptRows->detailsDescription(), u"IsScript");

  TreeMaker script, function;
  auto inScript = plexus::testing::makeAnalysis(script.program({script.stmt(script.b.make<Row>(script.exprs({})))}));
  auto inFunction = plexus::testing::makeAnalysis(
      function.program({function.stmt(function.b.make<Row>(function.exprs({})))}, ca::FileType::Function));
  all.execute(*inScript, nullptr);
  all.execute(*inFunction, nullptr);
  EXPECT_EQ(log, Log({"row in a script"}));

  // Negation works for item-free predicates too.
  auto notScript = !std::make_unique<IsScript>();
  EXPECT_FALSE(notScript->test(Typeless{}, *inScript));
  EXPECT_TRUE(notScript->test(Typeless{}, *inFunction));
}

struct Entry {
  bool isA() const { return true; }
  bool isB() const { return false; }
  bool isC() const { return false; }
};
using EntryMethod = bool (Entry::*)() const;

TEST(MethodComparator, IdsFollowFirstComparisonAndStayStable) {
  auto comparator = getComparator<EntryMethod>();
  ASSERT_NE(comparator, nullptr);
  EXPECT_EQ(comparator, getComparator<EntryMethod>());

  EXPECT_FALSE(comparator->compare(&Entry::isB, &Entry::isB));
  EXPECT_EQ(comparator->methods.size(), 1u);
  // First compared as (C, A): C is older, so C before A from now on.
  EXPECT_TRUE(comparator->compare(&Entry::isC, &Entry::isA));
  EXPECT_FALSE(comparator->compare(&Entry::isA, &Entry::isC));
  EXPECT_TRUE(comparator->compare(&Entry::isB, &Entry::isA));
  EXPECT_EQ(comparator->methods.size(), 3u);

  // Another pointer type has a comparator of its own.
  using FieldOf = Field const& (DotOperation::*)() const;
  auto other = getComparator<FieldOf>();
  EXPECT_NE(static_cast<void*>(other.get()), static_cast<void*>(comparator.get()));
  EXPECT_EQ(getComparatorMap().count(comparatorKey<EntryMethod>()), 1u);
}

TEST(MethodComparator, ConcurrentComparisonsAgreeOnOneOrder) {
  struct Many {
    bool m0() const { return true; }
    bool m1() const { return true; }
    bool m2() const { return true; }
    bool m3() const { return true; }
  };
  using M = bool (Many::*)() const;
  std::vector<std::thread> threads;
  for (int t = 0; t < 4; ++t) {
    threads.emplace_back([] {
      auto comparator = getComparator<M>();
      M const methods[] = {&Many::m0, &Many::m1, &Many::m2, &Many::m3};
      for (int i = 0; i < 1000; ++i) comparator->compare(methods[i % 4], methods[(i + 1) % 4]);
    });
  }
  for (auto& thread : threads) thread.join();
  auto comparator = getComparator<M>();
  EXPECT_EQ(comparator->methods.size(), 4u);
  M const a = comparator->methods[0], b = comparator->methods[1];
  EXPECT_TRUE(comparator->compare(a, b));
  EXPECT_FALSE(comparator->compare(b, a));
}

}  // namespace
