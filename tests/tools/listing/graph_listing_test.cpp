// Listings of a finished graph: each vertex once, shared ones with their
// parent count, cases under their switch, counts from a profiler.

#include <gtest/gtest.h>

#include "rulesystem/execution/all_nodes.hpp"
#include "tests/support/recorder.hpp"
#include "tests/support/stages.hpp"
#include "tests/support/switchables.hpp"
#include "tests/support/test_analysis.hpp"
#include "tests/support/tree_maker.hpp"
#include "tools/listing/graph_listing.hpp"

namespace {

using namespace ca::rulesystem;
using plexus::testing::Log;

struct SmallGraph {
  AllNodes all;
  Log log;
  SmallGraph() {
    auto alphaOrBeta = all.field | plexus::testing::isFieldNamed({u"alpha", u"beta"});
    plexus::testing::record(alphaOrBeta, log, "alpha or beta");
    all.field | plexus::testing::isFieldNamed({u"alpha"});
    all.row | std::make_unique<plexus::testing::AcceptAll>();
    plexus::testing::record(all.use, log, "use");
  }
};

TEST(GraphListing, ListsEachVertexOnceWithSharedOnesReferredTo) {
  SmallGraph graph;
  EXPECT_EQ(plexus::listing::listGraph(graph.all),
            "#1 Root Field\n"
            "  #2 Switch FieldName\n"
            "    #3 Case alpha\n"
            "      #4 Combine  (2 parents)\n"
            "        #5 Recorder\n"
            "    #6 Case beta\n"
            "      -> #4\n"
            "#7 Root Row\n"
            "  #8 Where AcceptAll\n"
            "#9 Root Use\n"
            "  #10 Recorder\n"
            "(61 roots without rules not shown)\n");
}

TEST(GraphListing, ShowsProfilerCountsPerVertex) {
  SmallGraph graph;
  plexus::testing::TreeMaker t;
  auto* alpha = t.stmt(t.b.make<DotOperation>(t.id("s"), t.field("alpha")));
  auto* gamma = t.stmt(t.b.make<DotOperation>(t.id("s"), t.field("gamma")));
  auto analysis = plexus::testing::makeAnalysis(t.program({alpha, gamma}));
  Profiler profiler;
  MessageHelper helper{nullptr, &profiler};
  graph.all.execute(*analysis, &helper);

  std::string const listing = plexus::listing::listGraph(graph.all, {&profiler, false});
  EXPECT_NE(listing.find("#1 Root Field  [out 2]\n"), std::string::npos) << listing;
  EXPECT_NE(listing.find("#2 Switch FieldName  [in 2]\n"), std::string::npos) << listing;
  EXPECT_NE(listing.find("#3 Case alpha  [out 1]\n"), std::string::npos) << listing;
  EXPECT_NE(listing.find("#4 Combine  (2 parents)  [in 1, out 1]\n"), std::string::npos) << listing;
  EXPECT_NE(listing.find("#6 Case beta  [out 0]\n"), std::string::npos) << listing;
}

TEST(GraphListing, IdleRootsOnRequestAndDotWithDashedCaseEdges) {
  SmallGraph graph;
  std::string const everything = plexus::listing::listGraph(graph.all, {nullptr, true});
  EXPECT_NE(everything.find("Root Method\n"), std::string::npos);
  EXPECT_NE(everything.find("Root Definition\n"), std::string::npos);
  EXPECT_EQ(everything.find("not shown"), std::string::npos);

  std::string const dot = plexus::listing::graphToDot(graph.all);
  EXPECT_EQ(dot.rfind("digraph plexus {\n", 0), 0u);
  EXPECT_NE(dot.find("  v2 [label=\"Switch\\nFieldName\"];\n"), std::string::npos) << dot;
  EXPECT_NE(dot.find("  v1 -> v2;\n"), std::string::npos) << dot;
  EXPECT_NE(dot.find("  v2 -> v3 [style=dashed];\n"), std::string::npos) << dot;
  EXPECT_NE(dot.find("  v6 -> v4;\n"), std::string::npos) << dot;
  EXPECT_EQ(dot.substr(dot.size() - 2), "}\n");
}

}  // namespace
