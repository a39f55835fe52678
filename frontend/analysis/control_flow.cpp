#include "frontend/analysis/control_flow.hpp"

#include <unordered_map>
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
class GraphBuilder {
 public:
  explicit GraphBuilder(ast::Node const& owner) : owner_(owner) {}

  /// The graph; the bodies met among its statements go to `nestedOwners`, in
  /// source order.
  std::unique_ptr<ControlFlowGraph> build(std::vector<ast::Node const*>& nestedOwners) {
    nodes_.push_back(makeNode(ControlFlowNode::Kind::Entry, &owner_));
    nodes_.push_back(makeNode(ControlFlowNode::Kind::Exit, &owner_));
    Block const body = bodyOf(owner_);
    makeStatementNodes(body, nestedOwners);
    ControlFlowNode* exit = nodes_[1].get();
    nodes_[0]->successors.push_back(firstOf(body, exit));
    link(body, exit);
    return std::make_unique<ControlFlowGraph>(&owner_, std::move(nodes_));
  }

 private:
  /// A block whose successors are still to be set, with where control goes
  /// after it and the innermost loop around it (null outside every loop).
  struct Task {
    Block block;
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

  /// One node per statement, in source order (depth first, each compound
  /// statement before what it holds), with an explicit stack of the blocks
  /// still being read.
  void makeStatementNodes(Block body, std::vector<ast::Node const*>& nestedOwners) {
    std::vector<Block> pending{body};
    std::vector<Block> inner;
    while (!pending.empty()) {
      Block& top = pending.back();
      if (top.empty()) {
        pending.pop_back();
        continue;
      }
      ast::Node const* node = top.front();
      top = top.subspan(1);
      if (!isStatement(*node)) {
        appendOwners(*node, nestedOwners);
        continue;
      }
      nodes_.push_back(makeNode(ControlFlowNode::Kind::Statement, node));
      byStatement_.emplace(node, nodes_.back().get());
      inner.clear();
      appendBlocks(*node, inner);
      for (auto block = inner.rbegin(); block != inner.rend(); ++block) pending.push_back(*block);
    }
  }

  /// The node of the first statement of `block`, or `fallback` when it has none.
  ControlFlowNode* firstOf(Block block, ControlFlowNode* fallback) const {
    for (auto const* node : block) {
      if (isStatement(*node)) return byStatement_.at(node);
    }
    return fallback;
  }

  /// Sets the successors of every statement of `body` and of the blocks inside it.
  void link(Block body, ControlFlowNode* exit) {
    std::vector<Task> tasks{{body, exit, nullptr, nullptr}};
    std::vector<ControlFlowNode*> statements;
    while (!tasks.empty()) {
      Task const task = tasks.back();
      tasks.pop_back();
      statements.clear();
      for (auto const* node : task.block) {
        if (isStatement(*node)) statements.push_back(byStatement_.at(node));
      }
      for (std::size_t i = 0; i < statements.size(); ++i) {
        ControlFlowNode* next = i + 1 < statements.size() ? statements[i + 1] : task.follow;
        linkStatement(*statements[i], next, task, exit, tasks);
      }
    }
  }

  /// Sets the successors of one statement whose next is `next`, and queues
  /// the blocks inside it.
  void linkStatement(ControlFlowNode& node, ControlFlowNode* next, Task const& around, ControlFlowNode* exit,
                     std::vector<Task>& tasks) {
    auto& successors = node.successors;
    // A block that runs once and then goes to `next`, inside the same loop.
    auto branch = [&](Block block) {
      successors.push_back(firstOf(block, next));
      tasks.push_back({block, next, around.loop, around.afterLoop});
    };
    auto loopBody = [&](Block block) {
      successors.push_back(firstOf(block, &node));
      successors.push_back(next);
      tasks.push_back({block, &node, &node, next});
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
  std::unordered_map<ast::Node const*, ControlFlowNode*> byStatement_;
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
