// The rules of a run on one graph: which consumers report which rule, and
// the vertices of each rule's pipeline, with a real rule of the table.

#include <gtest/gtest.h>

#include <algorithm>

#include "tools/check/rule_graph.hpp"
#include "tools/listing/graph_listing.hpp"
#include "tools/rules/rule_table.hpp"

namespace {

using ca::rulesystem::ConsumerBase;

plexus::check::RuleSelection only(std::string const& id) {
  plexus::check::RuleSelection selection = plexus::check::RuleSelection::defaults();
  std::fill(selection.enabled.begin(), selection.enabled.end(), false);
  plexus::check::applyCommandLine(selection, {id}, {});
  return selection;
}

TEST(RuleGraph, EachRuleKnowsItsReportsAndItsPipelineReachesBackToARoot) {
  std::size_t const globalDeclaration = plexus::rules::findRule("global-declaration")->index;
  plexus::check::RuleDeclarations const declarations = plexus::check::declarationsOf(only("global-declaration"));
  ASSERT_EQ(declarations.size(), 1u);
  EXPECT_EQ(declarations.begin()->first, globalDeclaration);

  plexus::check::RuleGraph const graph(declarations);
  ASSERT_EQ(graph.reports().size(), 1u);
  auto const& reports = graph.reports().at(globalDeclaration);
  ASSERT_EQ(reports.size(), 1u);
  EXPECT_EQ(reports.front()->detailsDescription(), u"global-declaration");

  // Every consumer below the program root lies in the rule's pipeline, and
  // nothing else of the graph is a consumer.
  auto const owners = plexus::check::pipelineOwners(graph.all(), {reports});
  std::size_t consumers = 0;
  for (auto const* vertex : plexus::check::verticesOf(graph.all())) {
    auto const* consumer = dynamic_cast<ConsumerBase const*>(vertex);
    if (consumer == nullptr) continue;
    ++consumers;
    ASSERT_EQ(owners.count(consumer), 1u) << fl::i18n::to_utf8(vertex->kindDescription());
    EXPECT_EQ(owners.at(consumer), std::vector<std::size_t>{0});
  }
  EXPECT_GE(consumers, 4u);  // the symbols, the filter, the occurrences, ..., the report
  EXPECT_EQ(owners.size(), consumers);

  std::string const listing = plexus::listing::listGraph(graph.all());
  EXPECT_EQ(listing.rfind("#1 Root Program\n", 0), 0u) << listing;
  EXPECT_NE(listing.find("Report global-declaration\n"), std::string::npos) << listing;
}

TEST(RuleGraph, TwoDeclarationsOfARuleAndARuleWithoutPipeline) {
  std::size_t const globalDeclaration = plexus::rules::findRule("global-declaration")->index;
  std::size_t const syntaxError = plexus::rules::syntaxErrorRule().index;
  plexus::check::RuleDeclarations declarations;
  declarations[globalDeclaration] = {{}, {}};
  declarations[syntaxError] = {{}};
  plexus::check::RuleGraph const graph(declarations);
  // The checker reports syntax errors itself: no pipeline, no entry.
  EXPECT_EQ(graph.reports().count(syntaxError), 0u);
  auto const& reports = graph.reports().at(globalDeclaration);
  ASSERT_EQ(reports.size(), 2u);
  EXPECT_NE(reports[0], reports[1]);
  // Both declarations share every stage: only the reports are apart.
  auto const owners = plexus::check::pipelineOwners(graph.all(), {{reports[0]}, {reports[1]}});
  EXPECT_EQ(owners.at(reports[0]), std::vector<std::size_t>{0});
  EXPECT_EQ(owners.at(reports[1]), std::vector<std::size_t>{1});
  std::size_t shared = 0;
  for (auto const& [vertex, rules] : owners) shared += rules.size() == 2;
  EXPECT_EQ(shared, owners.size() - 2);
}

}  // namespace
