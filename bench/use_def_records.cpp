#include "bench/use_def_records.hpp"

#include <type_traits>
#include <unordered_map>
#include <utility>

namespace plexus::bench {

namespace {

namespace ast = ca::ast;
namespace usedef = ca::usedef;
using ca::astapi::StringId;

class Collector {
 public:
  std::vector<std::unique_ptr<usedef::UseDefBase>> take() { return std::move(records_); }

  void walk(ast::Node const* node) {
    lf::astapi::visitByKind(*node, [this](auto const& typed) { visit(typed); });
  }

 private:
  template <class X>
  void visit(X const& node) {
    if constexpr (std::is_same_v<X, ast::Identifier>) {
      read(node);
    } else if constexpr (std::is_base_of_v<ast::Function, X>) {
      function(node);
    } else if constexpr (std::is_same_v<X, ast::Assignment>) {
      assignment(node);
    } else if constexpr (std::is_same_v<X, ast::ForStatement>) {
      forStatement(node);
    } else {
      node.forEachChild([this](ast::Node const* child) { walk(child); });
    }
  }

  void function(ast::Function const& node) {
    // A function sees none of the variables of the code around it.
    auto outer = std::exchange(latest_, {});
    for (ast::InputArgument const* input : node.getInputs()) {
      if (input->getIdentifier() != nullptr) define<usedef::InputDef>(*input->getIdentifier());
    }
    for (ast::Node const* statement : node.getBody()) walk(statement);
    latest_ = std::move(outer);
  }

  void assignment(ast::Assignment const& node) {
    // The right side is read before the left is written.
    walk(node.getRight());
    ast::Expression const* target = node.getLeft();
    if (target->getKind() == lf::astapi::NodeKind::Identifier) {
      define<usedef::FullAssignmentDef>(static_cast<ast::Identifier const&>(*target));
      return;
    }
    // `a(i).f = ...`: the indices are read, then `a` is read and written.
    while (true) {
      if (target->getKind() == lf::astapi::NodeKind::ParenOperation) {
        auto const& paren = static_cast<ast::ParenOperation const&>(*target);
        for (ast::Expression const* argument : paren.getArguments()) walk(argument);
        target = paren.getFunction();
      } else if (target->getKind() == lf::astapi::NodeKind::DotOperation) {
        target = static_cast<ast::DotOperation const&>(*target).getLeft();
      } else {
        break;
      }
    }
    if (target->getKind() == lf::astapi::NodeKind::Identifier) {
      auto const& base = static_cast<ast::Identifier const&>(*target);
      auto record = std::make_unique<usedef::PartialAssignmentUseDef>(&base);
      if (usedef::Definition const* definition = reaching(base)) record->setDefinitions({definition});
      latest_[base.getStringId()] = record.get();
      records_.push_back(std::move(record));
    } else {
      walk(target);
    }
  }

  void forStatement(ast::ForStatement const& node) {
    walk(node.getRange());
    if (node.getLoopVariable()->getKind() == lf::astapi::NodeKind::Identifier) {
      define<usedef::LoopVariableDef>(static_cast<ast::Identifier const&>(*node.getLoopVariable()));
    }
    for (ast::Node const* statement : node.getBody()) walk(statement);
  }

  template <class Def>
  void define(ast::Identifier const& identifier) {
    auto record = std::make_unique<Def>(&identifier);
    latest_[identifier.getStringId()] = record.get();
    records_.push_back(std::move(record));
  }

  void read(ast::Identifier const& identifier) {
    usedef::Definition const* definition = reaching(identifier);
    if (definition == nullptr) return;
    auto record = std::make_unique<usedef::VariableUse>(&identifier);
    record->setDefinitions({definition});
    records_.push_back(std::move(record));
  }

  usedef::Definition const* reaching(ast::Identifier const& identifier) const {
    auto const found = latest_.find(identifier.getStringId());
    return found != latest_.end() ? found->second : nullptr;
  }

  std::vector<std::unique_ptr<usedef::UseDefBase>> records_;
  std::unordered_map<StringId, usedef::Definition const*> latest_;
};

}  // namespace

std::vector<std::unique_ptr<ca::usedef::UseDefBase>> collectUseDefs(ca::ast::Program const& program) {
  Collector collector;
  collector.walk(&program);
  return collector.take();
}

}  // namespace plexus::bench
