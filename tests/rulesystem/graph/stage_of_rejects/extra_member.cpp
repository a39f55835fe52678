// A stage with a member of its own beside its parameters: the member would be
// left out of the stage's identity, so StageOf refuses to compile it. With
// PLEXUS_REJECTED_FLAW_REMOVED the same stage holds it as a parameter, and
// compiles.

#include <cstddef>
#include <string>

#include "rulesystem/graph/stage_of.hpp"
#include "rulesystem/graph/tree_types.hpp"

namespace {

using namespace ca::rulesystem;

#ifndef PLEXUS_REJECTED_FLAW_REMOVED
class NameLongerThan final : public StageOf<NameLongerThan, Predicate<Field const&>> {
 public:
  explicit NameLongerThan(std::size_t length) : length_(length) {}
  std::size_t length() const { return length_; }

 private:
  std::size_t length_;
#else
class NameLongerThan final : public StageOf<NameLongerThan, Predicate<Field const&>, std::size_t> {
 public:
  using StageOf::StageOf;
  std::size_t length() const { return parameter<0>(); }
#endif

 public:
  std::u16string description() const override { return u"NameLongerThan"; }
  bool test(Field const& field, ca::Analysis const&) override { return field.getText().size() > length(); }
};

}  // namespace

bool extraMemberStageCompiles() {
  NameLongerThan const a(3), b(4);
  return a.lessThan(&b);
}
