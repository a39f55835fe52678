#pragma once

// The whole syntax tree: every class, the short names of the `CA` flavour, the
// checked casts between classes, and the one-switch dispatch on a node's kind.

#include "platform/ast/declarations.hpp"
#include "platform/ast/expressions.hpp"
#include "platform/ast/node.hpp"
#include "platform/ast/node_cast.hpp"
#include "platform/ast/node_class.hpp"
#include "platform/ast/statements.hpp"

namespace ca::ast {
/// Short names of the tree classes in the `CA` flavour: `ca::ast::Identifier`
/// is `lf::astapi::Identifier<ca::astapi::CA>`.
using Node = lf::astapi::Node<ca::astapi::CA>;
using Expression = lf::astapi::Expression<ca::astapi::CA>;
using Method = lf::astapi::Method<ca::astapi::CA>;
#define PLEXUS_NODE_KIND(number, name, bits) using name = lf::astapi::name<ca::astapi::CA>;
#include "platform/ast/node_kinds.def"
#undef PLEXUS_NODE_KIND
}  // namespace ca::ast

namespace lf::astapi {

/// Calls `visitor` with the node cast to the class of its kind, selected by one
/// switch on the kind byte. A node whose kind is no kind is passed as a plain
/// `Node`. The visitor returns the same type for every class.
///
///     bool const isAssignment = visitByKind(node, []<class C>(C const&) { return std::is_same_v<C, ast::Assignment>; });
template <class F, class Visitor>
decltype(auto) visitByKind(Node<F> const& node, Visitor&& visitor) {
  switch (node.getKind()) {
#define PLEXUS_NODE_KIND(number, name, bits) \
  case NodeKind::name:                       \
    return visitor(static_cast<name<F> const&>(node));
#include "platform/ast/node_kinds.def"
#undef PLEXUS_NODE_KIND
  }
  return visitor(node);
}

/// Calls `fn` with each child of `node`, in walk order, whatever its class.
///
///     std::size_t children = 0;
///     forEachChild(node, [&children](auto const* child) { children += child != nullptr ? 1 : 0; });
template <class F, class Fn>
void forEachChild(Node<F> const& node, Fn&& fn) {
  visitByKind(node, [&fn](auto const& typed) { typed.forEachChild(fn); });
}

}  // namespace lf::astapi
