// Comparators of member pointers: one per type, also for types whose run-time
// names are alike.

#include <gtest/gtest.h>

#include <memory>

#include "rulesystem/graph/method_comparator.hpp"

namespace plexus::testing {
std::shared_ptr<ca::rulesystem::MethodComparatorBase> comparatorOfTheOtherLocalEntry();
}

namespace {

struct Entry {
  bool first() const { return true; }
  bool second() const { return false; }
};

TEST(MethodComparator, ClassesLocalToTwoFilesWithOneNameGetTwoComparators) {
  auto const elsewhere = plexus::testing::comparatorOfTheOtherLocalEntry();
  auto const here = ca::rulesystem::getComparator<bool (Entry::*)() const>();
  ASSERT_NE(elsewhere, nullptr);
  ASSERT_NE(here, nullptr);
  EXPECT_NE(static_cast<ca::rulesystem::MethodComparatorBase const*>(here.get()), elsewhere.get());
  // Numbered here in the opposite order from elsewhere, and answered so.
  EXPECT_TRUE(here->compare(&Entry::first, &Entry::second));
  EXPECT_FALSE(here->compare(&Entry::second, &Entry::first));
  EXPECT_EQ(here, (ca::rulesystem::getComparator<bool (Entry::*)() const>()));
}

}  // namespace
