#pragma once

#include <cstdint>
#include <memory>
#include <unordered_map>
#include <vector>

#include "platform/ast/ast.hpp"
#include "platform/ast/string_id.hpp"

namespace ca {
class Analysis;
}

namespace ca::controlflow {

/// A node of a control-flow graph: a statement, or the entry or exit of its
/// function or script.
struct ControlFlowNode {
  enum class Kind : std::uint8_t { Entry, Exit, Statement };

  Kind kind;
  /// The statement; for entry and exit the function or program.
  ast::Node const* syntax;
  /// Where control goes next, in a fixed order: a branch's body first.
  std::vector<ControlFlowNode const*> successors;
};

/// The control flow of one function body or of a script's statements, at the
/// granularity of statements. A compound statement (if, for, while, switch,
/// try, parfor, spmd) is the node that decides where its body starts.
///
/// Invariants: owns its nodes; every statement of the body, nested blocks
/// included and nested functions excluded, has exactly one node. The first
/// node is the entry and the second the exit, both standing for the owner
/// (use-def reads a function's inputs from the entry's syntax, and
/// `getUnconditionalEdge` answers the owner for the exit); every other node is
/// a statement; successors are nodes of this graph. A graph built otherwise is
/// refused (std::invalid_argument for the entry and exit; checked builds stop
/// at the rest).
class ControlFlowGraph {
 public:
  ControlFlowGraph(ast::Node const* owner, std::vector<std::unique_ptr<ControlFlowNode>> nodes);

  /// The function, method or program whose body this is.
  ast::Node const* getOwner() const noexcept { return owner_; }
  ControlFlowNode const& getEntry() const noexcept { return *nodes_.front(); }
  ControlFlowNode const& getExit() const noexcept { return *nodes_[1]; }
  std::vector<std::unique_ptr<ControlFlowNode>> const& getNodes() const noexcept { return nodes_; }

  /// The node of a statement of this graph, or null.
  ControlFlowNode const* getNode(ast::Node const* statement) const;

  /// The syntax node that follows `statement` unconditionally: that of its
  /// one successor (the function or program for the exit). Throws
  /// std::invalid_argument for a statement that is not in this graph or
  /// whose control branches.
  ast::Node const& getUnconditionalEdge(ast::Node const* statement) const;

 private:
  // Stops the program at a broken invariant; run by checked builds.
  void checkInvariants() const;

  ast::Node const* owner_;
  std::vector<std::unique_ptr<ControlFlowNode>> nodes_;  // entry, exit, then statements
  std::unordered_map<ast::Node const*, ControlFlowNode const*> index_;
};

/// The control-flow graphs of a file: one per function and method body and
/// one for the statements of a script. Reached through
/// `Analysis::get<ControlFlowAnalysis>()`, which makes it once per analysis
/// through the analysis provider.
class ControlFlowAnalysis {
 public:
  explicit ControlFlowAnalysis(std::vector<std::unique_ptr<ControlFlowGraph>> graphs);

  static astapi::StringId GetAnalysisId();
  /// Asks the provider of `analysis`, an `AnalysisImpl`, to make it.
  static std::shared_ptr<ControlFlowAnalysis> Create(Analysis const& analysis);

  /// The graph that holds `node`: that of the innermost function or method
  /// around it, else the program's (for a class's properties, say, which lie
  /// in no body). Throws std::invalid_argument for a node of another tree.
  ControlFlowGraph const& getEnclosingGraph(ast::Node const* node) const;
  std::vector<std::unique_ptr<ControlFlowGraph>> const& getGraphs() const noexcept { return graphs_; }

 private:
  std::vector<std::unique_ptr<ControlFlowGraph>> graphs_;
  std::unordered_map<ast::Node const*, ControlFlowGraph const*> byOwner_;
};

}  // namespace ca::controlflow
