// A run allocates nothing per item: the walk, filters, transforms and
// one-to-many stages hand items on without touching the heap.

// The replaced operator new and delete below pair malloc with free; GCC cannot
// see that through inlining and warns of a mismatch at -O2.
#pragma GCC diagnostic ignored "-Wmismatched-new-delete"

#include <gtest/gtest.h>

#include <atomic>
#include <cstdlib>
#include <new>

#include "rulesystem/execution/all_nodes.hpp"
#include "tests/support/stages.hpp"
#include "tests/support/test_analysis.hpp"
#include "tests/support/tree_maker.hpp"

namespace {
std::atomic<bool> counting{false};
std::atomic<long> allocations{0};
}  // namespace

// Counts every allocation of this test binary while `counting` is set. Every
// form of new and delete is replaced, so that all of them pair malloc with
// free, also where the library itself asks for nothrow memory.
namespace {
void* countedAllocation(std::size_t size) noexcept {
  if (counting.load(std::memory_order_relaxed)) allocations.fetch_add(1, std::memory_order_relaxed);
  return std::malloc(size == 0 ? 1 : size);
}
void* countedAllocationOrThrow(std::size_t size) {
  if (void* memory = countedAllocation(size)) return memory;
  throw std::bad_alloc();
}
}  // namespace

void* operator new(std::size_t size) { return countedAllocationOrThrow(size); }
void* operator new[](std::size_t size) { return countedAllocationOrThrow(size); }
void* operator new(std::size_t size, std::nothrow_t const&) noexcept { return countedAllocation(size); }
void* operator new[](std::size_t size, std::nothrow_t const&) noexcept { return countedAllocation(size); }
void operator delete(void* memory) noexcept { std::free(memory); }
void operator delete[](void* memory) noexcept { std::free(memory); }
void operator delete(void* memory, std::size_t) noexcept { std::free(memory); }
void operator delete[](void* memory, std::size_t) noexcept { std::free(memory); }
void operator delete(void* memory, std::nothrow_t const&) noexcept { std::free(memory); }
void operator delete[](void* memory, std::nothrow_t const&) noexcept { std::free(memory); }

namespace {

using namespace ca::rulesystem;
using plexus::testing::TreeMaker;

class CountingSink final : public Consumer<Expression const&> {
 public:
  std::u16string kindDescription() const override { return u"CountingSink"; }
  std::u16string detailsDescription() const override { return u""; }
  void consume(Expression const&, ca::Analysis const&, MessageHelper const*) const override { ++count; }
  mutable int count = 0;
};

TEST(Allocation, ARunAllocatesNothingOnceTheAnalysesExist) {
  TreeMaker t;
  std::vector<ca::ast::Node const*> statements;
  for (int i = 0; i < 50; ++i) {
    auto* call = t.b.make<ParenOperation>(t.id("f"), t.exprs({t.num(i), t.id("x"), t.num(i + 1)}));
    auto* dot = t.b.make<DotOperation>(t.b.make<DotOperation>(t.id("a"), t.field("b")), t.field("c"));
    statements.push_back(t.b.make<Assignment>(dot, call));
  }
  auto tree = t.b.finish(t.b.make<Program>(t.b.text(u"a.m"), t.b.list<ca::ast::Node>(statements)));
  auto analysis = plexus::testing::makeAnalysis(tree);

  AllNodes all;
  auto arguments = std::make_shared<CountingSink>();
  auto functions = std::make_shared<CountingSink>();
  all.parenOperation | std::make_unique<plexus::testing::ArgumentsOf>() | arguments;
  all.parenOperation | std::make_unique<plexus::testing::FunctionOf>() | functions;
  Producer<Node const&>(all.field->upcast<Node const&>()) | std::make_unique<plexus::testing::AcceptAll>();

  all.execute(*analysis, nullptr);  // makes the use-def analysis
  counting = true;
  allocations = 0;
  all.execute(*analysis, nullptr);
  counting = false;
  EXPECT_EQ(allocations.load(), 0);
  EXPECT_EQ(arguments->count, 2 * 150);
  EXPECT_EQ(functions->count, 2 * 50);
}

}  // namespace
