// A whole run: the tree pass, then the use-def pass, with the helper carried
// along and the profiler counting.

#include <gtest/gtest.h>

#include <stdexcept>
#include <string>

#include "rulesystem/execution/all_nodes.hpp"
#include "tests/support/recorder.hpp"
#include "tests/support/test_analysis.hpp"
#include "tests/support/tree_maker.hpp"

namespace {

using namespace ca::rulesystem;
using ca::usedef::UseDefBase;
using plexus::testing::Log;
using plexus::testing::TreeMaker;
using plexus::testing::UseDefRecords;

std::string name(ca::usedef::UseDefBase const* record) {
  return fl::i18n::to_utf8(record->getIdentifier()->getStringId().getString());
}

// x = 1; x(2) = y; with records for the definition of x, the partial
// assignment of x (both), and the use of y, in source order, plus one record
// that claims to be neither.
struct Fixture {
  TreeMaker t;
  Identifier* x = t.id("x");
  Identifier* x2 = t.id("x");
  Identifier* y = t.id("y");
  std::shared_ptr<ca::astapi::SyntaxTree const> tree = t.program(
      {t.b.make<Assignment>(x, t.num(1)),
       t.b.make<Assignment>(t.b.make<ParenOperation>(x2, t.exprs({t.num(2)})), y)});
  std::shared_ptr<plexus::testing::TestProvider> provider = std::make_shared<plexus::testing::TestProvider>([this] {
    UseDefRecords records;
    records.push_back(std::make_unique<ca::usedef::FullAssignmentDef>(x));
    records.push_back(std::make_unique<ca::usedef::PartialAssignmentUseDef>(x2));
    records.push_back(std::make_unique<ca::usedef::VariableUse>(y));
    return records;
  });
  std::unique_ptr<ca::clients::AnalysisImpl> analysis = plexus::testing::makeAnalysis(tree, provider);
};

TEST(Execute, TreePassThenUseDefsInterleavedDefinitionBeforeUse) {
  Fixture f;
  AllNodes all;
  Log log;
  all.assignment | std::make_shared<plexus::testing::Recorder<Assignment const&>>(
                       log, [](Assignment const&) { return std::string("Assignment"); });
  all.definition | std::make_shared<plexus::testing::Recorder<ca::usedef::Definition const*>>(
                       log, [](ca::usedef::Definition const* d) { return "Definition " + name(d); });
  all.use | std::make_shared<plexus::testing::Recorder<ca::usedef::Use const*>>(
                log, [](ca::usedef::Use const* u) { return "Use " + name(u) + (u->isDefinition() ? " (def too)" : ""); });
  all.execute(*f.analysis, nullptr);
  EXPECT_EQ(log, Log({"Assignment", "Assignment", "Definition x", "Definition x", "Use x (def too)", "Use y"}));
}

TEST(Execute, UseDefAnalysisIsMadeOnceAndCachedAcrossRuns) {
  Fixture f;
  AllNodes all;
  all.execute(*f.analysis, nullptr);
  all.execute(*f.analysis, nullptr);
  EXPECT_EQ(f.provider->useDefAnalysesMade, 1);
  // Nothing asked for the symbol table, so it was never made.
  EXPECT_EQ(f.provider->symbolTablesMade, 0);
}

TEST(Execute, EmptyUseDefListLeavesDefinitionAndUseRootsIdle) {
  TreeMaker t;
  auto analysis = plexus::testing::makeAnalysis(t.program({t.stmt(t.num(1))}));
  AllNodes all;
  Log log;
  plexus::testing::record(all.definition, log, "def");
  plexus::testing::record(all.use, log, "use");
  plexus::testing::record(all.numberLiteral, log, "number");
  all.execute(*analysis, nullptr);
  EXPECT_EQ(log, Log({"number"}));
}

TEST(Execute, HelperReachesConsumersUnchanged) {
  Fixture f;
  AllNodes all;
  Log log;
  auto onTree = plexus::testing::record(all.program, log, "program");
  auto onUse = plexus::testing::record(all.use, log, "use");
  MessageHelper helper;
  all.execute(*f.analysis, &helper);
  EXPECT_EQ(onTree->lastHelper, &helper);
  EXPECT_EQ(onUse->lastHelper, &helper);
  all.execute(*f.analysis, nullptr);
  EXPECT_EQ(onTree->lastHelper, nullptr);
}

TEST(Execute, ProfilerCountsEveryHandOverAndAccumulatesOverRuns) {
  Fixture f;
  AllNodes all;
  Log log;
  auto numbers = plexus::testing::record(all.numberLiteral, log, "number");
  auto definitions = plexus::testing::record(all.definition, log, "def");
  auto uses = plexus::testing::record(all.use, log, "use");
  Profiler profiler;
  MessageHelper helper{nullptr, &profiler};
  all.execute(*f.analysis, &helper);

  EXPECT_EQ(profiler.numProduced.at(all.numberLiteral.impl.get()), 2);
  EXPECT_EQ(profiler.numConsumed.at(numbers.get()), 2);
  EXPECT_EQ(profiler.numProduced.at(all.definition.impl.get()), 2);
  EXPECT_EQ(profiler.numConsumed.at(definitions.get()), 2);
  EXPECT_EQ(profiler.numProduced.at(all.use.impl.get()), 2);
  EXPECT_EQ(profiler.numConsumed.at(uses.get()), 2);
  // Roots without consumers are counted as producers but have no consumer
  // entries; roots that saw nothing have no entry at all.
  EXPECT_EQ(profiler.numProduced.at(all.assignment.impl.get()), 2);
  EXPECT_EQ(profiler.numProduced.at(all.program.impl.get()), 1);
  EXPECT_EQ(profiler.numProduced.count(all.whileStatement.impl.get()), 0u);
  EXPECT_EQ(profiler.numConsumed.size(), 3u);

  all.execute(*f.analysis, &helper);
  EXPECT_EQ(profiler.numProduced.at(all.numberLiteral.impl.get()), 4);
  EXPECT_EQ(profiler.numConsumed.at(uses.get()), 4);

  // A helper without a profiler counts nothing.
  MessageHelper silent;
  all.execute(*f.analysis, &silent);
  EXPECT_EQ(profiler.numProduced.at(all.numberLiteral.impl.get()), 4);
}

TEST(Execute, RecordWhoseCastFailsReachesConsumersAsNull) {
  // A record whose kind says use but whose class is no Use: the run does not
  // check the cast, and the consumer receives null.
  struct NotAUse final : UseDefBase {
    explicit NotAUse(Identifier const* id) : UseDefBase(Kind::VariableUse, id) {}
  };
  TreeMaker t;
  Identifier* x = t.id("x");
  auto provider = std::make_shared<plexus::testing::TestProvider>([x] {
    UseDefRecords records;
    records.push_back(std::make_unique<NotAUse>(x));
    return records;
  });
  auto analysis = plexus::testing::makeAnalysis(t.program({t.stmt(x)}), provider);
  AllNodes all;
  Log log;
  all.use | std::make_shared<plexus::testing::Recorder<ca::usedef::Use const*>>(
                log, [](ca::usedef::Use const* u) { return u == nullptr ? std::string("null") : std::string("use"); });
  all.execute(*analysis, nullptr);
  EXPECT_EQ(log, Log({"null"}));
}

TEST(Execute, ConsumerThatThrowsInTreePassStopsTheRunBeforeUseDefs) {
  Fixture f;
  AllNodes all;
  Log log;
  all.assignment | std::make_shared<plexus::testing::Thrower<Assignment const&>>();
  plexus::testing::record(all.assignment, log, "second consumer");
  plexus::testing::record(all.use, log, "use");
  Profiler profiler;
  MessageHelper helper{nullptr, &profiler};
  EXPECT_THROW(all.execute(*f.analysis, &helper), std::runtime_error);
  EXPECT_TRUE(log.empty());
  EXPECT_EQ(f.provider->useDefAnalysesMade, 0);
  // What was counted before the failure stays counted.
  EXPECT_EQ(profiler.numProduced.at(all.assignment.impl.get()), 1);
  // The graph is intact: a later run over another analysis works.
  TreeMaker t;
  auto clean = plexus::testing::makeAnalysis(t.program({t.stmt(t.num(1))}));
  EXPECT_NO_THROW(all.execute(*clean, nullptr));
}

// A consumer that declares a rule while the graph runs, which would change the
// consumer list that the producer handing it the item is looping over.
class DeclaringConsumer final : public Consumer<Assignment const&> {
 public:
  explicit DeclaringConsumer(AllNodes* all) : all_(all) {}
  std::u16string kindDescription() const override { return u"DeclaringConsumer"; }
  std::u16string detailsDescription() const override { return u""; }
  void consume(Assignment const&, ca::Analysis const&, MessageHelper const*) const override {
    Log ignored;
    plexus::testing::record(all_->assignment, ignored, "late");
  }

 private:
  AllNodes* all_;
};

TEST(Execute, CheckedBuildsStopADeclarationDuringARun) {
#ifndef PLEXUS_CHECKED
  GTEST_SKIP() << "only checked builds (debug, sanitizers) look for declarations during a run";
#else
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  EXPECT_DEATH(
      {
        Fixture f;
        AllNodes all;
        all.assignment | std::make_shared<DeclaringConsumer>(&all);
        all.execute(*f.analysis, nullptr);
      },
      "a consumer was attached to a producer while 1 run\\(s\\) of a rule graph are in progress");
  // Declaring between runs is what rules do, and stays allowed.
  Fixture f;
  AllNodes all;
  Log log;
  all.execute(*f.analysis, nullptr);
  plexus::testing::record(all.assignment, log, "assignment");
  all.execute(*f.analysis, nullptr);
  EXPECT_EQ(log.size(), 2u);
  EXPECT_EQ(RunScope::runsInProgress(), 0u);
#endif
}

}  // namespace
