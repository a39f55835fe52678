// A stage with a small member of its own that the ABI would place in the tail
// padding of StageOf's layout, where the size of the class does not show it.
// StageOf fills that padding, so that it is refused all the same. With
// PLEXUS_REJECTED_FLAW_REMOVED the same stage holds it as a parameter, and
// compiles.

#include <string>

#include "rulesystem/graph/stage_of.hpp"
#include "rulesystem/graph/tree_types.hpp"

namespace {

using namespace ca::rulesystem;

#ifndef PLEXUS_REJECTED_FLAW_REMOVED
class KindUnlessNegated final : public StageOf<KindUnlessNegated, Predicate<Node const&>, lf::astapi::NodeKind> {
 public:
  KindUnlessNegated(lf::astapi::NodeKind kind, bool negated) : StageOf(kind), negated_(negated) {}
  bool negated() const { return negated_; }

 private:
  bool negated_;
#else
class KindUnlessNegated final : public StageOf<KindUnlessNegated, Predicate<Node const&>, lf::astapi::NodeKind, bool> {
 public:
  using StageOf::StageOf;
  bool negated() const { return parameter<1>(); }
#endif

 public:
  std::u16string description() const override { return u"KindUnlessNegated"; }
  bool test(Node const& node, ca::Analysis const&) override { return (node.getKind() == parameter<0>()) != negated(); }
};

}  // namespace

bool extraMemberInPaddingStageCompiles() {
  KindUnlessNegated const a(lf::astapi::NodeKind::Row, false), b(lf::astapi::NodeKind::Row, true);
  return a.lessThan(&b);
}
