// One rule over one file, written against the installed headers only: counts
// the assignments of a number literal and says how many it found.

#include <cstdio>
#include <memory>

#include "frontend/analyze.hpp"
#include "rulesystem/rulesystem.hpp"

namespace {

using namespace ca::rulesystem;

class RightSide final : public StageOf<RightSide, Transform<Assignment const&, Node const&>> {
 public:
  std::u16string description() const override { return u"RightSide"; }
  Node const& transform(Assignment const& assignment, ca::Analysis const&) const override {
    return *assignment.getRight();
  }
};

class Count final : public Consumer<NumberLiteral const&> {
 public:
  std::u16string kindDescription() const override { return u"Count"; }
  std::u16string detailsDescription() const override { return u""; }
  void consume(NumberLiteral const&, ca::Analysis const&, MessageHelper const*) const override { ++found; }
  mutable int found = 0;
};

}  // namespace

int main() {
  AllNodes all;
  auto count = std::make_shared<Count>();
  all.assignment | std::make_unique<RightSide>() | isa<NumberLiteral>() | count;
  auto analysed = frontend::analyze("x = 1;\ny = x;\nz = 2;\n", "a.m");
  if (analysed.analysis == nullptr) return 1;
  all.execute(*analysed.analysis, nullptr);
  std::printf("%d numbers assigned\n", count->found);
  return count->found == 2 ? 0 : 1;
}
