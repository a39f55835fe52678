// Call resolution as first written: each question climbs the tree from the
// node asked about, so a deep chain costs its depth for every node. Plain
// enough to trust; the tests hold the real analysis to its answers.

#include "tests/frontend/analysis/reference_calls.hpp"

#include <optional>

#include <string>

namespace plexus::testing {

namespace ast = ca::ast;
using ca::astapi::StringId;
using ca::callresolution::Call;
using lf::astapi::BinaryOperator;
using lf::astapi::NodeKind;
using lf::astapi::UnaryOperator;

namespace {

bool isSuperclassCall(ast::Node const* node) {
  return node != nullptr && node->getKind() == NodeKind::BinaryOperation &&
         static_cast<ast::BinaryOperation const*>(node)->getOperator() == BinaryOperator::SuperclassCall;
}

// The names of a dotted chain `a.b.c`, or nothing when anything but
// identifiers and fields makes it up.
struct DottedName {
  ast::Identifier const* head = nullptr;
  std::u16string text;
  ast::Field const* last = nullptr;
};

std::optional<DottedName> dottedName(ast::Expression const* expression) {
  std::vector<ast::Field const*> fields;
  while (expression->getKind() == NodeKind::DotOperation) {
    auto const* dot = static_cast<ast::DotOperation const*>(expression);
    fields.push_back(&dot->getField());
    expression = dot->getLeft();
  }
  if (expression->getKind() != NodeKind::Identifier) return std::nullopt;
  DottedName name;
  name.head = static_cast<ast::Identifier const*>(expression);
  name.text = name.head->getStringId().getString();
  for (auto field = fields.rbegin(); field != fields.rend(); ++field) {
    name.text += u'.';
    name.text += (*field)->getStringId().getString();
  }
  name.last = fields.empty() ? nullptr : fields.front();
  return name;
}

// Whether a node lies where names are not called: in a function handle, a
// metaclass query, a superclass list, a validation or an arguments-block
// entry's class part.
bool inNameOnlyContext(ast::Node const& node) {
  ast::Node const* child = &node;
  for (ast::Node const* parent = node.getParent(); parent != nullptr; child = parent, parent = parent->getParent()) {
    switch (parent->getKind()) {
      case NodeKind::UnaryOperation: {
        UnaryOperator const op = static_cast<ast::UnaryOperation const*>(parent)->getOperator();
        if (op == UnaryOperator::FunctionHandle || op == UnaryOperator::Metaclass) return true;
        break;
      }
      case NodeKind::Validation:
      case NodeKind::Classdef: return true;
      case NodeKind::Argument: return child != static_cast<ast::Argument const*>(parent)->getDefaultValue();
      case NodeKind::DotOperation:
      case NodeKind::ParenOperation:
      case NodeKind::BraceOperation:
      case NodeKind::BinaryOperation: break;
      default: return false;  // an expression of any other kind, or a statement
    }
  }
  return false;
}

// The method around a node, if the node lies in one.
ast::Method const* enclosingMethod(ast::Node const& node) {
  for (ast::Node const* at = node.getParent(); at != nullptr; at = at->getParent()) {
    if (at->getKind() == NodeKind::MethodDefinition) return static_cast<ast::Method const*>(at);
    if (at->getKind() == NodeKind::Function) return nullptr;
  }
  return nullptr;
}

// Whether a node stands in a script's own statements, outside its functions.
bool inScriptWorkspace(ast::Node const& node, ca::FileType type) {
  if (type != ca::FileType::Script) return false;
  for (ast::Node const* at = node.getParent(); at != nullptr; at = at->getParent()) {
    if (at->getKind() == NodeKind::Function || at->getKind() == NodeKind::MethodDefinition) return false;
  }
  return true;
}

}  // namespace

ReferenceCalls::ReferenceCalls(std::shared_ptr<frontend::FileSymbols const> symbols) : symbols_(std::move(symbols)) {
  for (auto const* symbol : symbols_->getSymbols()) {
    if (symbol->isMethod()) methods_.insert(symbol->getStringId());
  }
}

Call ReferenceCalls::getCallInfo(ast::Node const& node) const {
  // The status of a call of the name that `name` resolves to.
  auto statusOf = [this, &node](ast::Identifier const& name) -> Call::Status {
    ca::nameresolution::SymbolTableEntry const* symbol = symbols_->getSymbol(name);
    if (symbol == nullptr || symbol->isVariable()) return Call::NoCall;
    if (symbol->isExternal() && inScriptWorkspace(node, symbols_->getFileType())) return Call::PotentialCall;
    return Call::KnownCall;
  };

  // `obj.m` on the object input of a method of this file's class, `m` being
  // a method of that class.
  auto methodCall = [this, &node](DottedName const& name) -> std::optional<StringId> {
    if (name.last == nullptr || name.text.find(u'.') != name.text.rfind(u'.')) return std::nullopt;
    ast::Method const* method = enclosingMethod(node);
    if (method == nullptr) return std::nullopt;
    // The object is the first input of a method, and the output of a
    // constructor.
    ast::Identifier const* object = nullptr;
    auto const* methodSymbol = method->getName() != nullptr ? symbols_->getSymbol(*method->getName()) : nullptr;
    if (methodSymbol != nullptr && methodSymbol->isConstructor()) {
      if (!method->getOutputs().empty()) object = method->getOutputs()[0];
    } else if (!method->getInputs().empty()) {
      object = method->getInputs()[0]->getIdentifier();
    }
    if (object == nullptr || symbols_->getSymbol(*object) != symbols_->getSymbol(*name.head)) return std::nullopt;
    if (methods_.count(name.last->getStringId()) == 0) return std::nullopt;
    return name.last->getStringId();
  };

  // A call named by `callee` (the part before any parentheses) at `node`.
  auto callOf = [&](ast::Expression const& callee, std::span<ast::Expression const* const> arguments) -> Call {
    if (inNameOnlyContext(node)) return Call(&node, Call::NoCall);
    if (isSuperclassCall(&callee)) {
      auto const* right = static_cast<ast::BinaryOperation const&>(callee).getRight();
      std::optional<DottedName> const superclass = dottedName(right);
      StringId const name = superclass ? StringId(superclass->text) : StringId();
      return Call(&node, Call::KnownCall, name, arguments);
    }
    std::optional<DottedName> const name = dottedName(&callee);
    if (!name) return Call(&node, Call::NoCall);
    Call::Status const status = statusOf(*name->head);
    if (status != Call::NoCall) {
      // A plain name keeps its interned id; a dotted one is interned whole.
      StringId const called = name->last == nullptr ? name->head->getStringId() : StringId(name->text);
      return Call(&node, status, called, arguments);
    }
    if (std::optional<StringId> const method = methodCall(*name)) {
      return Call(&node, Call::KnownCall, *method, arguments);
    }
    return Call(&node, Call::NoCall);
  };

  ast::Node const* parent = node.getParent();
  switch (node.getKind()) {
    case NodeKind::CommandInvocation: {
      auto const& command = static_cast<ast::CommandInvocation const&>(node);
      StringId name;
      if (command.getFunctionName()->getKind() == NodeKind::Identifier) {
        name = static_cast<ast::Identifier const*>(command.getFunctionName())->getStringId();
      }
      return Call(&node, Call::KnownCall, name, command.getArguments());
    }
    case NodeKind::ParenOperation: {
      auto const& paren = static_cast<ast::ParenOperation const&>(node);
      return callOf(*paren.getFunction(), paren.getArguments());
    }
    case NodeKind::Identifier:
    case NodeKind::DotOperation:
    case NodeKind::BinaryOperation: {
      if (node.getKind() == NodeKind::BinaryOperation && !isSuperclassCall(&node)) return Call(&node, Call::NoCall);
      // Alone only: as the callee of parentheses, the left of a dot or the
      // name of a command, the node is part of a larger call's syntax.
      if (parent != nullptr) {
        switch (parent->getKind()) {
          case NodeKind::ParenOperation:
            if (static_cast<ast::ParenOperation const*>(parent)->getFunction() == &node)
              return Call(&node, Call::NoCall);
            break;
          case NodeKind::DotOperation:
            if (static_cast<ast::DotOperation const*>(parent)->getLeft() == &node) return Call(&node, Call::NoCall);
            break;
          case NodeKind::BinaryOperation:
            if (isSuperclassCall(parent)) return Call(&node, Call::NoCall);
            break;
          case NodeKind::CommandInvocation: return Call(&node, Call::NoCall);
          default: break;
        }
      }
      if (node.getKind() == NodeKind::Identifier) {
        auto const& identifier = static_cast<ast::Identifier const&>(node);
        if (symbols_->isDefinition(identifier) || symbols_->isArgumentSignature(identifier)) {
          return Call(&node, Call::NoCall);
        }
        // The name of a function, method or class where it is defined.
        if (parent != nullptr) {
          switch (parent->getKind()) {
            case NodeKind::Function:
            case NodeKind::MethodDefinition:
            case NodeKind::MethodDeclaration:
              if (static_cast<ast::Function const*>(parent)->getName() == &identifier) return Call(&node, Call::NoCall);
              break;
            case NodeKind::Classdef:
              if (static_cast<ast::Classdef const*>(parent)->getName() == &identifier) return Call(&node, Call::NoCall);
              break;
            default: break;
          }
        }
      }
      return callOf(static_cast<ast::Expression const&>(node), {});
    }
    default: return Call(&node, Call::NoCall);
  }
}

std::optional<Call> ReferenceCalls::getClosestCall(ast::Node const& node) const {
  for (ast::Node const* at = &node; at != nullptr; at = at->getParent()) {
    Call const call = getCallInfo(*at);
    if (call.isCall() != Call::NoCall) return call;
    // Calls do not reach beyond their statement.
    if ((at->getKindFlags() & lf::astapi::kindflags::expression) == 0) return std::nullopt;
  }
  return std::nullopt;
}

}  // namespace plexus::testing
