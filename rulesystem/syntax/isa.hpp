#pragma once

#include <set>
#include <string>
#include <type_traits>

#include "platform/ast/ast.hpp"
#include "rulesystem/graph/pipe_handle.hpp"
#include "rulesystem/graph/switch.hpp"
#include "rulesystem/graph/tree_types.hpp"

namespace ca::rulesystem {

/// The key of the dispatch by node class: the node's kind.
class KindTransform final : public StageOf<KindTransform, Transform<Node const&, lf::astapi::NodeKind>> {
 public:
  std::u16string description() const override { return u"NodeKind"; }
  lf::astapi::NodeKind transform(Node const& node, ca::Analysis const&) const override { return node.getKind(); }
};

/// Tag for `producer | isa<T>()`: the nodes of class T, handed on as T. All
/// `isa` on one producer meet in one switch on the kind, so a node costs one
/// lookup whatever the number of classes asked for.
///
///     auto rightSides = all.assignment | std::make_unique<RightSide>();
///     auto numbers = rightSides | isa<NumberLiteral>();
///     auto texts = rightSides | isa<CharVectorLiteral>();
template <class T>
struct isa {};

namespace detail {
/// The kinds whose nodes are of class T: the one kind of a concrete class, and
/// for a base class the kinds of the classes derived from it (the platform's
/// class-to-kinds table).
template <class T>
std::set<lf::astapi::NodeKind> kindsOf() {
  return lf::astapi::kindsOfClass<T>();
}
}  // namespace detail

template <template <class> class P, class T>
requires isPipeHandle<P> P<T const&>
operator|(P<Node const&> producer, isa<T>) {
  class IsSwitchable final : public Switchable<Node const&, lf::astapi::NodeKind> {
   public:
    explicit IsSwitchable(std::set<lf::astapi::NodeKind> kinds) : kinds_(std::move(kinds)) {}
    std::unique_ptr<Transform<Node const&, lf::astapi::NodeKind>> getTransform() const override {
      return std::make_unique<KindTransform>();
    }
    std::set<lf::astapi::NodeKind> getKeys() const override { return kinds_; }

   private:
    std::set<lf::astapi::NodeKind> kinds_;
  };
  return downcast<T const&>(std::move(producer) | std::make_unique<IsSwitchable>(detail::kindsOf<T>()));
}

}  // namespace ca::rulesystem
