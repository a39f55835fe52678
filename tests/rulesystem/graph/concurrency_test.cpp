// One finished graph carries several runs at once, each on its own thread with
// its own analysis, helper and profiler.

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <thread>
#include <vector>

#include "rulesystem/execution/all_nodes.hpp"
#include "rulesystem/graph/combinators.hpp"
#include "rulesystem/graph/subrule.hpp"
#include "rulesystem/syntax/isa.hpp"
#include "tests/support/stages.hpp"
#include "tests/support/switchables.hpp"
#include "tests/support/test_analysis.hpp"
#include "tests/support/tree_maker.hpp"

namespace {

using namespace ca::rulesystem;
using lf::astapi::NodeKind;

// What one run reports: the helper's sink of each thread.
struct Findings final : MessageSink {
  std::vector<std::string> lines;
};

template <class T>
class Report final : public Consumer<T> {
 public:
  Report(std::string rule, std::function<std::string(T)> describe)
      : rule_(std::move(rule)), describe_(std::move(describe)) {}
  std::u16string kindDescription() const override { return u"Report"; }
  std::u16string detailsDescription() const override { return u""; }
  void consume(T item, ca::Analysis const&, MessageHelper const* helper) const override {
    static_cast<Findings*>(helper->sink)->lines.push_back(rule_ + ": " + describe_(item));
  }

 private:
  std::string rule_;
  std::function<std::string(T)> describe_;
};

std::string fieldName(Field const& field) { return fl::i18n::to_utf8(field.getStringId().getString()); }

// A graph with switches (field names, node kinds), a combination and a subrule.
struct Rules {
  AllNodes all;
  Rules() {
    all.field | plexus::testing::isFieldNamed({u"alpha", u"beta"}) |
        std::make_shared<Report<Field const&>>("alpha or beta", fieldName);
    all.field | plexus::testing::isFieldNamed({u"alpha"}) | std::make_shared<Report<Field const&>>("alpha", fieldName);
    auto withNumbers = all.row | std::make_unique<plexus::testing::HasNumber>();
    all.row | subrule(withNumbers) |
        std::make_shared<Report<Row const&>>("row with number", [](Row const& row) {
          return std::to_string(row.getElements().size());
        });
    all.row | !subrule(withNumbers) | std::make_shared<Report<Row const&>>("row without number", [](Row const& row) {
      return std::to_string(row.getElements().size());
    });
    Producer<Node const&>(
        all.expressionStatement->transform<Node const&>(std::make_unique<plexus::testing::StatementExpression>())) |
        isa<NumberLiteral>() | std::make_shared<Report<NumberLiteral const&>>("number statement", [](auto const& n) {
          return fl::i18n::to_utf8(ca::astapi::toStdView(n.getText()));
        });
  }
};

// A tree whose content depends on `seed`, so that every thread sees other items.
std::unique_ptr<ca::clients::AnalysisImpl> makeAnalysis(int seed) {
  plexus::testing::TreeMaker t;
  std::vector<Node*> statements;
  char const* names[] = {"alpha", "beta", "gamma"};
  for (int i = 0; i < 40 + seed; ++i) {
    statements.push_back(t.stmt(t.b.make<DotOperation>(t.id("s"), t.field(names[(i + seed) % 3]))));
    std::vector<Expression*> elements;
    for (int j = 0; j < (i + seed) % 4; ++j) {
      elements.push_back((i + j + seed) % 3 == 0 ? static_cast<Expression*>(t.num(j)) : t.id("v"));
    }
    statements.push_back(t.stmt(t.b.make<Matrix>(t.list<Row>({t.b.make<Row>(t.b.list<Expression>(elements))}))));
    if (i % 5 == seed % 5) statements.push_back(t.stmt(t.num(i)));
  }
  return plexus::testing::makeAnalysis(
      t.b.finish(t.b.make<Program>(t.b.text(u"t.m"), t.b.list<Node>(statements))));
}

std::vector<std::string> run(Rules const& rules, ca::Analysis const& analysis, Profiler& profiler) {
  Findings findings;
  MessageHelper helper{&findings, &profiler};
  rules.all.execute(analysis, &helper);
  return findings.lines;
}

TEST(Concurrency, OneGraphServesSeveralThreadsWithTheirOwnAnalyses) {
  constexpr int threads = 4;
  constexpr int runsPerThread = 25;
  Rules const rules;

  std::vector<std::unique_ptr<ca::clients::AnalysisImpl>> analyses;
  std::vector<std::vector<std::string>> expected;
  for (int t = 0; t < threads; ++t) {
    analyses.push_back(makeAnalysis(t));
    Profiler profiler;
    expected.push_back(run(rules, *analyses.back(), profiler));
    ASSERT_FALSE(expected.back().empty());
  }
  ASSERT_NE(expected[0], expected[1]);

  std::vector<std::vector<std::vector<std::string>>> seen(threads);
  std::vector<Profiler> profilers(threads);
  std::vector<std::thread> workers;
  for (int t = 0; t < threads; ++t) {
    workers.emplace_back([&, t] {
      // Each thread has its own analysis of the same file, too.
      auto own = makeAnalysis(t);
      for (int i = 0; i < runsPerThread; ++i) seen[t].push_back(run(rules, *own, profilers[t]));
    });
  }
  for (auto& worker : workers) worker.join();

  for (int t = 0; t < threads; ++t) {
    for (int i = 0; i < runsPerThread; ++i) EXPECT_EQ(seen[t][i], expected[t]) << "thread " << t << " run " << i;
    EXPECT_EQ(profilers[t].numProduced.at(rules.all.program.impl.get()), runsPerThread);
  }
}

}  // namespace
