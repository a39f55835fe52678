// A stage whose parameter would compare by address: two rules made apart
// would never share its vertex, and a freed and remade object could merge two
// unrelated ones. StageOf has no order for it and refuses to compile it.

#include <string>

#include "rulesystem/graph/stage_of.hpp"
#include "rulesystem/graph/tree_types.hpp"

namespace {

using namespace ca::rulesystem;

#ifndef PLEXUS_REJECTED_FLAW_REMOVED
using Name = std::u16string const*;
Name asParameter(std::u16string const& text) { return &text; }
#else
using Name = std::u16string;
Name const& asParameter(std::u16string const& text) { return text; }
#endif

class FieldNamed final : public StageOf<FieldNamed, Predicate<Field const&>, Name> {
 public:
  using StageOf::StageOf;
  std::u16string description() const override { return u"FieldNamed"; }
  bool test(Field const&, ca::Analysis const&) override { return true; }
};

}  // namespace

bool unorderedParameterStageCompiles() {
  std::u16string const text = u"x";
  FieldNamed const a(asParameter(text)), b(asParameter(text));
  return a.lessThan(&b);
}
