#include "bench/graph_census.hpp"

#include <set>
#include <vector>

namespace plexus::bench {

std::size_t countVerticesBelow(ca::rulesystem::ProducerBase const& root) {
  std::set<ca::rulesystem::ConsumerBase const*> seen;
  std::vector<ca::rulesystem::ProducerBase const*> pending{&root};
  while (!pending.empty()) {
    ca::rulesystem::ProducerBase const* producer = pending.back();
    pending.pop_back();
    for (ca::rulesystem::ConsumerBase const* consumer : producer->consumers()) {
      if (!seen.insert(consumer).second) continue;
      // A stage vertex is both halves; a rule's own consumer ends the branch.
      if (auto const* next = dynamic_cast<ca::rulesystem::ProducerBase const*>(consumer)) pending.push_back(next);
    }
  }
  return seen.size();
}

}  // namespace plexus::bench
