#pragma once

// The longest chain the parser takes, found by asking it, so that tests of
// deep chains stand exactly at its limit whatever the limit is.

#include <string>

#include "frontend/parse.hpp"

namespace plexus::testing {

/// The source `head + link * n + tail` for the greatest n that parses without
/// errors, with that n. The parser refuses a chain deeper than its nesting
/// limit, so n stops a little below `frontend::maxNestingDepth`.
struct LongestChain {
  std::string source;
  int links = 0;
};

inline LongestChain longestChainTheParserTakes(std::string const& head, std::string const& link,
                                               std::string const& tail) {
  LongestChain longest;
  std::string chain = head;
  for (int links = 0; links <= frontend::maxNestingDepth; ++links) {
    std::string const source = chain + tail;
    if (frontend::parse(source, "t.m").hasErrors()) break;
    longest = {source, links};
    chain += link;
  }
  return longest;
}

}  // namespace plexus::testing
