#include "rulesystem/execution/ast_dispatcher.hpp"

#include <stdexcept>

namespace ca::rulesystem {

// Each visit hands the node to its roots, walks the children it must recurse
// into, and returns the child to go on with in the same loop (or null).
template <class X>
Node const* AstDispatcher::visit(X const& node) const {
  if constexpr (std::is_same_v<X, Node>) {
    // A kind that is no kind (0 or above 66). The text is fixed and leaves the
    // kind out, so that callers can match on it.
    throw std::logic_error("Unhandled node kind encountered in AstDispatcher");
  } else if constexpr (std::is_same_v<X, Identifier> || std::is_same_v<X, OpaqueExpression> ||
                       std::is_same_v<X, OpaqueStatement>) {
    return nullptr;
  } else if constexpr (std::is_same_v<X, DotOperation>) {
    dispatch(node.getLeft());
    return &node.getField();
  } else if constexpr (std::is_same_v<X, NamedArgument>) {
    dispatch(&node.getName());
    return node.getValue();
  } else {
    if constexpr (std::is_base_of_v<Method, X>) {
      allNodes_->method->produce(node, *analysis_, helper_);
    }
    allNodes_->rootOf<X>()->produce(node, *analysis_, helper_);
    if constexpr (std::is_same_v<X, InputArgument>) {
      // Checked after the consumers have seen the node.
      if (node.getIdentifier() != nullptr) return node.getIdentifier();
      if (node.getIgnored() != nullptr) return node.getIgnored();
      throw std::logic_error("InputArgument has neither an Identifier nor an Ignored");
    } else {
      node.forEachChild([this](Node const* child) { dispatch(child); });
      return nullptr;
    }
  }
}

void AstDispatcher::dispatch(Node const* node) const {
  while (node != nullptr) {
    node = lf::astapi::visitByKind(*node, [this](auto const& typed) { return visit(typed); });
  }
}

}  // namespace ca::rulesystem
