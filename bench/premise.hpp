#pragma once

#include <cstdio>
#include <cstdlib>
#include <string>

namespace plexus::bench {

/// Stops the process when a premise of the measurements does not hold: a
/// number measured on a graph that is not what it claims to be is worthless.
inline void require(bool premise, std::string const& what) {
  if (premise) return;
  std::fprintf(stderr, "plexus_bench: %s\n", what.c_str());
  std::abort();
}

}  // namespace plexus::bench
