#pragma once

// The walk over a node and everything below it that the analyses share:
// depth first, preorder, children in walk order (`forEachChild`), absent
// children skipped, with a stack of its own, so that a tree as deep as its
// input costs heap, not call stack.

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <type_traits>
#include <utility>
#include <variant>
#include <vector>

#include "platform/ast/ast.hpp"

namespace lf::astapi {

/// What a walk does after a visit: go on below the node, or leave what lies
/// below it unvisited.
enum class WalkStep : std::uint8_t { Descend, SkipChildren };

/// A walk that keeps its stack between walks, for code that walks many small
/// subtrees (each expression of a statement, say) and should not allocate for
/// each. `State` is handed from each node to its children; the plain walk has
/// none.
///
///     DescendantWalk<ca::astapi::CA> walk;
///     std::size_t outsideAnonymousFunctions = 0;
///     walk.run(program, [&](ast::Node const& node) {
///       if (node.getKind() == NodeKind::AnonymousFunction) return WalkStep::SkipChildren;
///       ++outsideAnonymousFunctions;
///       return WalkStep::Descend;
///     });
template <class F, class State = std::monostate>
class DescendantWalk {
 public:
  /// Visits `root` and every node below it. `visit(node)` returns a WalkStep;
  /// one that returns nothing always descends.
  template <class Visit>
  void run(Node<F> const& root, Visit&& visit) {
    runWithState(root, State{}, [&visit](Node<F> const& node, State const&) -> std::optional<State> {
      if constexpr (std::is_void_v<decltype(visit(node))>) {
        visit(node);
        return State{};
      } else {
        if (visit(node) == WalkStep::SkipChildren) return std::nullopt;
        return State{};
      }
    });
  }

  /// Visits `root` and every node below it, handing each node the state its
  /// parent gave (`rootState` for the root). `visit(node, fromParent)` returns
  /// the state for the node's children, or nothing to skip them.
  ///
  ///     DescendantWalk<ca::astapi::CA, int> depths;
  ///     int deepest = 0;
  ///     depths.runWithState(program, 0, [&deepest](ast::Node const&, int depth) -> std::optional<int> {
  ///       deepest = std::max(deepest, depth);
  ///       return depth + 1;
  ///     });
  template <class Visit>
  void runWithState(Node<F> const& root, State rootState, Visit&& visit) {
    std::size_t const bottom = pending_.size();
    pending_.push_back({&root, std::move(rootState)});
    while (pending_.size() > bottom) {
      Pending at = std::move(pending_.back());
      pending_.pop_back();
      std::optional<State> below = visit(*at.node, std::as_const(at.state));
      if (!below) continue;
      // Children go on the stack last first, so that the first is visited first.
      std::size_t const mark = pending_.size();
      forEachChild(*at.node, [this, &below](Node<F> const* child) {
        if (child != nullptr) pending_.push_back({child, *below});
      });
      std::reverse(pending_.begin() + static_cast<std::ptrdiff_t>(mark), pending_.end());
    }
  }

 private:
  struct Pending {
    Node<F> const* node;
    State state;
  };
  std::vector<Pending> pending_;
};

/// Visits `root` and every node below it, depth first, preorder.
/// `visit(node)` returns `WalkStep::SkipChildren` to leave what lies below a
/// node unvisited; a visitor that returns nothing sees every node.
///
///     std::vector<ast::Identifier const*> names;
///     walkDescendants(statement, [&](ast::Node const& node) {
///       if (node.getKind() == NodeKind::Function) return WalkStep::SkipChildren;
///       if (auto const* id = dynCast<ast::Identifier>(node)) names.push_back(id);
///       return WalkStep::Descend;
///     });
template <class F, class Visit>
void walkDescendants(Node<F> const& root, Visit&& visit) {
  DescendantWalk<F>().run(root, std::forward<Visit>(visit));
}

/// The same over each node of a list in turn, as over the statements of a body.
template <class F, class Visit>
void walkDescendants(NodeList<Node<F>> roots, Visit&& visit) {
  DescendantWalk<F> walk;
  for (Node<F> const* root : roots) {
    if (root != nullptr) walk.run(*root, visit);
  }
}

}  // namespace lf::astapi
