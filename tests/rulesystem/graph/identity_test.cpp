// Which stages count as the same: dynamic class first, then parameters.

#include <gtest/gtest.h>

#include <memory>
#include <typeinfo>

#include "rulesystem/execution/root_producer.hpp"
#include "tests/support/stages.hpp"

namespace {

using namespace ca::rulesystem;
using lf::astapi::NodeKind;
using plexus::testing::AcceptAll;
using plexus::testing::ComparisonSpy;
using plexus::testing::HasKind;

bool equal(PredicateBase const& a, PredicateBase const& b) {
  return !PredicateCompare()(&a, &b) && !PredicateCompare()(&b, &a);
}

TEST(StageIdentity, SameClassWithoutParametersIsEqualAndNothingIsBeforeItself) {
  AcceptAll a, b;
  EXPECT_TRUE(equal(a, b));
  EXPECT_FALSE(PredicateCompare()(&a, &a));
}

TEST(StageIdentity, ParametersDecideWithinAClassWhateverTheOrderOfMaking) {
  HasKind row1(NodeKind::Row), matrix(NodeKind::Matrix), row2(NodeKind::Row);
  EXPECT_TRUE(equal(row1, row2));
  EXPECT_FALSE(equal(row1, matrix));
  // A strict order: exactly one direction holds.
  EXPECT_NE(PredicateCompare()(&row1, &matrix), PredicateCompare()(&matrix, &row1));
}

TEST(StageIdentity, DifferentClassesNeverCompareParameters) {
  int comparisons = 0;
  ComparisonSpy spy(1, &comparisons);
  AcceptAll other;
  EXPECT_FALSE(equal(spy, other));
  EXPECT_EQ(comparisons, 0);
  // The class order agrees with the run-time type order in both directions.
  EXPECT_EQ(PredicateCompare()(&spy, &other), typeid(ComparisonSpy).before(typeid(AcceptAll)));

  ComparisonSpy same(2, &comparisons);
  EXPECT_FALSE(equal(spy, same));
  EXPECT_GT(comparisons, 0);
}

TEST(StageIdentity, NullStageRaisesBadTypeid) {
  AcceptAll a;
  EXPECT_THROW(PredicateCompare()(nullptr, &a), std::bad_typeid);
  EXPECT_THROW(PredicateCompare()(&a, nullptr), std::bad_typeid);
  plexus::testing::FunctionOf f;
  EXPECT_THROW(TransformCompare()(&f, nullptr), std::bad_typeid);
}

TEST(StageIdentity, NullStageIsNoticedOnlyAtTheFirstComparison) {
  auto root = std::make_shared<RootProducer<Node const&>>(u"Root");
  // Into an empty map a null predicate goes without a comparison.
  EXPECT_NO_THROW(root->where<Node const&>(std::unique_ptr<Predicate<Node const&>>()));
  EXPECT_THROW(root->where<Node const&>(std::make_unique<AcceptAll>()), std::bad_typeid);
}

}  // namespace
