// The use-def analysis as first written: one bit per definition of a graph and
// the textbook iterative data-flow solution, quadratic in the size of a body
// but plain enough to trust. The tests hold the real analysis to its answers.

#include "tests/frontend/analysis/reference_use_def.hpp"

#include <algorithm>
#include <cstdint>
#include <unordered_map>
#include <vector>

namespace plexus::testing {

namespace ast = ca::ast;
using frontend::FileSymbols;
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
// their records.
class EventCollector {
 public:
  EventCollector(FileSymbols const& symbols, std::vector<std::unique_ptr<UseDefBase>>& records)
      : symbols_(symbols), records_(records) {}

  std::vector<Event> statement(ast::Node const& node) {
    events_.clear();
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
    return events_;
  }

  // The inputs of a function, defined at its entry.
  std::vector<Event> entry(ast::Node const& owner) {
    events_.clear();
    if (owner.getKind() == NodeKind::Function || owner.getKind() == NodeKind::MethodDefinition) {
      for (auto const* input : static_cast<ast::Function const&>(owner).getInputs()) {
        define<ca::usedef::InputDef>(input->getIdentifier());
      }
    }
    return events_;
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
  // right); an anonymous function's inputs are defined where it is made.
  void reads(ast::Node const* node) {
    if (node == nullptr) return;
    switch (node->getKind()) {
      case NodeKind::Identifier: use(static_cast<ast::Identifier const&>(*node)); return;
      case NodeKind::AnonymousFunction: {
        auto const& lambda = static_cast<ast::AnonymousFunction const&>(*node);
        for (auto const* input : lambda.getInputs()) define<ca::usedef::InputDef>(input->getIdentifier());
        reads(lambda.getBody());
        return;
      }
      default: lf::astapi::forEachChild(*node, [this](ast::Node const* child) { reads(child); });
    }
  }

  // An assignment target: a whole variable is defined; a part of one reads
  // its indices, then uses and defines the variable.
  void target(ast::Expression const* node) {
    if (node == nullptr || node->getKind() == NodeKind::Ignored) return;
    if (node->getKind() == NodeKind::Identifier) {
      define<ca::usedef::FullAssignmentDef>(node);
      return;
    }
    ast::Expression const* head = node;
    std::vector<ast::Expression const*> indices;
    while (head != nullptr && head->getKind() != NodeKind::Identifier) {
      switch (head->getKind()) {
        case NodeKind::ParenOperation: {
          auto const* paren = static_cast<ast::ParenOperation const*>(head);
          for (auto const* argument : paren->getArguments()) indices.push_back(argument);
          head = paren->getFunction();
          break;
        }
        case NodeKind::BraceOperation: {
          auto const* brace = static_cast<ast::BraceOperation const*>(head);
          for (auto const* argument : brace->getArguments()) indices.push_back(argument);
          head = brace->getBase();
          break;
        }
        case NodeKind::DotOperation: head = static_cast<ast::DotOperation const*>(head)->getLeft(); break;
        case NodeKind::DotParenOperation: {
          auto const* dynamic = static_cast<ast::DotParenOperation const*>(head);
          indices.push_back(dynamic->getExpression());
          head = dynamic->getLeft();
          break;
        }
        default: head = nullptr; break;
      }
    }
    // The chain was taken apart from the right; read its indices left to right.
    for (auto index = indices.rbegin(); index != indices.rend(); ++index) reads(*index);
    if (head == nullptr) return;
    auto const* identifier = static_cast<ast::Identifier const*>(head);
    Symbol const* symbol = variableOf(identifier);
    if (symbol == nullptr) return;
    auto record = std::make_unique<ca::usedef::PartialAssignmentUseDef>(identifier);
    events_.push_back({record.get(), symbol, record.get(), record.get()});
    records_.push_back(std::move(record));
  }

  FileSymbols const& symbols_;
  std::vector<std::unique_ptr<UseDefBase>>& records_;
  std::vector<Event> events_;
};

// Reaching definitions over one graph: a bit per definition of the graph.
class ReachingDefinitions {
 public:
  ReachingDefinitions(ControlFlowGraph const& graph, EventCollector& collector) {
    auto const& nodes = graph.getNodes();
    for (std::size_t i = 0; i < nodes.size(); ++i) index_.emplace(nodes[i].get(), i);
    events_.resize(nodes.size());
    for (std::size_t i = 0; i < nodes.size(); ++i) {
      ControlFlowNode const& node = *nodes[i];
      if (node.kind == ControlFlowNode::Kind::Entry) events_[i] = collector.entry(*node.syntax);
      if (node.kind == ControlFlowNode::Kind::Statement) events_[i] = collector.statement(*node.syntax);
      for (Event const& event : events_[i]) {
        if (event.definition != nullptr) {
          definitionIndex_.emplace(event.definition, definitions_.size());
          bySymbol_[event.symbol].push_back(definitions_.size());
          definitions_.push_back(event);
        }
        if (event.use != nullptr) event.use->setCfgNode(&node);
      }
    }
    words_ = (definitions_.size() + 63) / 64;
    solve(graph);
  }

 private:
  using Bits = std::vector<std::uint64_t>;

  std::vector<std::size_t> const& definitionsOf(Symbol const* symbol) const {
    static std::vector<std::size_t> const none;
    auto found = bySymbol_.find(symbol);
    return found == bySymbol_.end() ? none : found->second;
  }

  // Applies a node's events to the set of reaching definitions; with
  // `link`, tells each use which definitions reach it.
  void transfer(std::size_t node, Bits& reaching, bool link) const {
    for (Event const& event : events_[node]) {
      if (event.use != nullptr && link) {
        std::vector<Definition const*> reached;
        for (std::size_t d : definitionsOf(event.symbol)) {
          if ((reaching[d / 64] >> (d % 64) & 1) != 0) reached.push_back(definitions_[d].definition);
        }
        std::sort(reached.begin(), reached.end(), [](Definition const* a, Definition const* b) {
          return a->getIdentifier()->getSourceRange().first.offset < b->getIdentifier()->getSourceRange().first.offset;
        });
        event.use->setDefinitions(std::move(reached));
      }
      if (event.definition != nullptr) {
        // A definition replaces every other definition of its variable.
        for (std::size_t d : definitionsOf(event.symbol)) reaching[d / 64] &= ~(std::uint64_t{1} << (d % 64));
        std::size_t const own = definitionIndex_.at(event.definition);
        reaching[own / 64] |= std::uint64_t{1} << (own % 64);
      }
    }
  }

  void solve(ControlFlowGraph const& graph) {
    auto const& nodes = graph.getNodes();
    std::vector<Bits> in(nodes.size(), Bits(words_, 0));
    std::vector<Bits> out(nodes.size(), Bits(words_, 0));
    std::vector<std::size_t> work;
    for (std::size_t i = nodes.size(); i-- > 0;) work.push_back(i);
    std::vector<bool> queued(nodes.size(), true);
    while (!work.empty()) {
      std::size_t const i = work.back();
      work.pop_back();
      queued[i] = false;
      Bits result = in[i];
      transfer(i, result, false);
      if (result == out[i]) continue;
      out[i] = std::move(result);
      for (ControlFlowNode const* successor : nodes[i]->successors) {
        std::size_t const s = index_.at(successor);
        bool changed = false;
        for (std::size_t w = 0; w < words_; ++w) {
          std::uint64_t const merged = in[s][w] | out[i][w];
          changed |= merged != in[s][w];
          in[s][w] = merged;
        }
        if (changed && !queued[s]) {
          queued[s] = true;
          work.push_back(s);
        }
      }
    }
    for (std::size_t i = 0; i < nodes.size(); ++i) transfer(i, in[i], true);
  }

  std::unordered_map<ControlFlowNode const*, std::size_t> index_;
  std::vector<std::vector<Event>> events_;
  std::vector<Event> definitions_;
  std::unordered_map<Definition const*, std::size_t> definitionIndex_;
  std::unordered_map<Symbol const*, std::vector<std::size_t>> bySymbol_;
  std::size_t words_ = 0;
};

}  // namespace

std::shared_ptr<ca::usedef::UseDefAnalysis> buildReferenceUseDefs(ast::Program const&, FileSymbols const& symbols,
                                                         ca::controlflow::ControlFlowAnalysis const& flow) {
  std::vector<std::unique_ptr<UseDefBase>> records;
  EventCollector collector(symbols, records);
  for (auto const& graph : flow.getGraphs()) ReachingDefinitions(*graph, collector);
  std::stable_sort(records.begin(), records.end(), [](auto const& a, auto const& b) {
    return a->getIdentifier()->getSourceRange().first.offset < b->getIdentifier()->getSourceRange().first.offset;
  });
  return std::make_shared<ca::usedef::UseDefAnalysis>(std::move(records));
}

}  // namespace plexus::testing
