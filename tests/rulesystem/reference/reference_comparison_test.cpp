// Sharing never changes an answer: every pipeline of the reference table is
// declared on one graph, which runs once per snippet, and each consumer must
// receive exactly the items, in the same order, that the naive evaluator
// gives for its pipeline alone.

#include <gtest/gtest.h>

#include <set>

#include "tests/rulesystem/reference/reference_pipelines.hpp"

namespace {

using namespace plexus::testing;

TEST(ReferenceTable, IsLargeAndItsPipelinesAndSnippetsAreDistinct) {
  auto const pipelines = allReferencePipelines();
  auto const snippets = referenceSnippets();
  EXPECT_GE(pipelines.size(), 60u);
  EXPECT_GE(snippets.size(), 25u);
  std::set<std::string> texts;
  for (auto const& pipeline : pipelines) EXPECT_TRUE(texts.insert(pipeline.text).second) << pipeline.text;
  std::set<std::string> names;
  for (auto const& snippet : snippets) EXPECT_TRUE(names.insert(snippet.name).second) << snippet.name;
}

TEST(ReferenceTable, EveryConsumerOfTheSharedGraphReceivesWhatItsPipelineAloneGives) {
  auto const pipelines = allReferencePipelines();
  ca::rulesystem::AllNodes all;
  std::string source;  // the snippet being run, for the descriptions
  std::vector<Lines> received(pipelines.size());
  for (std::size_t i = 0; i < pipelines.size(); ++i) pipelines[i].declare(all, received[i], &source);

  std::size_t pipelinesWithHits = 0;
  std::vector<bool> everHit(pipelines.size(), false);
  for (ReferenceSnippet const& snippet : referenceSnippets()) {
    SCOPED_TRACE(snippet.name);
    AnalysedSnippet const analysed = analyse(snippet.source, snippet.path);
    source = snippet.source;
    for (Lines& lines : received) lines.clear();
    all.execute(*analysed.analysis, nullptr);
    for (std::size_t i = 0; i < pipelines.size(); ++i) {
      Lines const expected = pipelines[i].naive(*analysed.analysis, &source);
      EXPECT_EQ(received[i], expected) << pipelines[i].text;
      if (!expected.empty()) everHit[i] = true;
    }
  }
  // A pipeline that never delivers anything proves nothing about sharing.
  for (std::size_t i = 0; i < pipelines.size(); ++i) {
    EXPECT_TRUE(everHit[i]) << "no snippet gives a hit for " << pipelines[i].text;
    pipelinesWithHits += everHit[i] ? 1 : 0;
  }
  EXPECT_EQ(pipelinesWithHits, pipelines.size());
}

}  // namespace
