#include "frontend/analysis/dominator_tree.hpp"

#include <stdexcept>
#include <utility>

namespace frontend {

namespace {

// The working state of Lengauer and Tarjan's algorithm, on the numbers of a
// depth-first walk from the root (the root is 0).
class LengauerTarjan {
 public:
  LengauerTarjan(Adjacency const& successors, Adjacency const& predecessors, std::uint32_t root)
      : successors_(successors), predecessors_(predecessors) {
    numberDepthFirst(root);
  }

  /// The immediate dominator of every node, by node.
  std::vector<std::uint32_t> solve() {
    std::uint32_t const count = static_cast<std::uint32_t>(vertex_.size());
    semi_.resize(count);
    label_.resize(count);
    ancestor_.assign(count, kNoNode);
    bucketHead_.assign(count, kNoNode);
    bucketNext_.assign(count, kNoNode);
    std::vector<std::uint32_t> idom(count, kNoNode);
    for (std::uint32_t i = 0; i < count; ++i) semi_[i] = label_[i] = i;

    for (std::uint32_t w = count; w-- > 1;) {
      for (std::uint32_t predecessor : predecessors_.of(vertex_[w])) {
        std::uint32_t const v = number_[predecessor];
        std::uint32_t const u = eval(v);
        if (semi_[u] < semi_[w]) semi_[w] = semi_[u];
      }
      bucketNext_[w] = bucketHead_[semi_[w]];
      bucketHead_[semi_[w]] = w;
      std::uint32_t const p = parent_[w];
      ancestor_[w] = p;
      for (std::uint32_t v = bucketHead_[p]; v != kNoNode; v = bucketNext_[v]) {
        std::uint32_t const u = eval(v);
        idom[v] = semi_[u] < semi_[v] ? u : p;
      }
      bucketHead_[p] = kNoNode;
    }
    for (std::uint32_t w = 1; w < count; ++w) {
      if (idom[w] != semi_[w]) idom[w] = idom[idom[w]];
    }

    std::vector<std::uint32_t> byNode(number_.size(), kNoNode);
    for (std::uint32_t w = 1; w < count; ++w) byNode[vertex_[w]] = vertex_[idom[w]];
    return byNode;
  }

 private:
  void numberDepthFirst(std::uint32_t root) {
    std::uint32_t const nodes = successors_.nodeCount();
    number_.assign(nodes, kNoNode);
    vertex_.reserve(nodes);
    parent_.reserve(nodes);
    // Each entry: a node and the index of its next successor to look at.
    std::vector<std::pair<std::uint32_t, std::uint32_t>> stack;
    auto discover = [&](std::uint32_t node, std::uint32_t parent) {
      number_[node] = static_cast<std::uint32_t>(vertex_.size());
      vertex_.push_back(node);
      parent_.push_back(parent);
      stack.emplace_back(node, successors_.start[node]);
    };
    discover(root, kNoNode);
    while (!stack.empty()) {
      auto& [node, next] = stack.back();
      if (next == successors_.start[node + 1]) {
        stack.pop_back();
        continue;
      }
      std::uint32_t const successor = successors_.targets[next++];
      if (number_[successor] == kNoNode) discover(successor, number_[node]);
    }
    if (vertex_.size() != nodes) throw std::logic_error("a node of the flow graph is not reachable from its root");
  }

  // The node of least semidominator on the compressed path above v.
  std::uint32_t eval(std::uint32_t v) {
    if (ancestor_[v] == kNoNode) return v;
    compress(v);
    return label_[v];
  }

  // Path compression, as the textbook's recursion but with the path held in a
  // vector: the path can be as long as the graph.
  void compress(std::uint32_t v) {
    path_.clear();
    for (std::uint32_t x = v; ancestor_[ancestor_[x]] != kNoNode; x = ancestor_[x]) path_.push_back(x);
    for (auto at = path_.rbegin(); at != path_.rend(); ++at) {
      std::uint32_t const x = *at;
      std::uint32_t const a = ancestor_[x];
      if (semi_[label_[a]] < semi_[label_[x]]) label_[x] = label_[a];
      ancestor_[x] = ancestor_[a];
    }
  }

  Adjacency const& successors_;
  Adjacency const& predecessors_;
  std::vector<std::uint32_t> number_;  // by node: its depth-first number
  std::vector<std::uint32_t> vertex_;  // by number: the node
  std::vector<std::uint32_t> parent_;  // by number: the number of its depth-first parent
  std::vector<std::uint32_t> semi_, label_, ancestor_, bucketHead_, bucketNext_;
  std::vector<std::uint32_t> path_;
};

}  // namespace

DominatorTree::DominatorTree(Adjacency const& successors, Adjacency const& predecessors, std::uint32_t root)
    : root_(root), idom_(LengauerTarjan(successors, predecessors, root).solve()) {
  std::uint32_t const nodes = successors.nodeCount();
  std::vector<std::pair<std::uint32_t, std::uint32_t>> edges;
  edges.reserve(nodes);
  for (std::uint32_t node = 0; node < nodes; ++node) {
    if (idom_[node] != kNoNode) edges.emplace_back(idom_[node], node);
  }
  children_ = Adjacency::fromPairs(nodes, edges);

  first_.assign(nodes, 0);
  last_.assign(nodes, 0);
  std::uint32_t counter = 0;
  std::vector<std::pair<std::uint32_t, std::uint32_t>> stack{{root, 0}};
  first_[root] = counter++;
  while (!stack.empty()) {
    auto& [node, next] = stack.back();
    auto const below = children_.of(node);
    if (next == below.size()) {
      last_[node] = counter - 1;
      stack.pop_back();
      continue;
    }
    std::uint32_t const child = below[next++];
    first_[child] = counter++;
    stack.emplace_back(child, 0);
  }
}

}  // namespace frontend
