#include "frontend/analysis/use_def.hpp"

#include <algorithm>
#include <cstdint>
#include <unordered_map>
#include <utility>
#include <vector>

#include "frontend/analysis/reaching_definitions.hpp"
#include "platform/ast/assignment_target.hpp"
#include "platform/ast/descendant_walk.hpp"

namespace frontend {

namespace ast = ca::ast;
using ca::controlflow::ControlFlowGraph;
using ca::controlflow::ControlFlowNode;
using ca::usedef::Definition;
using ca::usedef::Use;
using ca::usedef::UseDefBase;
using Symbol = ca::nameresolution::SymbolTableEntry;
using lf::astapi::NodeKind;

namespace {

// One use or definition inside a statement, in evaluation order.
struct Event {
  UseDefBase* record;
  Symbol const* symbol;
  Definition const* definition;  // null for a plain use
  Use* use;                      // null for a plain definition
};

// Collects the events of one statement (or of a body's entry) and makes
// their records. Expressions are read with a stack of their own, so that a
// deep one costs heap, not call stack.
class EventCollector {
 public:
  EventCollector(FileSymbols const& symbols, std::vector<std::unique_ptr<UseDefBase>>& records,
                 std::vector<Event>& events)
      : symbols_(symbols), records_(records), events_(events) {}

  /// Appends the events of a statement.
  void statement(ast::Node const& node) {
    switch (node.getKind()) {
      case NodeKind::Assignment: {
        auto const& assignment = static_cast<ast::Assignment const&>(node);
        reads(assignment.getRight());
        target(assignment.getLeft());
        break;
      }
      case NodeKind::MultiLhsAssignment: {
        auto const& assignment = static_cast<ast::MultiLhsAssignment const&>(node);
        reads(assignment.getRight());
        for (auto const* output : assignment.getOutputs()) target(output);
        break;
      }
      case NodeKind::ExpressionStatement:
      case NodeKind::PrintStatement:
        reads(static_cast<lf::astapi::SingleExpressionStatement<ca::astapi::CA> const&>(node).getExpression());
        break;
      case NodeKind::IfStatement: {
        auto const& branch = static_cast<ast::IfStatement const&>(node);
        reads(branch.getCondition());
        for (auto const* elseif : branch.getElseifBlocks()) reads(elseif->getCondition());
        break;
      }
      case NodeKind::WhileStatement: reads(static_cast<ast::WhileStatement const&>(node).getCondition()); break;
      case NodeKind::ForStatement: {
        auto const& loop = static_cast<ast::ForStatement const&>(node);
        reads(loop.getRange());
        define<ca::usedef::LoopVariableDef>(loop.getLoopVariable());
        break;
      }
      case NodeKind::ParforStatement: {
        auto const& loop = static_cast<ast::ParforStatement const&>(node);
        reads(loop.getRange());
        for (auto const* option : loop.getOptions()) reads(option);
        define<ca::usedef::LoopVariableDef>(loop.getLoopVariable());
        break;
      }
      case NodeKind::SwitchStatement: {
        auto const& choice = static_cast<ast::SwitchStatement const&>(node);
        reads(choice.getExpression());
        for (auto const* caseBlock : choice.getCases()) reads(caseBlock->getCondition());
        break;
      }
      case NodeKind::TryStatement: {
        // The error variable is set where the catch begins; the try node is
        // where control decides for the catch.
        auto const* catchBlock = static_cast<ast::TryStatement const&>(node).getCatchBlock();
        if (catchBlock != nullptr) define<ca::usedef::CatchDef>(catchBlock->getIdentifier());
        break;
      }
      case NodeKind::SpmdStatement:
        for (auto const* argument : static_cast<ast::SpmdStatement const&>(node).getArguments()) reads(argument);
        break;
      case NodeKind::GlobalStatement:
        for (auto const* name : static_cast<ast::GlobalStatement const&>(node).getNames()) {
          define<ca::usedef::GlobalDef>(name);
        }
        break;
      case NodeKind::PersistentStatement:
        for (auto const* name : static_cast<ast::PersistentStatement const&>(node).getNames()) {
          define<ca::usedef::PersistentDef>(name);
        }
        break;
      default: break;
    }
  }

  /// Appends the events of a body's entry: the inputs of a function.
  void entry(ast::Node const& owner) {
    if (owner.getKind() == NodeKind::Function || owner.getKind() == NodeKind::MethodDefinition) {
      for (auto const* input : static_cast<ast::Function const&>(owner).getInputs()) {
        define<ca::usedef::InputDef>(input->getIdentifier());
      }
    }
  }

 private:
  Symbol const* variableOf(ast::Identifier const* identifier) const {
    if (identifier == nullptr) return nullptr;
    Symbol const* symbol = symbols_.getSymbol(*identifier);
    return symbol != nullptr && symbol->isVariable() ? symbol : nullptr;
  }

  template <class Record>
  void define(ast::Expression const* node) {
    if (node == nullptr || node->getKind() != NodeKind::Identifier) return;
    auto const* identifier = static_cast<ast::Identifier const*>(node);
    Symbol const* symbol = variableOf(identifier);
    if (symbol == nullptr) return;
    auto record = std::make_unique<Record>(identifier);
    events_.push_back({record.get(), symbol, record.get(), nullptr});
    records_.push_back(std::move(record));
  }

  void use(ast::Identifier const& identifier) {
    Symbol const* symbol = variableOf(&identifier);
    if (symbol == nullptr || symbols_.isDefinition(identifier)) return;
    auto record = std::make_unique<ca::usedef::VariableUse>(&identifier);
    events_.push_back({record.get(), symbol, nullptr, record.get()});
    records_.push_back(std::move(record));
  }

  // Every variable read in an expression, in evaluation order (left to
  // right, depth first); an anonymous function's inputs are defined where it
  // is made, before its body reads anything (the input identifiers themselves
  // are definitions, which `use` passes over).
  void reads(ast::Node const* expression) {
    if (expression == nullptr) return;
    walk_.run(*expression, [this](ast::Node const& node) {
      if (auto const* identifier = lf::astapi::dynCast<ast::Identifier>(node)) {
        use(*identifier);
      } else if (auto const* lambda = lf::astapi::dynCast<ast::AnonymousFunction>(node)) {
        for (auto const* input : lambda->getInputs()) define<ca::usedef::InputDef>(input->getIdentifier());
      }
    });
  }

  // An assignment target: a whole variable is defined; a part of one reads
  // its indices and dynamic field names, then uses and defines the variable.
  void target(ast::Expression const* node) {
    if (node == nullptr || node->getKind() == NodeKind::Ignored) return;
    if (node->getKind() == NodeKind::Identifier) {
      define<ca::usedef::FullAssignmentDef>(node);
      return;
    }
    auto const parts = lf::astapi::getAssignmentTarget(node);
    for (auto const* index : parts.indices) reads(index);
    for (auto const* name : parts.dynamicFields) reads(name);
    if (parts.identifier == nullptr) return;
    Symbol const* symbol = variableOf(parts.identifier);
    if (symbol == nullptr) return;
    auto record = std::make_unique<ca::usedef::PartialAssignmentUseDef>(parts.identifier);
    events_.push_back({record.get(), symbol, record.get(), record.get()});
    records_.push_back(std::move(record));
  }

  FileSymbols const& symbols_;
  std::vector<std::unique_ptr<UseDefBase>>& records_;
  std::vector<Event>& events_;
  lf::astapi::DescendantWalk<ca::astapi::CA> walk_;  // its stack serves every expression
};

// Links the uses of each graph to the definitions that reach them.
class GraphLinker {
 public:
  GraphLinker(FileSymbols const& symbols, std::vector<std::unique_ptr<UseDefBase>>& records)
      : collector_(symbols, records, events_) {}

  void link(ControlFlowGraph const& graph) {
    ++graphNumber_;
    auto const& nodes = graph.getNodes();
    auto const count = static_cast<std::uint32_t>(nodes.size());
    index_.clear();
    index_.reserve(count);
    for (std::uint32_t i = 0; i < count; ++i) index_.emplace(nodes[i].get(), i);

    VariableFlow flow;
    flow.successors.start.reserve(count + 1);
    flow.eventStart.reserve(count + 1);
    events_.clear();
    for (std::uint32_t i = 0; i < count; ++i) {
      ControlFlowNode const& node = *nodes[i];
      for (ControlFlowNode const* successor : node.successors) flow.successors.targets.push_back(index_.at(successor));
      flow.successors.start.push_back(static_cast<std::uint32_t>(flow.successors.targets.size()));

      std::size_t const first = events_.size();
      if (node.kind == ControlFlowNode::Kind::Entry) collector_.entry(*node.syntax);
      if (node.kind == ControlFlowNode::Kind::Statement) collector_.statement(*node.syntax);
      for (std::size_t e = first; e < events_.size(); ++e) {
        Event const& event = events_[e];
        flow.events.push_back({variableOf(event.symbol, flow.variableCount), event.use != nullptr,
                               event.definition != nullptr});
        if (event.use != nullptr) event.use->setCfgNode(&node);
      }
      flow.eventStart.push_back(static_cast<std::uint32_t>(events_.size()));
    }

    solver_.solve(flow, [this](std::uint32_t use, std::span<std::uint32_t const> definitions) {
      std::vector<Definition const*> reached;
      reached.reserve(definitions.size());
      for (std::uint32_t definition : definitions) reached.push_back(events_[definition].definition);
      std::stable_sort(reached.begin(), reached.end(), [](Definition const* a, Definition const* b) {
        return a->getIdentifier()->getSourceRange().first.offset < b->getIdentifier()->getSourceRange().first.offset;
      });
      events_[use].use->setDefinitions(std::move(reached));
    });
  }

 private:
  // The number of a variable within the current graph, given on first sight.
  std::uint32_t variableOf(Symbol const* symbol, std::uint32_t& count) {
    auto& [graph, number] = variables_[symbol];
    if (graph != graphNumber_) {
      graph = graphNumber_;
      number = count++;
    }
    return number;
  }

  std::vector<Event> events_;
  EventCollector collector_;
  ReachingDefinitions solver_;
  std::unordered_map<ControlFlowNode const*, std::uint32_t> index_;
  std::unordered_map<Symbol const*, std::pair<std::uint32_t, std::uint32_t>> variables_;  // (graph, number)
  std::uint32_t graphNumber_ = 0;
};

}  // namespace

std::shared_ptr<ca::usedef::UseDefAnalysis> buildUseDefs(ast::Program const&, FileSymbols const& symbols,
                                                         ca::controlflow::ControlFlowAnalysis const& flow) {
  std::vector<std::unique_ptr<UseDefBase>> records;
  GraphLinker linker(symbols, records);
  for (auto const& graph : flow.getGraphs()) linker.link(*graph);
  std::stable_sort(records.begin(), records.end(), [](auto const& a, auto const& b) {
    return a->getIdentifier()->getSourceRange().first.offset < b->getIdentifier()->getSourceRange().first.offset;
  });
  return std::make_shared<ca::usedef::UseDefAnalysis>(std::move(records));
}

}  // namespace frontend
