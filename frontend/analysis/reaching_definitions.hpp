#pragma once

#include <cstdint>
#include <functional>
#include <span>
#include <vector>

#include "frontend/analysis/adjacency.hpp"

namespace frontend {

class DominatorTree;

/// A control-flow graph whose nodes read and write variables: the question
/// that reaching definitions answers, apart from any syntax.
struct VariableFlow {
  /// One read or write of a variable. An event that both reads and writes
  /// (an assignment to part of a variable) reads first.
  struct Event {
    std::uint32_t variable;
    bool uses;
    bool defines;
  };

  /// Where control goes from each node. Node 0 is where it starts; a node
  /// that no path from there reaches still hands its definitions on.
  Adjacency successors;
  /// The events of node `n`, in the order they happen, are
  /// `events[eventStart[n]]` up to `events[eventStart[n + 1]]`.
  std::vector<std::uint32_t> eventStart{0};
  std::vector<Event> events;
  std::uint32_t variableCount = 0;
};

/// Which definitions reach each use: definition `d` of a variable reaches a
/// use of it when some path of the graph leads from `d` to the use with no
/// other definition of the variable on the way. Exactly the answer of the
/// iterative data-flow solution with one bit per definition, but sparse:
///
/// - the graph gets a root before node 0 with an edge to every node that
///   node 0 does not reach, so that every node has a dominator;
/// - each variable gets a merge (a phi) at the iterated dominance frontier of
///   the nodes that define it, and a walk of the dominator tree names, for
///   every use, the one definition or merge that it reads (static single
///   assignment, after Cytron et al.);
/// - the inputs of a merge are found from the definitions whose dominance
///   ends there, by counting the merge's predecessors in each one's subtree,
///   not by asking every predecessor about every merged variable (a body with
///   thousands of `return`s and thousands of variables stays linear);
/// - the definitions of a merge are collected when a use reads it.
///
/// Time and memory grow with the size of the graph and of the answer, up to
/// a logarithm and the depth of loop nesting, where the bit vectors grew with
/// the number of statements times the number of definitions.
class ReachingDefinitions {
 public:
  /// Called once per event that uses its variable, in event order, with the
  /// events that define it and reach it, in event order.
  using Report = std::function<void(std::uint32_t use, std::span<std::uint32_t const> definitions)>;

  void solve(VariableFlow const& flow, Report const& report);

 private:
  // Where a node leaves a variable with a value of its own (a definition or
  // a merge): the value it found and the value it leaves.
  struct Site {
    std::uint32_t variable;
    std::uint32_t node;
    std::uint32_t before;
    std::uint32_t after;
  };

  void placeMerges(VariableFlow const& flow, Adjacency const& frontiers);
  void name(VariableFlow const& flow, DominatorTree const& tree);
  void linkMerges(VariableFlow const& flow, Adjacency const& predecessors, DominatorTree const& tree,
                  Adjacency const& frontiers);
  void answer(VariableFlow const& flow, Report const& report);
  std::span<std::uint32_t const> definitionsOfMerge(std::uint32_t merge);

  // Values a use can read: 0 for none, 1 + e for the definition of event e,
  // 1 + events + m for merge m.
  std::uint32_t eventCount_ = 0;
  std::vector<std::pair<std::uint32_t, std::uint32_t>> merges_;  // (node, variable), by node
  std::vector<std::uint32_t> mergeStart_;                        // by node, into merges_
  std::vector<std::uint32_t> mergeAbove_;  // by merge: the value its node's dominator leaves
  std::vector<std::uint32_t> read_;        // by event: the value a use reads
  std::vector<Site> sites_;
  Adjacency mergeInputs_;  // by merge: the values it merges
  std::vector<std::uint32_t> memoStart_;
  std::vector<std::vector<std::uint32_t>> memo_;  // the definitions of merges already asked for
  std::vector<std::uint32_t> visited_;            // by merge and by event: the query that saw it last
  std::uint32_t query_ = 0;
};

}  // namespace frontend
