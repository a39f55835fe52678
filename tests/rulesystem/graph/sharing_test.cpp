// Equal stages on one producer are one vertex; items flow depth first through
// consumers in order of attachment.

#include <gtest/gtest.h>

#include <memory>
#include <stdexcept>
#include <string>

#include "rulesystem/execution/all_nodes.hpp"
#include "tests/support/recorder.hpp"
#include "tests/support/stages.hpp"
#include "tests/support/test_analysis.hpp"
#include "tests/support/tree_maker.hpp"

namespace {

using namespace ca::rulesystem;
using lf::astapi::NodeKind;
using plexus::testing::AcceptAll;
using plexus::testing::ArgumentsOf;
using plexus::testing::FunctionOf;
using plexus::testing::HasKind;
using plexus::testing::Log;
using plexus::testing::TreeMaker;

// A tree with one call, f(a, b, c), and an analysis over it.
struct CallFixture {
  TreeMaker t;
  ParenOperation* call = t.b.make<ParenOperation>(t.id("f"), t.exprs({t.id("a"), t.id("b"), t.id("c")}));
  std::unique_ptr<ca::clients::AnalysisImpl> analysis = plexus::testing::makeAnalysis(t.program({t.stmt(call)}));
};

std::string text(Expression const& e) {
  return fl::i18n::to_utf8(ca::astapi::toStdView(static_cast<Identifier const&>(e).getText()));
}

TEST(Sharing, EqualStatelessPredicateGivesTheSameVertexAndDropsTheDuplicate) {
  auto root = std::make_shared<RootProducer<Node const&>>(u"Root");
  int calls = 0;
  auto first = root->where<Node const&>(std::make_unique<AcceptAll>(&calls));
  auto second = root->where<Node const&>(std::make_unique<AcceptAll>(&calls));
  EXPECT_EQ(first, second);
  EXPECT_EQ(root->consumers().size(), 1u);

  // The surviving stage is the first one: its counter is the one that runs,
  // once per item however many rules asked for it.
  CallFixture f;
  root->produce(*f.call, *f.analysis, nullptr);
  EXPECT_EQ(calls, 1);
}

TEST(Sharing, ParameterisedStagesShareOnlyWithEqualParameters) {
  auto root = std::make_shared<RootProducer<Node const&>>(u"Root");
  auto paren = root->where<Node const&>(std::make_unique<HasKind>(NodeKind::ParenOperation));
  auto number = root->where<Node const&>(std::make_unique<HasKind>(NodeKind::NumberLiteral));
  auto parenAgain = root->where<Node const&>(std::make_unique<HasKind>(NodeKind::ParenOperation));
  EXPECT_NE(paren, number);
  EXPECT_EQ(paren, parenAgain);
  EXPECT_EQ(root->consumers().size(), 2u);
}

TEST(Sharing, SharingIsPerProducer) {
  auto a = std::make_shared<RootProducer<Node const&>>(u"A");
  auto b = std::make_shared<RootProducer<Node const&>>(u"B");
  EXPECT_NE(a->where<Node const&>(std::make_unique<AcceptAll>()), b->where<Node const&>(std::make_unique<AcceptAll>()));
}

TEST(Sharing, RulesAgreeingOnTwoStagesShareThemAndBranchAtTheThird) {
  AllNodes all;
  Producer<Node const&> asNode(all.parenOperation->upcast<Node const&>());
  Producer<Node const&> ruleA = asNode | std::make_unique<AcceptAll>() | std::make_unique<HasKind>(NodeKind::ParenOperation);
  Producer<Node const&> ruleB = asNode | std::make_unique<AcceptAll>() | std::make_unique<HasKind>(NodeKind::Matrix);
  Producer<Node const&> second = asNode | std::make_unique<AcceptAll>();
  EXPECT_EQ(all.parenOperation->consumers().size(), 1u);
  EXPECT_EQ(asNode->consumers().size(), 1u);
  EXPECT_EQ(second->consumers().size(), 2u);
  EXPECT_NE(ruleA, ruleB);
}

TEST(Sharing, ConsumersRunInOrderOfFirstAttachmentDepthFirst) {
  CallFixture f;
  AllNodes all;
  Log log;
  // Rule A attaches FunctionOf first; rule B then reuses it and adds ArgumentsOf.
  auto functionA = all.parenOperation | std::make_unique<FunctionOf>();
  auto arguments = all.parenOperation | std::make_unique<ArgumentsOf>();
  auto functionB = all.parenOperation | std::make_unique<FunctionOf>();
  EXPECT_EQ(functionA, functionB);
  functionB | std::make_shared<plexus::testing::Recorder<Expression const&>>(
                  log, [](Expression const& e) { return "B function " + text(e); });
  arguments | std::make_shared<plexus::testing::Recorder<Expression const&>>(
                  log, [](Expression const& e) { return "argument " + text(e); });
  functionA | std::make_shared<plexus::testing::Recorder<Expression const&>>(
                  log, [](Expression const& e) { return "A function " + text(e); });
  all.execute(*f.analysis, nullptr);
  // The function stage came first, so both its consumers finish before the
  // first argument is selected; each argument runs to the end before the next.
  EXPECT_EQ(log, Log({"B function f", "A function f", "argument a", "argument b", "argument c"}));
}

TEST(Sharing, RejectedItemsAndEmptySelectionsReachNobodyAndAreNotCountedAsProduced) {
  CallFixture f;
  AllNodes all;
  Log log;
  Producer<Node const&> asNode(all.parenOperation->upcast<Node const&>());
  auto rejecting = asNode | std::make_unique<HasKind>(NodeKind::Matrix);
  plexus::testing::record(rejecting, log, "rejected item");

  TreeMaker t;
  auto* noArguments = t.b.make<ParenOperation>(t.id("g"), t.exprs({}));
  auto selection = all.parenOperation | std::make_unique<ArgumentsOf>();
  auto recorder = plexus::testing::record(selection, log, "argument");

  Profiler profiler;
  MessageHelper helper{nullptr, &profiler};
  all.parenOperation->produce(*noArguments, *f.analysis, &helper);
  all.execute(*f.analysis, &helper);
  EXPECT_EQ(log, Log({"argument", "argument", "argument"}));

  auto const* rejectingVertex = dynamic_cast<ConsumerBase const*>(rejecting.impl.get());
  EXPECT_EQ(profiler.numConsumed.at(rejectingVertex), 2);
  EXPECT_EQ(profiler.numProduced.count(rejecting.impl.get()), 0u);
  auto const* selectionVertex = dynamic_cast<ConsumerBase const*>(selection.impl.get());
  EXPECT_EQ(profiler.numConsumed.at(selectionVertex), 2);
  EXPECT_EQ(profiler.numProduced.at(selection.impl.get()), 3);
  EXPECT_EQ(profiler.numConsumed.at(recorder.get()), 3);
}

TEST(Sharing, UpcastAndDowncastAreOneVertexEachWithTheirDescriptions) {
  AllNodes all;
  auto up1 = all.parenOperation->upcast<Node const&>();
  auto up2 = all.parenOperation->upcast<Node const&>();
  EXPECT_EQ(up1, up2);
  auto upToExpression = all.parenOperation->upcast<Expression const&>();
  EXPECT_NE(static_cast<ProducerBase*>(up1.get()), static_cast<ProducerBase*>(upToExpression.get()));
  EXPECT_EQ(all.parenOperation->consumers().size(), 2u);
  EXPECT_EQ(up1->kindDescription(), u"Transform");
  EXPECT_EQ(up1->detailsDescription(), u"Upcast Node");
  EXPECT_EQ(upToExpression->detailsDescription(), u"Upcast Expression");

  auto down = up1->downcast<ParenOperation const&>();
  EXPECT_EQ(down, up1->downcast<ParenOperation const&>());
  EXPECT_EQ(down->detailsDescription(), u"Downcast ParenOperation");

  // The round trip hands on the very same node.
  CallFixture f;
  Log log;
  Producer<ParenOperation const&>(down) | std::make_shared<plexus::testing::Recorder<ParenOperation const&>>(
                                              log, [&f](ParenOperation const& p) {
                                                return &p == f.call ? std::string("same") : std::string("other");
                                              });
  all.execute(*f.analysis, nullptr);
  EXPECT_EQ(log, Log({"same"}));
}

TEST(Sharing, VertexDescriptionsNameTheirKindAndStage) {
  AllNodes all;
  auto where = all.parenOperation->upcast<Node const&>()->where<Node const&>(std::make_unique<AcceptAll>());
  auto transform = all.parenOperation->transform<Expression const&>(std::make_unique<FunctionOf>());
  auto selectMany = all.parenOperation->selectMany<Expression const&>(std::make_unique<ArgumentsOf>());
  EXPECT_EQ(where->kindDescription(), u"Where");
  EXPECT_EQ(where->detailsDescription(), u"AcceptAll");
  EXPECT_EQ(transform->kindDescription(), u"Transform");
  EXPECT_EQ(transform->detailsDescription(), u"FunctionOf");
  EXPECT_EQ(selectMany->kindDescription(), u"SelectMany");
  EXPECT_EQ(selectMany->detailsDescription(), u"ArgumentsOf");
  EXPECT_TRUE(where->extraChildren().empty());
  EXPECT_TRUE(transform->extraChildren().empty());
}

TEST(Sharing, ExceptionsPassThroughProduceAndLaterConsumersDoNotRun) {
  CallFixture f;
  auto root = std::make_shared<RootProducer<ParenOperation const&>>(u"Root");
  Log log;
  plexus::testing::record(Producer<ParenOperation const&>(root), log, "before");
  Producer<ParenOperation const&>(root) | std::make_shared<plexus::testing::Thrower<ParenOperation const&>>();
  plexus::testing::record(Producer<ParenOperation const&>(root), log, "after");
  EXPECT_THROW(root->produce(*f.call, *f.analysis, nullptr), std::runtime_error);
  EXPECT_EQ(log, Log({"before"}));
}

TEST(Sharing, ProducerHandlesCompareByVertex) {
  auto impl = std::make_shared<RootProducer<Node const&>>(u"Root");
  Producer<Node const&> a(impl), b(impl), c(std::make_shared<RootProducer<Node const&>>(u"Other"));
  EXPECT_TRUE(a == b);
  EXPECT_FALSE(a < b || b < a);
  EXPECT_TRUE(a < c || c < a);
}

TEST(Sharing, VerticesLiveAsLongAsAnyHandle) {
  std::weak_ptr<ProducerImpl<Node const&>> stage;
  {
    auto root = std::make_shared<RootProducer<Node const&>>(u"Root");
    stage = root->where<Node const&>(std::make_unique<AcceptAll>());
    EXPECT_FALSE(stage.expired());
  }
  EXPECT_TRUE(stage.expired());

  Producer<Node const&> kept;
  {
    auto root = std::make_shared<RootProducer<Node const&>>(u"Root");
    kept = Producer<Node const&>(root) | std::make_unique<AcceptAll>();
  }
  // The rule's handle keeps the stage; its producer set still names the dead
  // root, which is why ownership only ever runs downstream.
  EXPECT_EQ(kept.impl.use_count(), 1);
}

// Calls reach stages over nodes as the node where the call stands: a filter
// over nodes tests it, and an upcast hands it on.
TEST(Sharing, CallsReachNodeStagesAsTheirNode) {
  using ca::callresolution::Call;
  CallFixture f;
  Call const call(f.call, Call::KnownCall);
  Call const name(f.call->getFunction(), Call::KnownCall);

  auto calls = std::make_shared<RootProducer<Call const&>>(u"Calls");
  Log log;
  auto parens = Producer<Call const&>(calls) | std::make_unique<HasKind>(NodeKind::ParenOperation);
  plexus::testing::record(parens, log, "paren call");
  Producer<Node const&> const nodes(calls->upcast<Node const&>());
  EXPECT_EQ(nodes.impl, calls->upcast<Node const&>()) << "the upcast from calls to nodes is one vertex";
  auto recorder = std::make_shared<plexus::testing::Recorder<Node const&>>(
      log, [](Node const& node) { return std::string(lf::astapi::nodeKindName(node.getKind())); });
  nodes | recorder;

  calls->produce(call, *f.analysis, nullptr);
  calls->produce(name, *f.analysis, nullptr);
  EXPECT_EQ(log, (Log{"paren call", "ParenOperation", "Identifier"}));

  // Calls handed on by value convert the same way.
  auto byValue = std::make_shared<RootProducer<Call>>(u"Calls by value");
  Log valueLog;
  plexus::testing::record(Producer<Call>(byValue) | std::make_unique<HasKind>(NodeKind::Identifier), valueLog, "name");
  byValue->produce(call, *f.analysis, nullptr);
  byValue->produce(name, *f.analysis, nullptr);
  EXPECT_EQ(valueLog, (Log{"name"}));
}

}  // namespace
