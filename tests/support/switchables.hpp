#pragma once

// A question with many answers for tests of the switch: the name of a field.

#include <memory>
#include <set>
#include <string>

#include "rulesystem/graph/stage_of.hpp"
#include "rulesystem/graph/switch.hpp"
#include "rulesystem/graph/tree_types.hpp"
#include "rulesystem/graph/uncompared.hpp"

namespace plexus::testing {

using namespace ca::rulesystem;

/// The name of a field; counts its evaluations in `*calls` when given.
class FieldName final : public StageOf<FieldName, Transform<Field const&, ca::astapi::StringId>, Uncompared<int*>> {
 public:
  explicit FieldName(int* calls = nullptr) : StageOf(calls) {}
  std::u16string description() const override { return u"FieldName"; }
  ca::astapi::StringId transform(Field const& field, ca::Analysis const&) const override {
    if (int* const calls = parameter<0>().value) ++*calls;
    return field.getStringId();
  }
};

/// Fields named one of the given names.
class IsFieldNamed final : public Switchable<Field const&, ca::astapi::StringId> {
 public:
  IsFieldNamed(std::set<std::u16string> const& names, int* transformCalls = nullptr) : calls_(transformCalls) {
    for (auto const& name : names) names_.insert(ca::astapi::StringId(name));
  }
  std::unique_ptr<Transform<Field const&, ca::astapi::StringId>> getTransform() const override {
    return std::make_unique<FieldName>(calls_);
  }
  std::set<ca::astapi::StringId> getKeys() const override { return names_; }

 private:
  std::set<ca::astapi::StringId> names_;
  int* calls_;
};

inline std::unique_ptr<IsFieldNamed> isFieldNamed(std::set<std::u16string> const& names, int* calls = nullptr) {
  return std::make_unique<IsFieldNamed>(names, calls);
}

}  // namespace plexus::testing
