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
using plexus::testing::HasKind;

// A parameterised predicate that records whether its lessThan was asked.
class Spy final : public Predicate<Node const&> {
 public:
  explicit Spy(int parameter, int* lessThanCalls) : parameter_(parameter), lessThanCalls_(lessThanCalls) {}
  std::u16string description() const override { return u"Spy"; }
  bool dependsOn(ConsumerBase const*) const override { return false; }
  bool lessThan(PredicateBase const* other) const override {
    ++*lessThanCalls_;
    return parameter_ < dynamic_cast<Spy const&>(*other).parameter_;
  }
  bool test(Node const&, ca::Analysis const&) override { return true; }

 private:
  int parameter_;
  int* lessThanCalls_;
};

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

TEST(StageIdentity, DifferentClassesNeverAskLessThan) {
  int calls = 0;
  Spy spy(1, &calls);
  AcceptAll other;
  EXPECT_FALSE(equal(spy, other));
  EXPECT_EQ(calls, 0);
  // The class order agrees with the run-time type order in both directions.
  EXPECT_EQ(PredicateCompare()(&spy, &other), typeid(Spy).before(typeid(AcceptAll)));

  Spy same(2, &calls);
  EXPECT_FALSE(equal(spy, same));
  EXPECT_GT(calls, 0);
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
