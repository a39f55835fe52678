// Dispatch by node class through one switch on the kind.

#include <gtest/gtest.h>

#include <memory>
#include <set>

#include "rulesystem/execution/root_producer.hpp"
#include "rulesystem/syntax/isa.hpp"
#include "tests/support/recorder.hpp"
#include "tests/support/test_analysis.hpp"
#include "tests/support/tree_maker.hpp"

namespace {

using namespace ca::rulesystem;
using lf::astapi::NodeKind;
using plexus::testing::Log;
using plexus::testing::TreeMaker;
using KindSwitch = Switch<Node const&, Node const&, NodeKind>;

std::string kindName(Node const& node) { return std::string(lf::astapi::nodeKindName(node.getKind())); }

TEST(Isa, ExpressionLetsEveryExpressionKindThroughAndNoOther) {
  auto root = std::make_shared<RootProducer<Node const&>>(u"Nodes");
  Log log;
  Producer<Expression const&> expressions = Producer<Node const&>(root) | isa<Expression>();
  expressions | std::make_shared<plexus::testing::Recorder<Expression const&>>(log, kindName);

  // The switch listens for exactly the 22 expression kinds.
  ASSERT_EQ(root->consumers().size(), 1u);
  auto const* branching = dynamic_cast<KindSwitch const*>(root->consumers()[0]);
  ASSERT_NE(branching, nullptr);
  std::set<NodeKind> cased;
  for (auto const& [kind, branch] : branching->cases) cased.insert(kind);
  std::set<NodeKind> expected;
  for (NodeKind kind : lf::astapi::getAllNodeKinds()) {
    if (lf::astapi::getKindFlags(kind) == 0x05) expected.insert(kind);
  }
  EXPECT_EQ(expected.size(), 22u);
  EXPECT_EQ(cased, expected);

  TreeMaker t;
  std::vector<Node const*> nodes = {t.num(1), t.b.make<Assignment>(t.id("a"), t.num(2)), t.id("x"),
                                    t.b.make<BreakStatement>(), t.field("f"), t.b.make<Row>(t.exprs({})),
                                    t.b.make<OpaqueExpression>(t.b.text(u"?"))};
  auto analysis = plexus::testing::makeAnalysis(t.program({}));
  for (Node const* node : nodes) root->produce(*node, *analysis, nullptr);
  EXPECT_EQ(log, Log({"NumberLiteral", "Identifier", "Row", "OpaqueExpression"}));
}

TEST(Isa, ClassesOnOneProducerShareOneSwitchAndOneCaseEach) {
  auto root = std::make_shared<RootProducer<Node const&>>(u"Nodes");
  Producer<Node const&> nodes(root);
  Producer<Field const&> fields = nodes | isa<Field>();
  Producer<Field const&> fieldsAgain = nodes | isa<Field>();
  Producer<Identifier const&> identifiers = nodes | isa<Identifier>();
  EXPECT_EQ(fields, fieldsAgain);
  EXPECT_EQ(fields->detailsDescription(), u"Downcast Field");
  ASSERT_EQ(root->consumers().size(), 1u);
  auto const* branching = dynamic_cast<KindSwitch const*>(root->consumers()[0]);
  ASSERT_NE(branching, nullptr);
  EXPECT_EQ(branching->detailsDescription(), u"NodeKind");
  EXPECT_EQ(branching->cases.size(), 2u);
  EXPECT_EQ(branching->cases.at(NodeKind::Field)->detailsDescription(), u"Field");

  TreeMaker t;
  Node const* items[] = {t.id("x"), t.field("f"), t.num(1)};
  auto analysis = plexus::testing::makeAnalysis(t.program({}));
  Log log;
  identifiers | std::make_shared<plexus::testing::Recorder<Identifier const&>>(
                    log, [](Identifier const& id) { return fl::i18n::to_utf8(id.getStringId().getString()); });
  for (Node const* item : items) root->produce(*item, *analysis, nullptr);
  EXPECT_EQ(log, Log({"x"}));
}

}  // namespace
