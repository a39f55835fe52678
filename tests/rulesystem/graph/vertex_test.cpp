// The upstream walk and the order of consumers.

#include <gtest/gtest.h>

#include <functional>
#include <memory>

#include "platform/ast/syntax_tree.hpp"
#include "rulesystem/execution/root_producer.hpp"
#include "tests/support/stages.hpp"

namespace {

using namespace ca::rulesystem;
using lf::astapi::NodeKind;
using plexus::testing::AcceptAll;
using plexus::testing::HasKind;

// A consumer of the test's own with nothing upstream.
class Sink final : public Consumer<Node const&> {
 public:
  std::u16string kindDescription() const override { return u"Sink"; }
  std::u16string detailsDescription() const override { return u""; }
  void consume(Node const&, ca::Analysis const&, MessageHelper const*) const override {}
};

std::shared_ptr<ConsumerBase> consumerOf(std::shared_ptr<ProducerImpl<Node const&>> const& stage) {
  return std::dynamic_pointer_cast<ConsumerBase>(std::static_pointer_cast<ProducerBase>(stage));
}

TEST(DependsOn, ChainDependsUpstreamAndOnItselfNeverDownstream) {
  auto root = std::make_shared<RootProducer<Node const&>>(u"Root");
  auto a = consumerOf(root->where<Node const&>(std::make_unique<AcceptAll>()));
  auto stageA = std::dynamic_pointer_cast<ProducerImpl<Node const&>>(a);
  auto b = consumerOf(stageA->where<Node const&>(std::make_unique<HasKind>(NodeKind::Matrix)));

  EXPECT_TRUE(b->dependsOn(a.get()));
  EXPECT_TRUE(b->dependsOn(b.get()));
  EXPECT_TRUE(a->dependsOn(a.get()));
  EXPECT_FALSE(a->dependsOn(b.get()));

  EXPECT_TRUE(ConsumerCompare()(a, b));
  EXPECT_FALSE(ConsumerCompare()(b, a));
  EXPECT_FALSE(ConsumerCompare()(a, a));
}

TEST(DependsOn, DetachedConsumerDependsOnlyOnItselfAndRootsEndTheWalk) {
  auto lonely = std::make_shared<Sink>();
  EXPECT_TRUE(lonely->dependsOn(lonely.get()));
  EXPECT_TRUE(lonely->getProducers().empty());

  auto root = std::make_shared<RootProducer<Node const&>>(u"Root");
  auto fed = std::make_shared<Sink>();
  Producer<Node const&>(root) | fed;
  EXPECT_EQ(fed->getProducers().size(), 1u);
  EXPECT_FALSE(fed->dependsOn(lonely.get()));
  EXPECT_TRUE(fed->dependsOn(fed.get()));
}

TEST(ConsumerCompare, UnrelatedConsumersStandInDescendingAddressOrder) {
  auto root = std::make_shared<RootProducer<Node const&>>(u"Root");
  std::shared_ptr<ConsumerBase> x = std::make_shared<Sink>();
  std::shared_ptr<ConsumerBase> y = std::make_shared<Sink>();
  bool const yBelowX = std::less<ConsumerBase*>{}(y.get(), x.get());
  EXPECT_EQ(ConsumerCompare()(x, y), yBelowX);
  EXPECT_EQ(ConsumerCompare()(y, x), !yBelowX);
}

TEST(ConsumerCompare, DependentConsumerSortsAfterWhatItDependsOnWhateverTheAddresses) {
  // Build many chains so that both address orders occur between a stage and
  // the stage below it.
  for (int i = 0; i < 16; ++i) {
    auto root = std::make_shared<RootProducer<Node const&>>(u"Root");
    auto upper = root->where<Node const&>(std::make_unique<AcceptAll>());
    auto lower = upper->where<Node const&>(std::make_unique<HasKind>(NodeKind::Row));
    EXPECT_TRUE(ConsumerCompare()(consumerOf(upper), consumerOf(lower)));
    EXPECT_FALSE(ConsumerCompare()(consumerOf(lower), consumerOf(upper)));
  }
}

TEST(Vertex, ProducerWithoutConsumersOnlyCounts) {
  auto root = std::make_shared<RootProducer<Node const&>>(u"Root");
  Profiler profiler;
  MessageHelper helper{nullptr, &profiler};
  ca::astapi::TreeBuilder builder;
  auto* node = builder.make<EmptyStatement>();
  struct NoAnalysis final : ca::Analysis {
    Program const* getProgram() const override { return nullptr; }
    ca::FileType getFileType() const override { return ca::FileType::Script; }
    ca::nameresolution::SymbolTable const* getSymbolTable() const override { return nullptr; }
  } analysis;
  root->produce(*node, analysis, &helper);
  root->produce(*node, analysis, &helper);
  EXPECT_EQ(profiler.numProduced.at(root.get()), 2);
  EXPECT_TRUE(profiler.numConsumed.empty());
  EXPECT_TRUE(root->consumers().empty());
}

TEST(Vertex, DetachKeepsTheOrderOfTheOthers) {
  auto root = std::make_shared<RootProducer<Node const&>>(u"Root");
  auto a = std::make_shared<Sink>();
  auto b = std::make_shared<Sink>();
  auto c = std::make_shared<Sink>();
  for (auto const& sink : {a, b, c}) root->attach(sink);
  root->detach(b.get());
  EXPECT_EQ(root->consumers(), (std::vector<ConsumerBase const*>{a.get(), c.get()}));
  EXPECT_TRUE(b->getProducers().empty());
  EXPECT_EQ(a->getProducers().size(), 1u);
}

}  // namespace
