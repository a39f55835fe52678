#pragma once

#include <cstdint>
#include <vector>

#include "frontend/analysis/adjacency.hpp"

namespace frontend {

/// The dominator tree of a graph whose nodes are all reachable from its root:
/// node `a` dominates `b` when every path from the root to `b` passes `a`.
///
/// Built by the algorithm of Lengauer and Tarjan with path compression, in
/// O(E log N), and without recursion: a body of a million statements in a row
/// is a path a million nodes deep. The tree is numbered in preorder, so that
/// dominance is a comparison of two numbers.
class DominatorTree {
 public:
  DominatorTree(Adjacency const& successors, Adjacency const& predecessors, std::uint32_t root);

  std::uint32_t root() const noexcept { return root_; }
  /// The immediate dominator of a node; kNoNode for the root.
  std::uint32_t parent(std::uint32_t node) const noexcept { return idom_[node]; }
  /// The nodes that `node` immediately dominates.
  std::span<std::uint32_t const> children(std::uint32_t node) const noexcept { return children_.of(node); }
  /// The node's number in a preorder walk of the tree, and the greatest number
  /// in its subtree: `a` dominates `b` when first(a) <= first(b) <= last(a).
  std::uint32_t first(std::uint32_t node) const noexcept { return first_[node]; }
  std::uint32_t last(std::uint32_t node) const noexcept { return last_[node]; }
  bool dominates(std::uint32_t a, std::uint32_t b) const noexcept {
    return first_[a] <= first_[b] && first_[b] <= last_[a];
  }

 private:
  std::uint32_t root_;
  std::vector<std::uint32_t> idom_;
  Adjacency children_;
  std::vector<std::uint32_t> first_;
  std::vector<std::uint32_t> last_;
};

}  // namespace frontend
