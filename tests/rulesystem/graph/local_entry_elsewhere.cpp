// A class of the same name as one in method_comparator_test.cpp, local to this
// file: the two have run-time names alike, and must still each get a
// comparator of their own.

#include "rulesystem/graph/method_comparator.hpp"

namespace {
struct Entry {
  bool first() const { return true; }
  bool second() const { return false; }
};
}  // namespace

namespace plexus::testing {

std::shared_ptr<ca::rulesystem::MethodComparatorBase> comparatorOfTheOtherLocalEntry() {
  auto comparator = ca::rulesystem::getComparator<bool (Entry::*)() const>();
  // Numbered here first: `second` before `first`.
  comparator->compare(&Entry::second, &Entry::first);
  return comparator;
}

}  // namespace plexus::testing
