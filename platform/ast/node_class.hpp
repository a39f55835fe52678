#pragma once

// Which kinds of node a tree class covers: the one kind of a concrete class,
// and for a base class every kind whose class derives from it, so that
// `Expression` covers the expression kinds, `Method` the two method kinds and
// `Function` its own kind and both method kinds (a method passes as a
// function). Casts and the dispatch by class (`isa<T>` of the rule system)
// both read it from here.

#include <array>
#include <cstdint>
#include <set>
#include <type_traits>

#include "platform/ast/declarations.hpp"
#include "platform/ast/expressions.hpp"
#include "platform/ast/node.hpp"
#include "platform/ast/node_kind.hpp"
#include "platform/ast/statements.hpp"

namespace lf::astapi {

namespace detail {
template <class F>
F flavourOf(Node<F> const*);
}  // namespace detail

/// The flavour tag F of a tree class, which derives from `Node<F>`:
/// `FlavourOf<Identifier<ca::astapi::CA>>` is `ca::astapi::CA`.
template <class T>
using FlavourOf = decltype(detail::flavourOf(static_cast<T const*>(nullptr)));

namespace detail {
// For each kind number, whether the class of that kind is T or derives from
// it. Made at compile time from the kind table; numbers that are no kind
// (0, and above maxNodeKind) are covered by no class.
template <class T>
constexpr std::array<bool, 256> makeCoveredKinds() {
  using F = FlavourOf<T>;
  std::array<bool, 256> covered{};
#define PLEXUS_NODE_KIND(number, name, bits) covered[number] = std::is_base_of_v<T, name<F>>;
#include "platform/ast/node_kinds.def"
#undef PLEXUS_NODE_KIND
  return covered;
}
template <class T>
inline constexpr std::array<bool, 256> coveredKinds = makeCoveredKinds<T>();

// The class bits of the kind table say what the class hierarchy says: a kind
// has the expression bit exactly when its class is an Expression, the method
// bit exactly when it is a Method, and each class's Kind is the kind of its
// own line. Tests of membership read the bits; casts read the hierarchy.
constexpr bool hasBit(int bits, std::uint8_t bit) noexcept { return (bits & bit) != 0; }

template <class F>
constexpr bool classBitsAgreeWithClasses() {
  bool agree = true;
#define PLEXUS_NODE_KIND(number, name, bits)                                                  \
  agree = agree && name<F>::Kind == NodeKind::name && hasBit(bits, kindflags::node) &&        \
          hasBit(bits, kindflags::expression) == std::is_base_of_v<Expression<F>, name<F>> && \
          hasBit(bits, kindflags::method) == std::is_base_of_v<Method<F>, name<F>>;
#include "platform/ast/node_kinds.def"
#undef PLEXUS_NODE_KIND
  return agree;
}
static_assert(classBitsAgreeWithClasses<ca::astapi::CA>(),
              "the class bits of node_kinds.def disagree with the tree classes");
}  // namespace detail

/// Whether nodes of `kind` are of class T: the kind's class is T or derives
/// from it. One table read.
///
///     static_assert(coversKind<ast::Expression>(NodeKind::Identifier));
///     static_assert(coversKind<ast::Function>(NodeKind::MethodDefinition));  // a method is a function
template <class T>
constexpr bool coversKind(NodeKind kind) noexcept {
  return detail::coveredKinds<std::remove_cv_t<T>>[static_cast<std::uint8_t>(kind)];
}

/// The kinds whose nodes are of class T, in kind order: `{Identifier}` for
/// `Identifier`, the expression kinds for `Expression`, `{Function,
/// MethodDeclaration, MethodDefinition}` for `Function`.
///
///     std::set<NodeKind> methods = kindsOfClass<ast::Method>();
///     assert(methods == std::set<NodeKind>({NodeKind::MethodDeclaration, NodeKind::MethodDefinition}));
template <class T>
std::set<NodeKind> kindsOfClass() {
  std::set<NodeKind> kinds;
  for (NodeKind kind : getAllNodeKinds()) {
    if (coversKind<T>(kind)) kinds.insert(kind);
  }
  return kinds;
}

}  // namespace lf::astapi
