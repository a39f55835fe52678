#include "frontend/analysis/reaching_definitions.hpp"

#include <algorithm>
#include <utility>

#include "frontend/analysis/dominator_tree.hpp"

namespace frontend {

namespace {

using Pairs = std::vector<std::pair<std::uint32_t, std::uint32_t>>;

std::span<VariableFlow::Event const> eventsOf(VariableFlow const& flow, std::uint32_t node) {
  return {flow.events.data() + flow.eventStart[node], flow.events.data() + flow.eventStart[node + 1]};
}

// The graph with one more node, the root: it leads to node 0 and to every
// node that node 0 does not reach. The root defines nothing, so the paths it
// adds bring no definitions, but every node now has a dominator.
Adjacency withRoot(Adjacency const& graph) {
  std::uint32_t const nodes = graph.nodeCount();
  std::vector<bool> reached(nodes, false);
  std::vector<std::uint32_t> pending{0};
  reached[0] = true;
  while (!pending.empty()) {
    std::uint32_t const node = pending.back();
    pending.pop_back();
    for (std::uint32_t successor : graph.of(node)) {
      if (!reached[successor]) {
        reached[successor] = true;
        pending.push_back(successor);
      }
    }
  }
  Adjacency rooted = graph;
  rooted.targets.push_back(0);
  for (std::uint32_t node = 1; node < nodes; ++node) {
    if (!reached[node]) rooted.targets.push_back(node);
  }
  rooted.start.push_back(static_cast<std::uint32_t>(rooted.targets.size()));
  return rooted;
}

// The dominance frontier of every node: the nodes where its dominance ends.
// From each predecessor of a join, the walk up the dominator tree stops at a
// node that already has the join: the nodes above it have it too. Without
// that, a join with many predecessors deep in one chain (the exit after
// many returns) would cost the square of the chain.
Adjacency dominanceFrontiers(Adjacency const& predecessors, DominatorTree const& tree) {
  std::uint32_t const nodes = predecessors.nodeCount();
  std::vector<std::uint32_t> lastJoin(nodes, kNoNode);
  Pairs pairs;
  for (std::uint32_t join = 0; join < nodes; ++join) {
    if (predecessors.degree(join) < 2) continue;
    std::uint32_t const top = tree.parent(join);
    for (std::uint32_t runner : predecessors.of(join)) {
      for (; runner != top && runner != kNoNode && lastJoin[runner] != join; runner = tree.parent(runner)) {
        lastJoin[runner] = join;
        pairs.emplace_back(runner, join);
      }
    }
  }
  return Adjacency::fromPairs(nodes, pairs);
}

}  // namespace

void ReachingDefinitions::solve(VariableFlow const& flow, Report const& report) {
  if (flow.successors.nodeCount() == 0) return;
  eventCount_ = static_cast<std::uint32_t>(flow.events.size());
  Adjacency const successors = withRoot(flow.successors);
  Adjacency const predecessors = successors.reversed();
  DominatorTree const tree(successors, predecessors, flow.successors.nodeCount());
  Adjacency const frontiers = dominanceFrontiers(predecessors, tree);
  placeMerges(flow, frontiers);
  name(flow, tree);
  linkMerges(flow, predecessors, tree, frontiers);
  answer(flow, report);
}

// A merge of each variable at the iterated dominance frontier of the nodes
// that define it; none at a node that neither goes on nor reads (the exit),
// where no one could read it.
void ReachingDefinitions::placeMerges(VariableFlow const& flow, Adjacency const& frontiers) {
  std::uint32_t const nodes = flow.successors.nodeCount();
  std::uint32_t const variables = flow.variableCount;
  Pairs definingNodes;
  std::vector<std::uint32_t> lastNode(variables, kNoNode);
  for (std::uint32_t node = 0; node < nodes; ++node) {
    for (VariableFlow::Event const& event : eventsOf(flow, node)) {
      if (event.defines && lastNode[event.variable] != node) {
        lastNode[event.variable] = node;
        definingNodes.emplace_back(event.variable, node);
      }
    }
  }
  Adjacency const definers = Adjacency::fromPairs(variables, definingNodes);

  std::vector<std::uint32_t> placed(frontiers.nodeCount(), kNoNode);
  std::vector<std::uint32_t> queued(frontiers.nodeCount(), kNoNode);
  std::vector<std::uint32_t> work;
  Pairs merges;  // (node, variable)
  for (std::uint32_t variable = 0; variable < variables; ++variable) {
    for (std::uint32_t node : definers.of(variable)) {
      queued[node] = variable;
      work.push_back(node);
    }
    while (!work.empty()) {
      std::uint32_t const node = work.back();
      work.pop_back();
      for (std::uint32_t join : frontiers.of(node)) {
        if (placed[join] == variable) continue;
        placed[join] = variable;
        if (flow.successors.degree(join) == 0 && flow.eventStart[join] == flow.eventStart[join + 1]) continue;
        merges.emplace_back(join, variable);
        if (queued[join] != variable) {
          queued[join] = variable;
          work.push_back(join);
        }
      }
    }
  }
  Adjacency const byNode = Adjacency::fromPairs(nodes, merges);
  mergeStart_ = byNode.start;
  merges_.clear();
  merges_.reserve(merges.size());
  for (std::uint32_t node = 0; node < nodes; ++node) {
    for (std::uint32_t variable : byNode.of(node)) merges_.emplace_back(node, variable);
  }
}

// Walks the dominator tree with the value of every variable as it stands,
// undoing a node's changes when its subtree is done: each use reads the value
// it finds, each merge notes the value its node's dominator leaves, and each
// node that gives a variable a value of its own becomes a site.
void ReachingDefinitions::name(VariableFlow const& flow, DominatorTree const& tree) {
  std::uint32_t const nodes = flow.successors.nodeCount();
  std::uint32_t const mergeBase = 1 + eventCount_;
  std::vector<std::uint32_t> current(flow.variableCount, 0);
  std::vector<std::uint32_t> siteMark(flow.variableCount, kNoNode);
  std::vector<std::pair<std::uint32_t, std::uint32_t>> undo;  // (variable, value before)
  read_.assign(eventCount_, 0);
  mergeAbove_.assign(merges_.size(), 0);
  sites_.clear();

  auto enter = [&](std::uint32_t node) {
    std::size_t const mark = undo.size();
    if (node >= nodes) return mark;  // the root
    for (std::uint32_t merge = mergeStart_[node]; merge < mergeStart_[node + 1]; ++merge) {
      std::uint32_t const variable = merges_[merge].second;
      mergeAbove_[merge] = current[variable];
      undo.emplace_back(variable, current[variable]);
      current[variable] = mergeBase + merge;
    }
    for (std::uint32_t e = flow.eventStart[node]; e < flow.eventStart[node + 1]; ++e) {
      VariableFlow::Event const& event = flow.events[e];
      if (event.uses) read_[e] = current[event.variable];
      if (event.defines) {
        undo.emplace_back(event.variable, current[event.variable]);
        current[event.variable] = 1 + e;
      }
    }
    std::size_t const firstSite = sites_.size();
    for (std::size_t i = mark; i < undo.size(); ++i) {
      std::uint32_t const variable = undo[i].first;
      if (siteMark[variable] == node) continue;
      siteMark[variable] = node;
      sites_.push_back({variable, node, undo[i].second, 0});
    }
    for (std::size_t s = firstSite; s < sites_.size(); ++s) sites_[s].after = current[sites_[s].variable];
    return mark;
  };

  struct Frame {
    std::uint32_t node;
    std::uint32_t nextChild;
    std::size_t undoMark;
  };
  std::vector<Frame> stack{{tree.root(), 0, enter(tree.root())}};
  while (!stack.empty()) {
    Frame& frame = stack.back();
    auto const children = tree.children(frame.node);
    if (frame.nextChild < children.size()) {
      std::uint32_t const child = children[frame.nextChild++];
      std::size_t const mark = enter(child);
      stack.push_back({child, 0, mark});
      continue;
    }
    for (std::size_t i = undo.size(); i > frame.undoMark; --i) current[undo[i - 1].first] = undo[i - 1].second;
    undo.resize(frame.undoMark);
    stack.pop_back();
  }
}

// The inputs of each merge at node `y`: the value each predecessor of `y`
// leaves. That value comes from the nearest site of the variable above the
// predecessor in the dominator tree, and such a site either has `y` in its
// dominance frontier or lies above `y`'s dominator, where the merge noted the
// value it found. So the candidates are few, and a candidate delivers its
// value when more predecessors lie in its subtree than in the subtrees of
// the candidates just below it, which deliver their own.
void ReachingDefinitions::linkMerges(VariableFlow const& flow, Adjacency const& predecessors,
                                     DominatorTree const& tree, Adjacency const& frontiers) {
  std::uint32_t const variables = flow.variableCount;
  std::uint32_t const mergeCount = static_cast<std::uint32_t>(merges_.size());
  Pairs inputs;  // (merge, value)
  if (mergeCount == 0) {
    mergeInputs_ = Adjacency::fromPairs(0, inputs);
    return;
  }

  // The predecessors of each node by their preorder number in the dominator
  // tree, sorted, so that those in a subtree are counted by two searches.
  std::vector<std::uint32_t> sortedPredecessors(predecessors.targets.size());
  for (std::uint32_t node = 0; node < predecessors.nodeCount(); ++node) {
    auto out = sortedPredecessors.begin() + predecessors.start[node];
    auto const begin = out;
    for (std::uint32_t predecessor : predecessors.of(node)) *out++ = tree.first(predecessor);
    std::sort(begin, out);
  }
  auto countBelow = [&](std::uint32_t top, std::uint32_t join) {
    auto const begin = sortedPredecessors.begin() + predecessors.start[join];
    auto const end = sortedPredecessors.begin() + predecessors.start[join + 1];
    return static_cast<std::uint32_t>(std::upper_bound(begin, end, tree.last(top)) -
                                      std::lower_bound(begin, end, tree.first(top)));
  };

  Pairs sitePairs, mergePairs;
  for (std::uint32_t s = 0; s < sites_.size(); ++s) sitePairs.emplace_back(sites_[s].variable, s);
  for (std::uint32_t m = 0; m < mergeCount; ++m) mergePairs.emplace_back(merges_[m].second, m);
  Adjacency const sitesByVariable = Adjacency::fromPairs(variables, sitePairs);
  Adjacency const mergesByVariable = Adjacency::fromPairs(variables, mergePairs);

  std::vector<std::uint32_t> mergeAt(frontiers.nodeCount(), kNoNode);
  std::vector<std::uint32_t> covered(1 + eventCount_ + mergeCount, 0);
  Pairs candidates;  // (merge, site)
  std::vector<std::uint32_t> counts;
  for (std::uint32_t variable = 0; variable < variables; ++variable) {
    auto const merges = mergesByVariable.of(variable);
    if (merges.empty()) continue;
    for (std::uint32_t merge : merges) mergeAt[merges_[merge].first] = merge;
    candidates.clear();
    for (std::uint32_t site : sitesByVariable.of(variable)) {
      for (std::uint32_t join : frontiers.of(sites_[site].node)) {
        if (mergeAt[join] != kNoNode) candidates.emplace_back(mergeAt[join], site);
      }
    }
    for (std::uint32_t merge : merges) mergeAt[merges_[merge].first] = kNoNode;
    std::sort(candidates.begin(), candidates.end());

    auto group = candidates.begin();
    for (std::uint32_t merge : merges) {
      std::uint32_t const join = merges_[merge].first;
      auto const begin = std::find_if(group, candidates.end(), [merge](auto const& c) { return c.first >= merge; });
      auto const end = std::find_if(begin, candidates.end(), [merge](auto const& c) { return c.first != merge; });
      group = end;
      counts.clear();
      for (auto c = begin; c != end; ++c) {
        Site const& site = sites_[c->second];
        counts.push_back(countBelow(site.node, join));
        covered[site.before] += counts.back();
      }
      for (auto c = begin; c != end; ++c) {
        Site const& site = sites_[c->second];
        if (counts[static_cast<std::size_t>(c - begin)] > covered[site.after]) inputs.emplace_back(merge, site.after);
      }
      if (predecessors.degree(join) > covered[mergeAbove_[merge]]) inputs.emplace_back(merge, mergeAbove_[merge]);
      for (auto c = begin; c != end; ++c) covered[sites_[c->second].before] = 0;
    }
  }
  mergeInputs_ = Adjacency::fromPairs(mergeCount, inputs);
}

void ReachingDefinitions::answer(VariableFlow const& flow, Report const& report) {
  memoStart_.assign(merges_.size(), kNoNode);
  memo_.clear();
  visited_.assign(1 + eventCount_ + merges_.size(), 0);
  query_ = 0;
  for (std::uint32_t e = 0; e < eventCount_; ++e) {
    if (!flow.events[e].uses) continue;
    std::uint32_t const value = read_[e];
    if (value == 0) {
      report(e, {});
    } else if (value <= eventCount_) {
      std::uint32_t const definition = value - 1;
      report(e, {&definition, 1});
    } else {
      report(e, definitionsOfMerge(value - 1 - eventCount_));
    }
  }
}

// The definitions that a merge brings together, through the merges among its
// inputs (loops make cycles); kept for the next use that reads it.
std::span<std::uint32_t const> ReachingDefinitions::definitionsOfMerge(std::uint32_t merge) {
  if (memoStart_[merge] != kNoNode) return memo_[memoStart_[merge]];
  std::uint32_t const mergeBase = 1 + eventCount_;
  ++query_;
  std::vector<std::uint32_t> definitions;
  std::vector<std::uint32_t> pending{merge};
  visited_[mergeBase + merge] = query_;
  while (!pending.empty()) {
    std::uint32_t const at = pending.back();
    pending.pop_back();
    for (std::uint32_t value : mergeInputs_.of(at)) {
      if (value == 0 || visited_[value] == query_) continue;
      visited_[value] = query_;
      if (value < mergeBase) {
        definitions.push_back(value - 1);
      } else {
        pending.push_back(value - mergeBase);
      }
    }
  }
  std::sort(definitions.begin(), definitions.end());
  memoStart_[merge] = static_cast<std::uint32_t>(memo_.size());
  memo_.push_back(std::move(definitions));
  return memo_.back();
}

}  // namespace frontend
