#pragma once

// A switch key whose copies can be made to fail, and the transform that gives
// it, for tests of what a failure while a case is made leaves behind.

#include <cstddef>
#include <functional>
#include <ostream>
#include <stdexcept>
#include <string>

#include "rulesystem/graph/stage_of.hpp"
#include "rulesystem/graph/tree_types.hpp"

namespace plexus::testing {

/// A key whose copy fails on the n-th copy once `copiesUntilFailure` is set
/// to n, standing in for any failure while a case is made (an allocation, a
/// copy of the key).
struct FragileKey {
  static inline int copiesUntilFailure = 0;
  int value = 0;
  FragileKey() = default;
  explicit FragileKey(int v) : value(v) {}
  FragileKey(FragileKey const& other) : value(other.value) {
    if (copiesUntilFailure > 0 && --copiesUntilFailure == 0) throw std::runtime_error("copy failed");
  }
  FragileKey& operator=(FragileKey const&) = default;
  friend bool operator==(FragileKey const& a, FragileKey const& b) { return a.value == b.value; }
  friend std::ostream& operator<<(std::ostream& out, FragileKey const& key) { return out << key.value; }
};

/// The key 7 for every field.
class ConstantKey final
    : public ca::rulesystem::StageOf<ConstantKey, ca::rulesystem::Transform<ca::ast::Field const&, FragileKey>> {
 public:
  std::u16string description() const override { return u"ConstantKey"; }
  FragileKey transform(ca::ast::Field const&, ca::Analysis const&) const override { return FragileKey(7); }
};

}  // namespace plexus::testing

template <>
struct std::hash<plexus::testing::FragileKey> {
  std::size_t operator()(plexus::testing::FragileKey const& key) const { return std::hash<int>{}(key.value); }
};
