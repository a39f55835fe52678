#include "platform/controlflow/control_flow.hpp"

#include <stdexcept>
#include <unordered_set>

#include "platform/analysis/provided_analysis.hpp"
#include "platform/utils/invariant.hpp"

namespace ca::controlflow {

ControlFlowGraph::ControlFlowGraph(ast::Node const* owner, std::vector<std::unique_ptr<ControlFlowNode>> nodes)
    : owner_(owner), nodes_(std::move(nodes)) {
  if (nodes_.size() < 2 || nodes_[0]->kind != ControlFlowNode::Kind::Entry ||
      nodes_[1]->kind != ControlFlowNode::Kind::Exit) {
    throw std::invalid_argument("a control-flow graph starts with its entry and exit");
  }
  for (std::size_t i = 2; i < nodes_.size(); ++i) index_.emplace(nodes_[i]->syntax, nodes_[i].get());
#ifdef PLEXUS_CHECKED
  checkInvariants();
#endif
}

void ControlFlowGraph::checkInvariants() const {
  PLEXUS_INVARIANT(owner_ != nullptr, "a control-flow graph has an owner: the function, method or program");
  PLEXUS_INVARIANT(getEntry().syntax == owner_, "the entry of a control-flow graph stands for the graph's owner");
  PLEXUS_INVARIANT(getExit().syntax == owner_, "the exit of a control-flow graph stands for the graph's owner");
  std::unordered_set<ControlFlowNode const*> const own = [this] {
    std::unordered_set<ControlFlowNode const*> nodes;
    for (auto const& node : nodes_) nodes.insert(node.get());
    return nodes;
  }();
  for (std::size_t i = 0; i < nodes_.size(); ++i) {
    ControlFlowNode const& node = *nodes_[i];
    PLEXUS_INVARIANT(i < 2 || (node.kind == ControlFlowNode::Kind::Statement && node.syntax != nullptr),
                     "a control-flow graph has one entry and one exit, first, and statements after them");
    for (ControlFlowNode const* successor : node.successors) {
      PLEXUS_INVARIANT(own.count(successor) != 0, "the successors of a control-flow node lie in its own graph");
    }
  }
}

ControlFlowNode const* ControlFlowGraph::getNode(ast::Node const* statement) const {
  auto found = index_.find(statement);
  return found == index_.end() ? nullptr : found->second;
}

ast::Node const& ControlFlowGraph::getUnconditionalEdge(ast::Node const* statement) const {
  ControlFlowNode const* node = getNode(statement);
  if (node == nullptr) throw std::invalid_argument("the node is no statement of this control-flow graph");
  if (node->successors.size() != 1) throw std::invalid_argument("control does not go on unconditionally from here");
  return *node->successors.front()->syntax;
}

ControlFlowAnalysis::ControlFlowAnalysis(std::vector<std::unique_ptr<ControlFlowGraph>> graphs)
    : graphs_(std::move(graphs)) {
  for (auto const& graph : graphs_) byOwner_.emplace(graph->getOwner(), graph.get());
}

astapi::StringId ControlFlowAnalysis::GetAnalysisId() {
  static astapi::StringId const id(u"ca::controlflow::ControlFlowAnalysis");
  return id;
}

std::shared_ptr<ControlFlowAnalysis> ControlFlowAnalysis::Create(Analysis const& analysis) {
  return clients::createByProvider<ControlFlowAnalysis>(analysis);
}

ControlFlowGraph const& ControlFlowAnalysis::getEnclosingGraph(ast::Node const* node) const {
  for (ast::Node const* at = node; at != nullptr; at = at->getParent()) {
    if (auto found = byOwner_.find(at); found != byOwner_.end()) return *found->second;
  }
  throw std::invalid_argument("the node lies in no function or script body");
}

}  // namespace ca::controlflow
