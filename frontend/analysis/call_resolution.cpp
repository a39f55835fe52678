#include "frontend/analysis/call_resolution.hpp"

#include <cstdint>
#include <optional>

#include "platform/ast/descendant_walk.hpp"
#include "platform/ast/dotted_name.hpp"

namespace frontend {

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

using DottedName = lf::astapi::DottedName<ca::astapi::CA>;

// What the ancestors of a node say about calls at it, handed down from
// parent to child in one walk instead of climbing back up for every node.
struct Context {
  ast::Method const* method = nullptr;  // the method the node lies in, if it lies in one
  bool inScript = true;                 // outside every function and method
  bool nameOnly = false;                // where names are not called
};

// Whether names below `parent` are not called: in a function handle, a
// metaclass query, a superclass list, a validation or an arguments-block
// entry's class part. Operations pass their parent's answer on.
bool nameOnlyBelow(ast::Node const& parent, bool parentNameOnly, ast::Node const& child) {
  switch (parent.getKind()) {
    case NodeKind::UnaryOperation: {
      UnaryOperator const op = static_cast<ast::UnaryOperation const&>(parent).getOperator();
      return op == UnaryOperator::FunctionHandle || op == UnaryOperator::Metaclass || parentNameOnly;
    }
    case NodeKind::Validation:
    case NodeKind::Classdef: return true;
    case NodeKind::Argument: return &child != static_cast<ast::Argument const&>(parent).getDefaultValue();
    case NodeKind::DotOperation:
    case NodeKind::ParenOperation:
    case NodeKind::BraceOperation:
    case NodeKind::BinaryOperation: return parentNameOnly;
    default: return false;  // an expression of any other kind, or a statement
  }
}

Context contextOfChild(ast::Node const& parent, Context const& around, ast::Node const& child) {
  Context inner = around;
  if (parent.getKind() == NodeKind::MethodDefinition) {
    inner.method = static_cast<ast::Method const*>(&parent);
    inner.inScript = false;
  } else if (parent.getKind() == NodeKind::Function) {
    inner.method = nullptr;
    inner.inScript = false;
  }
  inner.nameOnly = nameOnlyBelow(parent, around.nameOnly, child);
  return inner;
}

}  // namespace

FileCalls::FileCalls(std::shared_ptr<FileSymbols const> symbols) : symbols_(std::move(symbols)) {
  for (auto const* symbol : symbols_->getSymbols()) {
    if (symbol->isMethod()) methods_.insert(symbol->getStringId());
  }
  // One walk from the root: each node gets its context from its parent's, and
  // its closest call is itself or its parent's. The method around a node is
  // handed down rather than looked up (`getEnclosing`), so that a deep tree
  // costs one step per node.
  struct Above {
    Context context;                // the parent's
    ast::Node const* closest;       // the closest call of the parent, within its statement
    std::uint32_t climb;            // how far the parent is from a call or a statement
  };
  lf::astapi::DescendantWalk<ca::astapi::CA, Above> walk;
  walk.runWithState(symbols_->getProgram(), Above{Context{}, nullptr, 0},
                    [this](ast::Node const& node, Above const& above) -> std::optional<Above> {
                      ast::Node const* parent = node.getParent();
                      Context const context =
                          parent == nullptr ? above.context : contextOfChild(*parent, above.context, node);
                      Call const call = resolve(node, context.method, context.inScript, context.nameOnly);
                      ast::Node const* closest = nullptr;
                      std::uint32_t climb = 0;
                      if (call.isCall() != Call::NoCall) {
                        calls_.emplace(&node, call);
                        closest = &node;
                      } else if ((node.getKindFlags() & lf::astapi::kindflags::expression) != 0) {
                        // Calls do not reach beyond their statement.
                        closest = above.closest;
                        climb = above.climb + 1;
                        if (climb % kClosestCallStride == 0) closest_.emplace(&node, closest);
                      }
                      return Above{context, closest, climb};
                    });
}

Call FileCalls::getCallInfo(ast::Node const& node) const {
  auto found = calls_.find(&node);
  return found != calls_.end() ? found->second : Call(&node, Call::NoCall);
}

std::optional<Call> FileCalls::getClosestCall(ast::Node const& node) const {
  // At most kClosestCallStride steps: a call, a statement or a noted answer
  // comes within that many.
  for (ast::Node const* at = &node; at != nullptr; at = at->getParent()) {
    if (auto found = calls_.find(at); found != calls_.end()) return found->second;
    if ((at->getKindFlags() & lf::astapi::kindflags::expression) == 0) return std::nullopt;
    if (auto noted = closest_.find(at); noted != closest_.end()) {
      if (noted->second == nullptr) return std::nullopt;
      return calls_.at(noted->second);
    }
  }
  return std::nullopt;
}

Call FileCalls::resolve(ast::Node const& node, ast::Method const* method, bool inScript, bool nameOnly) const {
  // The status of a call of the name that `name` resolves to.
  auto statusOf = [this, inScript](ast::Identifier const& name) -> Call::Status {
    ca::nameresolution::SymbolTableEntry const* symbol = symbols_->getSymbol(name);
    if (symbol == nullptr || symbol->isVariable()) return Call::NoCall;
    if (symbol->isExternal() && inScript && symbols_->getFileType() == ca::FileType::Script) {
      return Call::PotentialCall;
    }
    return Call::KnownCall;
  };

  // `obj.m` on the object input of a method of this file's class, `m` being
  // a method of that class.
  auto methodCall = [this, method](DottedName const& name) -> std::optional<StringId> {
    if (name.fieldCount != 1) return std::nullopt;
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
    if (nameOnly) return Call(&node, Call::NoCall);
    if (isSuperclassCall(&callee)) {
      auto const* right = static_cast<ast::BinaryOperation const&>(callee).getRight();
      std::optional<DottedName> const superclass = lf::astapi::getDottedName(*right);
      StringId const name = superclass ? StringId(superclass->text) : StringId();
      return Call(&node, Call::KnownCall, name, arguments);
    }
    std::optional<DottedName> const name = lf::astapi::getDottedName(callee);
    if (!name) return Call(&node, Call::NoCall);
    Call::Status const status = statusOf(*name->head);
    if (status != Call::NoCall) {
      // A plain name keeps its interned id; a dotted one is interned whole.
      StringId const called = name->fieldCount == 0 ? name->head->getStringId() : StringId(name->text);
      return Call(&node, status, called, arguments);
    }
    if (std::optional<StringId> const methodName = methodCall(*name)) {
      return Call(&node, Call::KnownCall, *methodName, arguments);
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

}  // namespace frontend
