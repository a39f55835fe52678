// The profiler's time per vertex: inclusive and self time of each consumer
// call over a real run, foreign work kept out of a vertex's own time, a
// consumer that throws, and profiles of several workers merged. Only the
// structure of the figures is checked, never how large they are.

#include <gtest/gtest.h>

#include <chrono>
#include <memory>
#include <stdexcept>
#include <string>

#include "frontend/analyze.hpp"
#include "rulesystem/rulesystem.hpp"
#include "tests/support/recorder.hpp"
#include "tests/support/stages.hpp"

namespace {

using namespace ca::rulesystem;
using std::chrono::nanoseconds;


// A consumer that works until the clock has moved, so that each call takes
// some time however coarse the clock; with `foreign`, it reports that work
// as not its own.
template <class T>
class Busy final : public Consumer<T> {
 public:
  explicit Busy(bool foreign) : foreign_(foreign) {}
  std::u16string kindDescription() const override { return u"Busy"; }
  std::u16string detailsDescription() const override { return u""; }
  void consume(T, ca::Analysis const&, MessageHelper const* helper) const override {
    auto const start = Profiler::Clock::now();
    auto now = start;
    while (now == start) now = Profiler::Clock::now();
    if (foreign_) helper->profiler->addForeignTime(std::chrono::duration_cast<nanoseconds>(now - start));
  }

 private:
  bool foreign_;
};

std::string const kSource =
    "1;\n'text';\na + 2;\n3;\n"
    "function r = f(v)\n  r = v;\n  4;\nend\n";

ConsumerBase const* consumerOf(ProducerBase const* producer) { return dynamic_cast<ConsumerBase const*>(producer); }

TEST(ProfilerTiming, SelfTimesAreNonNegativeAddUpWithinTheRunAndLeaveCountsAsTheyWere) {
  frontend::AnalysisResult const analysed = frontend::analyze(kSource, "timed.m");
  ASSERT_NE(analysed.analysis, nullptr);
  AllNodes all;
  auto values = all.expressionStatement | std::make_unique<plexus::testing::StatementExpression>();
  auto numbers = values | isa<NumberLiteral>();
  auto busy = std::make_shared<Busy<NumberLiteral const&>>(false);
  numbers | busy;
  auto reported = std::make_shared<Busy<NumberLiteral const&>>(true);
  numbers | reported;
  plexus::testing::Log log;
  auto texts = plexus::testing::record(values | isa<CharVectorLiteral>(), log, "text");

  Profiler counting;
  MessageHelper const countingHelper{nullptr, &counting};
  all.execute(*analysed.analysis, &countingHelper);
  EXPECT_TRUE(counting.timeOf.empty());  // timing is opt-in

  Profiler timed;
  timed.enableTiming();
  MessageHelper const timedHelper{nullptr, &timed};
  auto const start = Profiler::Clock::now();
  all.execute(*analysed.analysis, &timedHelper);
  auto const total = std::chrono::duration_cast<nanoseconds>(Profiler::Clock::now() - start);

  // Timing changes no count, and each consumer call is timed once.
  EXPECT_EQ(timed.numProduced, counting.numProduced);
  EXPECT_EQ(timed.numConsumed, counting.numConsumed);
  ASSERT_EQ(timed.timeOf.size(), timed.numConsumed.size());
  nanoseconds selfSum{0};
  for (auto const& [consumer, time] : timed.timeOf) {
    EXPECT_EQ(time.calls, timed.numConsumed.at(consumer));
    EXPECT_GE(time.self.count(), 0);
    EXPECT_LE(time.self, time.inclusive);
    selfSum += time.self;
  }
  EXPECT_LE(selfSum, total);
  EXPECT_EQ(timed.openCalls(), 0u);

  // The three numbers that stand as statements (one in the function) reach
  // both busy consumers; the one doing its own work gets time, the one
  // reporting it as foreign does not keep it, though its calls took as long.
  EXPECT_EQ(timed.timeOf.at(busy.get()).calls, 3);
  EXPECT_GT(timed.timeOf.at(busy.get()).self.count(), 0);
  auto const& foreign = timed.timeOf.at(reported.get());
  EXPECT_GT(foreign.inclusive.count(), 0);
  EXPECT_LT(foreign.self, foreign.inclusive);

  // A vertex's inclusive time holds the calls below it: the transform's
  // covers the switch behind it, which covers the busy consumers of its case.
  auto const& transform = timed.timeOf.at(consumerOf(values.impl.get()));
  ConsumerBase const* const switchVertex = values->consumers().front();
  auto const& switched = timed.timeOf.at(switchVertex);
  EXPECT_GE(transform.inclusive, switched.inclusive);
  EXPECT_GE(transform.inclusive - transform.self, switched.inclusive);
  EXPECT_GE(switched.inclusive - switched.self,
            timed.timeOf.at(busy.get()).inclusive + foreign.inclusive);
  EXPECT_EQ(log.size(), 2u);  // 'text' reached its recorder twice: counting and timed run
  EXPECT_EQ(timed.timeOf.at(texts.get()).calls, 1);
}

TEST(ProfilerTiming, AConsumerThatThrowsLeavesNoCallOpenAndMergedProfilesAddUp) {
  frontend::AnalysisResult const analysed = frontend::analyze(kSource, "timed.m");
  ASSERT_NE(analysed.analysis, nullptr);
  AllNodes all;
  auto values = all.expressionStatement | std::make_unique<plexus::testing::StatementExpression>();
  values | std::make_shared<plexus::testing::Thrower<Node const&>>();

  Profiler first;
  first.enableTiming();
  MessageHelper const firstHelper{nullptr, &first};
  EXPECT_THROW(all.execute(*analysed.analysis, &firstHelper), std::runtime_error);
  EXPECT_EQ(first.openCalls(), 0u);
  ConsumerBase const* const transform = consumerOf(values.impl.get());
  EXPECT_EQ(first.timeOf.at(transform).calls, 1);

  Profiler second;
  second.enableTiming();
  MessageHelper const secondHelper{nullptr, &second};
  EXPECT_THROW(all.execute(*analysed.analysis, &secondHelper), std::runtime_error);

  Profiler merged;
  merged.merge(first);
  merged.merge(second);
  EXPECT_EQ(merged.numProduced.at(all.expressionStatement.impl.get()), 2);
  EXPECT_EQ(merged.numConsumed.at(transform), 2);
  EXPECT_EQ(merged.timeOf.at(transform).calls, 2);
  EXPECT_EQ(merged.timeOf.at(transform).inclusive,
            first.timeOf.at(transform).inclusive + second.timeOf.at(transform).inclusive);
  EXPECT_EQ(merged.timeOf.at(transform).self, first.timeOf.at(transform).self + second.timeOf.at(transform).self);
}

}  // namespace
