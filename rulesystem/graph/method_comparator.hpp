#pragma once

#include <cstddef>
#include <memory>
#include <mutex>
#include <string>
#include <typeinfo>
#include <unordered_map>
#include <vector>

namespace ca::rulesystem {

/// The common base of comparators of member pointers of any type.
class MethodComparatorBase {
 public:
  virtual ~MethodComparatorBase() = default;
};

/// An order on member-function pointers of type M, which the language can
/// compare for equality only. Each distinct pointer gets an id, the index at
/// which it was first seen, and pointers compare by id.
///
/// Invariants: `methods` only grows, so an id never changes for the life of
/// the process; guarded by its own mutex.
///
///     bool less = getComparator<bool (Entry::*)() const>()->compare(&Entry::isVariable, &Entry::isGlobalVariable);
///     bool greater = getComparator<bool (Entry::*)() const>()->compare(&Entry::isGlobalVariable, &Entry::isVariable);
///     assert(less != greater);
template <class M>
class MethodComparator final : public MethodComparatorBase {
 public:
  /// Whether `a` comes before `b`.
  bool compare(M a, M b) {
    std::lock_guard lock(mutex);
    std::size_t const idA = idOf(a);
    std::size_t const idB = idOf(b);
    return idA < idB;
  }

  std::mutex mutex;
  std::vector<M> methods;

 private:
  std::size_t idOf(M method) {
    for (std::size_t i = 0; i < methods.size(); ++i) {
      if (methods[i] == method) return i;
    }
    methods.push_back(method);
    return methods.size() - 1;
  }
};

/// The process-wide map from a type's run-time name to its comparator.
std::unordered_map<std::string, std::shared_ptr<MethodComparatorBase>>& getComparatorMap();
/// The mutex that guards `getComparatorMap()`.
std::mutex& getComparatorMapMutex();

/// The one comparator for member pointers of type M in this process. Empty
/// only if another type shares M's run-time name.
template <class M>
std::shared_ptr<MethodComparator<M>> getComparator() {
  std::lock_guard lock(getComparatorMapMutex());
  auto& map = getComparatorMap();
  std::string const name = typeid(M).name();
  if (auto found = map.find(name); found != map.end()) {
    return std::dynamic_pointer_cast<MethodComparator<M>>(found->second);
  }
  auto made = std::make_shared<MethodComparator<M>>();
  map.emplace(name, made);
  return made;
}

}  // namespace ca::rulesystem
