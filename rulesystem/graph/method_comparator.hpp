#pragma once

#include <cstddef>
#include <cstdint>
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

/// The key of member pointers of type M in the comparator map: the type's
/// run-time name. A type local to one translation unit (a member of a class in
/// an unnamed namespace) has a name that a namesake in another file shares,
/// and the run-time type check may even take the two for one; its key adds
/// the address of its type information, which is the file's own, so that two
/// of them never share a comparator.
template <class M>
std::string comparatorKey() {
  std::type_info const& type = typeid(M);
  std::string key = type.name();
  bool const local = key.starts_with('*') || key.find("_GLOBAL__N_") != std::string::npos;
  if (local) key += "@" + std::to_string(reinterpret_cast<std::uintptr_t>(&type));
  return key;
}

/// The one comparator for member pointers of type M in this process.
template <class M>
std::shared_ptr<MethodComparator<M>> getComparator() {
  std::lock_guard lock(getComparatorMapMutex());
  auto& map = getComparatorMap();
  std::string const name = comparatorKey<M>();
  if (auto found = map.find(name); found != map.end()) {
    return std::dynamic_pointer_cast<MethodComparator<M>>(found->second);
  }
  auto made = std::make_shared<MethodComparator<M>>();
  map.emplace(name, made);
  return made;
}

}  // namespace ca::rulesystem
