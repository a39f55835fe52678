#pragma once

#include <cstddef>

#include "rulesystem/graph/vertex.hpp"

namespace plexus::bench {

/// The number of distinct vertices reachable downstream of `root`, the root
/// itself not counted. A vertex fed by several producers counts once.
std::size_t countVerticesBelow(ca::rulesystem::ProducerBase const& root);

}  // namespace plexus::bench
