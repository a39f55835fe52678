#pragma once

// The hits of a pipeline through the graph, checked on the way against the
// naive evaluator: a family test gets the reference comparison for free on
// every snippet it writes.

#include <gtest/gtest.h>

#include <string>

#include "tests/support/hits.hpp"

namespace plexus::testing {

/// What the graph's consumer receives, after checking that the pipeline's
/// stages run alone give the same.
template <class Pipeline>
Lines checkedHitsOf(std::string const& source, Pipeline pipeline, std::string const& path = "t.m") {
  auto const snippet = analyse(source, path);
  Lines const graph = hitsOf(snippet, pipeline);
  EXPECT_EQ(graph, naiveHitsOf(snippet, pipeline)) << source;
  return graph;
}

}  // namespace plexus::testing
