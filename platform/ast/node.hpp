#pragma once

#include <cstdint>
#include <span>

#include "platform/ast/node_kind.hpp"
#include "platform/ast/source_range.hpp"

namespace ca::astapi {
/// The flavour tag of the tree classes: `lf::astapi::Node<ca::astapi::CA>`.
struct CA {};
}  // namespace ca::astapi

namespace lf::astapi {

/// A list of children, in source order. The array lives in the tree's arena.
template <class T>
using NodeList = std::span<T const* const>;

/// The base of every tree class.
///
/// Invariants: the kind never changes after construction and the class bits
/// are those of the kind; the parent is null only at the root. A node belongs
/// to the arena of its tree, is never copied, and is trivially destructible.
/// Every accessor is an inline field read.
template <class F>
class Node {
 public:
  Node(Node const&) = delete;
  Node& operator=(Node const&) = delete;

  NodeKind getKind() const noexcept { return kind_; }
  /// Class bits of the kind: 0x01 node, 0x02 statement, 0x04 expression, 0x10 method.
  std::uint8_t getKindFlags() const noexcept { return flags_; }
  Node const* getParent() const noexcept { return parent_; }

  SourceRange const& getSourceRange() const noexcept { return range_; }
  /// Set by the tree producer once it knows where the node ends.
  void setSourceRange(SourceRange const& range) noexcept { range_ = range; }

  /// Calls `fn` with each child, in walk order. Each class with children hides
  /// this with its own; reach it through `visitByKind` for the class of a node.
  template <class Fn>
  void forEachChild(Fn&&) const noexcept {}

 protected:
  explicit Node(NodeKind kind) noexcept : kind_(kind), flags_(lf::astapi::getKindFlags(kind)) {}
  ~Node() = default;

  // A node adopts its children when it is constructed. The builder made them
  // and still owns them mutably; the const in the lists is for readers.
  void adopt(Node const* child) noexcept {
    if (child != nullptr) const_cast<Node*>(child)->parent_ = this;
  }
  template <class T>
  void adopt(NodeList<T> children) noexcept {
    for (T const* child : children) adopt(child);
  }

 private:
  Node* parent_ = nullptr;
  SourceRange range_{};
  NodeKind kind_;
  std::uint8_t flags_;
};

/// The base of the expression classes (kinds whose bits contain 0x05).
template <class F>
class Expression : public Node<F> {
 protected:
  using Node<F>::Node;
};

}  // namespace lf::astapi
