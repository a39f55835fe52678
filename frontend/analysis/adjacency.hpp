#pragma once

#include <cstdint>
#include <limits>
#include <span>
#include <utility>
#include <vector>

namespace frontend {

/// No node: the parent of a root, an empty slot.
inline constexpr std::uint32_t kNoNode = std::numeric_limits<std::uint32_t>::max();

/// The edges of a graph of numbered nodes, stored flat: the targets of node
/// `n` are `targets[start[n]]` up to `targets[start[n + 1]]`. One allocation
/// per graph instead of one per node, which matters for bodies of a million
/// statements.
struct Adjacency {
  std::vector<std::uint32_t> start{0};  // nodeCount() + 1 offsets
  std::vector<std::uint32_t> targets;

  std::uint32_t nodeCount() const noexcept { return static_cast<std::uint32_t>(start.size() - 1); }
  std::span<std::uint32_t const> of(std::uint32_t node) const noexcept {
    return {targets.data() + start[node], targets.data() + start[node + 1]};
  }
  std::uint32_t degree(std::uint32_t node) const noexcept { return start[node + 1] - start[node]; }

  /// The adjacency of `nodeCount` nodes with the given (node, target) pairs,
  /// each node's targets in the order of the pairs.
  static Adjacency fromPairs(std::uint32_t nodeCount, std::vector<std::pair<std::uint32_t, std::uint32_t>> const& pairs) {
    Adjacency made;
    made.start.assign(nodeCount + 1, 0);
    for (auto const& pair : pairs) ++made.start[pair.first + 1];
    for (std::uint32_t n = 0; n < nodeCount; ++n) made.start[n + 1] += made.start[n];
    made.targets.resize(pairs.size());
    std::vector<std::uint32_t> next(made.start.begin(), made.start.end() - 1);
    for (auto const& pair : pairs) made.targets[next[pair.first]++] = pair.second;
    return made;
  }

  /// The same edges, reversed: the predecessors of each node.
  Adjacency reversed() const {
    std::vector<std::pair<std::uint32_t, std::uint32_t>> pairs;
    pairs.reserve(targets.size());
    for (std::uint32_t n = 0; n < nodeCount(); ++n) {
      for (std::uint32_t target : of(n)) pairs.emplace_back(target, n);
    }
    return fromPairs(nodeCount(), pairs);
  }
};

}  // namespace frontend
