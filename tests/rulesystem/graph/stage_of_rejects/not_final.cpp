// A stage class that is not final: a class derived from it would share its
// identity while adding to it, so StageOf refuses to compile it. With
// PLEXUS_REJECTED_FLAW_REMOVED the same class is final, and compiles.

#include <string>

#include "rulesystem/graph/stage_of.hpp"
#include "rulesystem/graph/tree_types.hpp"

namespace {

using namespace ca::rulesystem;

#ifndef PLEXUS_REJECTED_FLAW_REMOVED
class AnyField : public StageOf<AnyField, Predicate<Field const&>> {
#else
class AnyField final : public StageOf<AnyField, Predicate<Field const&>> {
#endif
 public:
  std::u16string description() const override { return u"AnyField"; }
  bool test(Field const&, ca::Analysis const&) override { return true; }
};

}  // namespace

bool notFinalStageCompiles() {
  AnyField const a, b;
  return a.lessThan(&b);
}
