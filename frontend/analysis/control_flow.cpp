#include "frontend/analysis/control_flow.hpp"

#include <cstdint>
#include <utility>
#include <vector>

namespace frontend {

namespace {

namespace ast = ca::ast;
using ca::controlflow::ControlFlowAnalysis;
using ca::controlflow::ControlFlowGraph;
using ca::controlflow::ControlFlowNode;
using lf::astapi::NodeKind;
using Block = lf::astapi::NodeList<ast::Node>;

bool isStatement(ast::Node const& node) { return (node.getKindFlags() & lf::astapi::kindflags::statement) != 0; }

bool ownsBody(ast::Node const& node) {
  return node.getKind() == NodeKind::Function || node.getKind() == NodeKind::MethodDefinition;
}

Block bodyOf(ast::Node const& owner) {
  if (owner.getKind() == NodeKind::Program) return static_cast<ast::Program const&>(owner).getBody();
  return static_cast<ast::Function const&>(owner).getBody();
}

/// Appends the blocks of statements directly inside `statement`, in source
/// order; nothing for a simple statement.
void appendBlocks(ast::Node const& statement, std::vector<Block>& blocks) {
  switch (statement.getKind()) {
    case NodeKind::IfStatement: {
      auto const& ifStatement = static_cast<ast::IfStatement const&>(statement);
      blocks.push_back(ifStatement.getBody());
      for (auto const* elseif : ifStatement.getElseifBlocks()) blocks.push_back(elseif->getBody());
      if (auto const* elseBlock = ifStatement.getElseBlock()) blocks.push_back(elseBlock->getBody());
      return;
    }
    case NodeKind::SwitchStatement: {
      auto const& switchStatement = static_cast<ast::SwitchStatement const&>(statement);
      for (auto const* selection : switchStatement.getCases()) blocks.push_back(selection->getBody());
      if (auto const* otherwise = switchStatement.getOtherwiseBlock()) blocks.push_back(otherwise->getBody());
      return;
    }
    case NodeKind::TryStatement: {
      auto const& tryStatement = static_cast<ast::TryStatement const&>(statement);
      blocks.push_back(tryStatement.getBody());
      if (auto const* catchBlock = tryStatement.getCatchBlock()) blocks.push_back(catchBlock->getBody());
      return;
    }
    case NodeKind::WhileStatement:
      blocks.push_back(static_cast<ast::WhileStatement const&>(statement).getBody());
      return;
    case NodeKind::ForStatement: blocks.push_back(static_cast<ast::ForStatement const&>(statement).getBody()); return;
    case NodeKind::ParforStatement:
      blocks.push_back(static_cast<ast::ParforStatement const&>(statement).getBody());
      return;
    case NodeKind::SpmdStatement: blocks.push_back(static_cast<ast::SpmdStatement const&>(statement).getBody()); return;
    default: return;
  }
}

/// Appends the bodies that `node`, found among statements but no statement
/// itself, brings: a function or method, or the method definitions of a class.
void appendOwners(ast::Node const& node, std::vector<ast::Node const*>& owners) {
  if (ownsBody(node)) {
    owners.push_back(&node);
    return;
  }
  if (node.getKind() != NodeKind::Classdef) return;
  for (auto const* block : static_cast<ast::Classdef const&>(node).getBlocks()) {
    if (block->getKind() != NodeKind::MethodsBlock) continue;
    for (auto const* member : static_cast<ast::MethodsBlock const&>(*block).getMembers()) {
      if (member->getKind() == NodeKind::MethodDefinition) owners.push_back(member);
    }
  }
}

/// Builds the graph of one body and collects the bodies nested in it.
///
/// Statement nodes are made in preorder (each compound statement before what
/// it holds), and each records where its subtree ends; linking walks the
/// blocks in the same order, so that the node of any statement is found by
/// its position, without a map from statements to nodes: a body of a million
/// statements stays in cache-friendly vectors.
class GraphBuilder {
 public:
  explicit GraphBuilder(ast::Node const& owner) : owner_(owner) {}

  /// The graph; the bodies met among its statements go to `nestedOwners`, in
  /// source order.
  std::unique_ptr<ControlFlowGraph> build(std::vector<ast::Node const*>& nestedOwners) {
    nodes_.push_back(makeNode(ControlFlowNode::Kind::Entry, &owner_));
    nodes_.push_back(makeNode(ControlFlowNode::Kind::Exit, &owner_));
    subtreeEnd_.assign(2, 0);
    Block const body = bodyOf(owner_);
    makeStatementNodes(body, nestedOwners);
    ControlFlowNode* exit = nodes_[1].get();
    std::uint32_t const first = 2;
    nodes_[0]->successors.push_back(firstAt(first, body, exit));
    link(body, first, exit);
    return std::make_unique<ControlFlowGraph>(&owner_, std::move(nodes_));
  }

 private:
  /// A block whose successors are still to be set: the position of its first
  /// statement's node, where control goes after it, and the innermost loop
  /// around it (null outside every loop).
  struct Task {
    Block block;
    std::uint32_t first;
    ControlFlowNode* follow;
    ControlFlowNode* loop;
    ControlFlowNode* afterLoop;
  };

  static std::unique_ptr<ControlFlowNode> makeNode(ControlFlowNode::Kind kind, ast::Node const* syntax) {
    auto node = std::make_unique<ControlFlowNode>();
    node->kind = kind;
    node->syntax = syntax;
    return node;
  }

  /// One node per statement, in preorder, with an explicit stack of the
  /// blocks still being read; a marker under a compound statement's blocks
  /// notes where its subtree ends once they are read.
  void makeStatementNodes(Block body, std::vector<ast::Node const*>& nestedOwners) {
    struct Pending {
      Block block;
      std::uint32_t closes;  // with an empty block: the statement whose subtree ends here
    };
    constexpr std::uint32_t kNothing = ~std::uint32_t{0};
    std::vector<Pending> pending{{body, kNothing}};
    std::vector<Block> inner;
    while (!pending.empty()) {
      Pending& top = pending.back();
      if (top.block.empty()) {
        if (top.closes != kNothing) subtreeEnd_[top.closes] = static_cast<std::uint32_t>(nodes_.size());
        pending.pop_back();
        continue;
      }
      ast::Node const* node = top.block.front();
      top.block = top.block.subspan(1);
      if (!isStatement(*node)) {
        appendOwners(*node, nestedOwners);
        continue;
      }
      auto const index = static_cast<std::uint32_t>(nodes_.size());
      nodes_.push_back(makeNode(ControlFlowNode::Kind::Statement, node));
      subtreeEnd_.push_back(index + 1);
      inner.clear();
      appendBlocks(*node, inner);
      if (inner.empty()) continue;
      pending.push_back({Block{}, index});
      for (auto block = inner.rbegin(); block != inner.rend(); ++block) pending.push_back({*block, kNothing});
    }
  }

  /// The node at `first`, when `block` has a statement, or `fallback`.
  ControlFlowNode* firstAt(std::uint32_t first, Block block, ControlFlowNode* fallback) const {
    for (auto const* node : block) {
      if (isStatement(*node)) return nodes_[first].get();
    }
    return fallback;
  }

  /// The position after the nodes of `block`, whose first is at `first`.
  std::uint32_t after(std::uint32_t first, Block block) const {
    for (auto const* node : block) {
      if (isStatement(*node)) first = subtreeEnd_[first];
    }
    return first;
  }

  /// Sets the successors of every statement of `body` and of the blocks inside it.
  void link(Block body, std::uint32_t first, ControlFlowNode* exit) {
    std::vector<Task> tasks{{body, first, exit, nullptr, nullptr}};
    std::vector<std::uint32_t> statements;
    while (!tasks.empty()) {
      Task const task = tasks.back();
      tasks.pop_back();
      statements.clear();
      std::uint32_t at = task.first;
      for (auto const* node : task.block) {
        if (!isStatement(*node)) continue;
        statements.push_back(at);
        at = subtreeEnd_[at];
      }
      for (std::size_t i = 0; i < statements.size(); ++i) {
        ControlFlowNode* next = i + 1 < statements.size() ? nodes_[statements[i + 1]].get() : task.follow;
        linkStatement(statements[i], next, task, exit, tasks);
      }
    }
  }

  /// Sets the successors of the statement at `index`, whose next is `next`,
  /// and queues the blocks inside it; they are taken in the order in which
  /// their nodes were made, so that each one's first node is where the one
  /// before it ends.
  void linkStatement(std::uint32_t index, ControlFlowNode* next, Task const& around, ControlFlowNode* exit,
                     std::vector<Task>& tasks) {
    ControlFlowNode& node = *nodes_[index];
    auto& successors = node.successors;
    std::uint32_t cursor = index + 1;
    // A block that runs once and then goes to `next`, inside the same loop.
    auto branch = [&](Block block) {
      successors.push_back(firstAt(cursor, block, next));
      tasks.push_back({block, cursor, next, around.loop, around.afterLoop});
      cursor = after(cursor, block);
    };
    auto loopBody = [&](Block block) {
      successors.push_back(firstAt(cursor, block, &node));
      successors.push_back(next);
      tasks.push_back({block, cursor, &node, &node, next});
    };
    ast::Node const& statement = *node.syntax;
    switch (statement.getKind()) {
      case NodeKind::IfStatement: {
        auto const& ifStatement = static_cast<ast::IfStatement const&>(statement);
        branch(ifStatement.getBody());
        for (auto const* elseif : ifStatement.getElseifBlocks()) branch(elseif->getBody());
        if (auto const* elseBlock = ifStatement.getElseBlock()) {
          branch(elseBlock->getBody());
        } else {
          successors.push_back(next);
        }
        return;
      }
      case NodeKind::SwitchStatement: {
        auto const& switchStatement = static_cast<ast::SwitchStatement const&>(statement);
        for (auto const* selection : switchStatement.getCases()) branch(selection->getBody());
        if (auto const* otherwise = switchStatement.getOtherwiseBlock()) {
          branch(otherwise->getBody());
        } else {
          successors.push_back(next);
        }
        return;
      }
      case NodeKind::TryStatement: {
        auto const& tryStatement = static_cast<ast::TryStatement const&>(statement);
        branch(tryStatement.getBody());
        if (auto const* catchBlock = tryStatement.getCatchBlock()) {
          branch(catchBlock->getBody());
        } else {
          successors.push_back(next);
        }
        return;
      }
      case NodeKind::SpmdStatement: branch(static_cast<ast::SpmdStatement const&>(statement).getBody()); return;
      case NodeKind::WhileStatement: loopBody(static_cast<ast::WhileStatement const&>(statement).getBody()); return;
      case NodeKind::ForStatement: loopBody(static_cast<ast::ForStatement const&>(statement).getBody()); return;
      case NodeKind::ParforStatement: loopBody(static_cast<ast::ParforStatement const&>(statement).getBody()); return;
      case NodeKind::BreakStatement: successors.push_back(around.loop != nullptr ? around.afterLoop : exit); return;
      case NodeKind::ContinueStatement: successors.push_back(around.loop != nullptr ? around.loop : exit); return;
      case NodeKind::ReturnStatement: successors.push_back(exit); return;
      default: successors.push_back(next); return;
    }
  }

  ast::Node const& owner_;
  std::vector<std::unique_ptr<ControlFlowNode>> nodes_;
  std::vector<std::uint32_t> subtreeEnd_;  // by node: the position after the nodes of its statement's subtree
};

}  // namespace

std::shared_ptr<ControlFlowAnalysis> buildControlFlow(ast::Program const& program) {
  std::vector<std::unique_ptr<ControlFlowGraph>> graphs;
  // Bodies still to build, the next on top; the bodies nested in one go on
  // top in reverse, so that graphs come in source order.
  std::vector<ast::Node const*> pending{&program};
  std::vector<ast::Node const*> nested;
  while (!pending.empty()) {
    ast::Node const* owner = pending.back();
    pending.pop_back();
    nested.clear();
    graphs.push_back(GraphBuilder(*owner).build(nested));
    pending.insert(pending.end(), nested.rbegin(), nested.rend());
  }
  return std::make_shared<ControlFlowAnalysis>(std::move(graphs));
}

}  // namespace frontend
