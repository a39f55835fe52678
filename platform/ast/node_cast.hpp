#pragma once

// Casts between tree classes that read the node's kind instead of run-time
// type information (nodes have none): `isA` asks, `dynCast` gives the node as
// T or null, `cast` is for code that already knows and, in checked builds,
// stops the program with what was cast to what, and where, when it is wrong.
//
//     if (auto const* dot = dynCast<DotOperation<F>>(expression)) use(dot->getField());
//     auto const& call = cast<ParenOperation<F>>(*node);  // known from the switch above

#include <string>
#include <type_traits>
#include <typeinfo>

#include <boost/core/demangle.hpp>

#include "platform/ast/node_class.hpp"

namespace lf::astapi {

namespace detail {
/// Writes "plexus: cast<TARGET> of a node of kind KIND (N) at line L, column
/// C" to the standard error and aborts.
[[noreturn]] void castFailed(std::string const& target, NodeKind kind, SourceRange const& range) noexcept;

// A cast that goes up the hierarchy (or nowhere) always holds: it needs no
// look at the kind.
template <class T, class From>
inline constexpr bool isUpcast = std::is_base_of_v<T, From>;

template <class T, class From>
concept TreeCast = std::is_base_of_v<Node<FlavourOf<From>>, From> && std::is_base_of_v<Node<FlavourOf<From>>, T> &&
    (std::is_base_of_v<T, From> || std::is_base_of_v<From, T>);
}  // namespace detail

/// Whether `node` is of class T: its kind is covered by T (see `coversKind`).
/// A node whose kind is no kind is of no class below the one it is held as.
///
///     assert(isA<ast::Expression>(*assignment.getLeft()) && !isA<ast::Identifier>(*assignment.getLeft()));
///     assert(!isA<ast::Expression>(statement));  // an assignment is a statement
template <class T, class From>
requires detail::TreeCast<T, From>
constexpr bool isA(From const& node) noexcept {
  if constexpr (detail::isUpcast<T, From>) {
    return true;
  } else {
    return coversKind<T>(node.getKind());
  }
}

/// Whether `node` is not null and of class T.
template <class T, class From>
requires detail::TreeCast<T, From>
constexpr bool isA(From const* node) noexcept { return node != nullptr && isA<T>(*node); }

/// `node` as a T, or null when it is null or of another class.
///
///     ast::Identifier const* name = dynCast<ast::Identifier>(assignment.getLeft());  // null: not a name
template <class T, class From>
requires detail::TreeCast<T, From> T const* dynCast(From const* node) noexcept {
  return isA<T>(node) ? static_cast<T const*>(node) : nullptr;
}

/// `node` as a T, or null when it is of another class.
template <class T, class From>
requires detail::TreeCast<T, From> T const* dynCast(From const& node) noexcept {
  return isA<T>(node) ? static_cast<T const*>(&node) : nullptr;
}

/// `node` as a T, which the caller knows it is. Checked builds stop the
/// program, saying what was cast to what and where, when it is not; other
/// builds cast without looking.
template <class T, class From>
requires detail::TreeCast<T, From> T const& cast(From const& node) noexcept {
#ifdef PLEXUS_CHECKED
  if (!isA<T>(node)) detail::castFailed(boost::core::demangle(typeid(T).name()), node.getKind(), node.getSourceRange());
#endif
  return static_cast<T const&>(node);
}

/// `node` as a T, which the caller knows it is; null stays null.
template <class T, class From>
requires detail::TreeCast<T, From> T const* cast(From const* node) noexcept {
  return node == nullptr ? nullptr : &cast<T>(*node);
}

}  // namespace lf::astapi
