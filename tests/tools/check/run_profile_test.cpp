// The profile's arithmetic: each rule's time is the self time of the
// vertices only it has plus an even part of those it shares, and the shared
// line counts each shared vertex once. The times are set by the test, so
// that the figures are exact.

#include <gtest/gtest.h>

#include <chrono>
#include <memory>

#include "rulesystem/rulesystem.hpp"
#include "tests/support/recorder.hpp"
#include "tests/support/stages.hpp"
#include "tools/check/run_profile.hpp"

namespace {

using namespace ca::rulesystem;
using plexus::check::Milliseconds;
using std::chrono::nanoseconds;


ConsumerBase const* vertexOf(ProducerBase const* producer) { return dynamic_cast<ConsumerBase const*>(producer); }

Milliseconds ns(double count) { return std::chrono::duration<double, std::nano>(count); }

void setSelf(Profiler& profiler, ConsumerBase const* vertex, std::int64_t self) {
  profiler.timeOf[vertex].self = nanoseconds(self);
  profiler.timeOf[vertex].inclusive = nanoseconds(self);
  profiler.timeOf[vertex].calls = 1;
}

TEST(RunProfile, SharedVerticesAreSplitEvenlyAmongTheirRulesAndCountedOnceAsShared) {
  // a: numbers as statements; b: texts as statements; c: numbers too. All
  // three share the transform and the switch behind it; a and c also share
  // the case's downcast. A recorder on the transform is no rule's.
  AllNodes all;
  plexus::testing::Log log;
  auto values = all.expressionStatement | std::make_unique<plexus::testing::StatementExpression>();
  auto numbers = values | isa<NumberLiteral>();
  auto texts = values | isa<CharVectorLiteral>();
  auto reportA = plexus::testing::record(numbers, log, "a");
  auto reportB = plexus::testing::record(texts, log, "b");
  auto reportC = plexus::testing::record(numbers, log, "c");
  auto bystander = plexus::testing::record(values, log, "no rule");
  ConsumerBase const* const transform = vertexOf(values.impl.get());
  ConsumerBase const* const switchVertex = values->consumers().front();
  ASSERT_EQ(switchVertex->kindDescription(), u"Switch");

  Profiler profiler;
  setSelf(profiler, transform, 300);
  setSelf(profiler, switchVertex, 90);
  setSelf(profiler, vertexOf(numbers.impl.get()), 10);
  setSelf(profiler, reportA.get(), 20);
  setSelf(profiler, vertexOf(texts.impl.get()), 30);
  setSelf(profiler, reportB.get(), 40);
  setSelf(profiler, reportC.get(), 60);
  setSelf(profiler, bystander.get(), 7);
  profiler.numConsumed[reportA.get()] = 5;
  profiler.numConsumed[reportB.get()] = 2;

  plexus::check::RuleTimes const times =
      plexus::check::ruleTimes(all, {{"a", {reportA.get()}}, {"b", {reportB.get()}}, {"c", {reportC.get()}}}, profiler);

  ASSERT_EQ(times.rows.size(), 3u);
  // b: 30 + 40 own, a third of 300 and of 90; c: 60 own, thirds and half of
  // 10; a: 20 own, the same shares as c. Most time first.
  EXPECT_EQ(times.rows[0].rule, "b");
  EXPECT_EQ(times.rows[0].items, 2);
  EXPECT_DOUBLE_EQ(times.rows[0].own.count(), ns(70).count());
  EXPECT_DOUBLE_EQ(times.rows[0].share.count(), ns(130).count());
  EXPECT_EQ(times.rows[1].rule, "c");
  EXPECT_EQ(times.rows[1].items, 0);  // counted nothing: no entry
  EXPECT_DOUBLE_EQ(times.rows[1].own.count(), ns(60).count());
  EXPECT_DOUBLE_EQ(times.rows[1].share.count(), ns(135).count());
  EXPECT_EQ(times.rows[2].rule, "a");
  EXPECT_EQ(times.rows[2].items, 5);
  EXPECT_DOUBLE_EQ(times.rows[2].time().count(), ns(155).count());
  // Each shared vertex once: 300 + 90 + 10, which the shares add up to.
  EXPECT_DOUBLE_EQ(times.shared.count(), ns(400).count());
  EXPECT_DOUBLE_EQ((times.rows[0].share + times.rows[1].share + times.rows[2].share).count(), times.shared.count());
  EXPECT_DOUBLE_EQ(times.unowned.count(), ns(7).count());
  EXPECT_DOUBLE_EQ(times.total().count(), ns(557).count());
}

TEST(RunProfile, EqualTimesAreOrderedByRuleAndTheTableShowsEveryLine) {
  AllNodes all;
  plexus::testing::Log log;
  auto values = all.expressionStatement | std::make_unique<plexus::testing::StatementExpression>();
  auto second = plexus::testing::record(values, log, "second");
  auto first = plexus::testing::record(values, log, "first");
  Profiler profiler;
  setSelf(profiler, vertexOf(values.impl.get()), 2'000'000);
  plexus::check::RunProfile profile;
  profile.rules = plexus::check::ruleTimes(all, {{"zeta", {second.get()}}, {"alpha", {first.get()}}}, profiler);
  ASSERT_EQ(profile.rules.rows.size(), 2u);
  EXPECT_EQ(profile.rules.rows[0].rule, "alpha");
  EXPECT_EQ(profile.rules.rows[1].rule, "zeta");

  profile.parse = Milliseconds(3);
  profile.analyses = {{"names", Milliseconds(1)}, {"use-def", Milliseconds(0.5)}};
  profile.workers = Milliseconds(10);
  profile.wall = Milliseconds(6);
  profile.threads = 2;
  profile.files = 4;
  // Rows under their headings, the other lines under the time column; the
  // workers' 10 ms less 2 of rules, 3 of parsing and 1.5 of analyses is
  // the rest.
  EXPECT_EQ(plexus::check::formatProfile(profile),
            "profile: 4 files on 2 threads, times in ms\n"
            "rule                                     items       time        own     shared\n"
            "alpha                                        0      1.000      0.000      1.000\n"
            "zeta                                         0      1.000      0.000      1.000\n"
            "shared by rules (each vertex once)                  2.000\n"
            "rules                                               2.000\n"
            "parse                                               3.000\n"
            "analysis: names                                     1.000\n"
            "analysis: use-def                                   0.500\n"
            "other (reading, tree walk, suppressions)            3.500\n"
            "threads in all                                     10.000\n"
            "total (wall clock)                                  6.000\n");
}

}  // namespace
