#pragma once

// The node of a given class around a node: the function a statement lies in,
// the class a method belongs to.

#include <type_traits>

#include "platform/ast/ast.hpp"

namespace lf::astapi {

/// The innermost proper ancestor of `node` that is of class T, or null when
/// there is none, or when a node of class `Boundary` stands in between (a
/// node of both classes is found, not a boundary). Climbs parent by parent:
/// code that asks for every node of a tree hands the answer down a walk
/// instead.
///
///     ast::Function const* function = getEnclosing<ast::Function>(statement);  // a method too
///     assert(function != nullptr && (getEnclosing<ast::Function, ast::AnonymousFunction>(inside) == nullptr));
template <class T, class Boundary = void, class F>
T const* getEnclosing(Node<F> const& node) noexcept {
  for (Node<F> const* at = node.getParent(); at != nullptr; at = at->getParent()) {
    if (isA<T>(*at)) return static_cast<T const*>(at);
    if constexpr (!std::is_void_v<Boundary>) {
      if (isA<Boundary>(*at)) return nullptr;
    }
  }
  return nullptr;
}

}  // namespace lf::astapi
