#pragma once

// A slow, obviously correct evaluator of one pipeline, for tests only. It runs
// the stages of a pipeline by themselves, item by item, straight through their
// `test`, `transform` and `select`: no graph, no sharing of equal stages, no
// switch (a key question is answered by computing the key and looking in the
// key set), no combination. What a consumer of the shared graph receives must
// be exactly what this gives for its pipeline alone.
//
// Pipelines are written once, generically, against the roots:
//
//     auto pipeline = [](auto& all) { return all.parenOperation | isa<Node>() ... ; };
//     pipeline(allNodes);    // declares on the graph
//     pipeline(naiveRoots);  // the same stages, run naively
//
// The vocabulary's tag operators accept `Naive` because they are written over
// any pipe handle (see rulesystem/graph/pipe_handle.hpp).

#include <concepts>
#include <functional>
#include <memory>
#include <set>
#include <type_traits>
#include <utility>

#include "platform/ast/ast.hpp"
#include "platform/usedef/usedef_analysis.hpp"
#include "rulesystem/execution/all_nodes.hpp"
#include "rulesystem/graph/pipe_handle.hpp"
#include "rulesystem/graph/stage.hpp"
#include "rulesystem/graph/switch.hpp"

namespace plexus::testing {

/// The items of one pipeline over one analysis, computed on demand.
template <class T>
class Naive {
 public:
  using Item = T;
  using Yield = std::function<void(T)>;
  using Run = std::function<void(ca::Analysis const&, Yield const&)>;

  Naive() = default;
  explicit Naive(Run run) : run_(std::make_shared<Run const>(std::move(run))) {}

  /// Hands every item of the pipeline for `analysis` to `yield`, in order.
  void each(ca::Analysis const& analysis, Yield const& yield) const { (*run_)(analysis, yield); }

 private:
  std::shared_ptr<Run const> run_;
};

}  // namespace plexus::testing

template <>
inline constexpr bool ca::rulesystem::isPipeHandle<plexus::testing::Naive> = true;

namespace plexus::testing {

/// `naive | predicate`: the items that pass `test`.
template <class T, class S>
requires std::derived_from<S, ca::rulesystem::PredicateBase> Naive<T>
operator|(Naive<T> in, std::unique_ptr<S> stage) {
  using U = typename S::Item;
  std::shared_ptr<S> const held(std::move(stage));
  return Naive<T>([in, held](ca::Analysis const& analysis, typename Naive<T>::Yield const& yield) {
    in.each(analysis, [&](T item) {
      if (held->test(ca::rulesystem::ItemConversion<U, T>::convert(item), analysis)) yield(item);
    });
  });
}

/// `naive | transform`: one result per item.
template <class T, class S>
requires std::derived_from<S, ca::rulesystem::TransformBase> Naive<typename S::Output>
operator|(Naive<T> in, std::unique_ptr<S> stage) {
  using Out = typename S::Output;
  static_assert(std::derived_from<S, ca::rulesystem::Transform<T, Out>>, "a transform over the pipeline's items");
  std::shared_ptr<S const> const held(std::move(stage));
  return Naive<Out>([in, held](ca::Analysis const& analysis, typename Naive<Out>::Yield const& yield) {
    in.each(analysis, [&](T item) { yield(held->transform(item, analysis)); });
  });
}

/// `naive | selectMany`: zero or more results per item, as the stage finds them.
template <class T, class S>
requires std::derived_from<S, ca::rulesystem::SelectManyBase> Naive<typename S::Output>
operator|(Naive<T> in, std::unique_ptr<S> stage) {
  using Out = typename S::Output;
  static_assert(std::derived_from<S, ca::rulesystem::SelectMany<T, Out>>, "a select-many over the pipeline's items");
  std::shared_ptr<S const> const held(std::move(stage));
  return Naive<Out>([in, held](ca::Analysis const& analysis, typename Naive<Out>::Yield const& yield) {
    in.each(analysis, [&](T item) { held->select(item, analysis, yield); });
  });
}

/// `naive | switchable`: the items whose key is one of the keys, the key
/// computed by the switchable's own transform, item by item.
template <class T, class S>
requires std::derived_from<S, ca::rulesystem::Switchable<typename S::Item, typename S::KeyType>> &&
    std::same_as<typename S::Item, T> Naive<T>
operator|(Naive<T> in, std::unique_ptr<S> switchable) {
  using Key = typename S::KeyType;
  std::shared_ptr<ca::rulesystem::Transform<T, Key> const> const key(switchable->getTransform());
  std::set<Key> const keys = switchable->getKeys();
  return Naive<T>([in, key, keys](ca::Analysis const& analysis, typename Naive<T>::Yield const& yield) {
    in.each(analysis, [&](T item) {
      if (keys.contains(key->transform(item, analysis))) yield(item);
    });
  });
}

template <class U, class T>
Naive<U> upcast(Naive<T> const& in) {
  return Naive<U>([in](ca::Analysis const& analysis, typename Naive<U>::Yield const& yield) {
    in.each(analysis, [&](T item) { yield(ca::rulesystem::ItemConversion<U, T>::convert(item)); });
  });
}

template <class U, class T>
Naive<U> downcast(Naive<T> const& in) {
  return Naive<U>([in](ca::Analysis const& analysis, typename Naive<U>::Yield const& yield) {
    in.each(analysis, [&](T item) { yield(static_cast<U>(item)); });
  });
}

namespace detail {

/// Every node below and including `node`, parents before children, in the
/// order of the children lists.
template <class Visit>
void eachNodeInWalkOrder(ca::ast::Node const& node, Visit const& visit) {
  visit(node);
  lf::astapi::forEachChild(node, [&visit](ca::ast::Node const* child) {
    if (child != nullptr) eachNodeInWalkOrder(*child, visit);
  });
}

/// The nodes that the root of class X receives, in walk order: those of its
/// own kind, as the walk hands them out (a method is no `Function` there),
/// and for `Method`, which owns no kind, both method kinds.
template <class X>
Naive<X const&> nodesOf() {
  return Naive<X const&>([](ca::Analysis const& analysis, typename Naive<X const&>::Yield const& yield) {
    eachNodeInWalkOrder(*analysis.getProgram(), [&yield](ca::ast::Node const& node) {
      // Method inherits the `Kind` of Function, so it is told by its class.
      bool feedsRoot = false;
      if constexpr (std::is_same_v<X, ca::ast::Method>) {
        feedsRoot = lf::astapi::isA<X>(node);
      } else {
        feedsRoot = node.getKind() == X::Kind;
      }
      if (feedsRoot) yield(static_cast<X const&>(node));
    });
  });
}

}  // namespace detail

/// The roots of a naive pipeline, under the names of `AllNodes`' members.
struct NaiveRoots {
  Naive<ca::ast::Method const&> method = detail::nodesOf<ca::ast::Method>();
#define PLEXUS_ROOT(member, TreeClass) Naive<ca::ast::TreeClass const&> member = detail::nodesOf<ca::ast::TreeClass>();
#include "rulesystem/execution/root_producers.def"
#undef PLEXUS_ROOT
  Naive<ca::usedef::Definition const*> definition{
      [](ca::Analysis const& analysis, Naive<ca::usedef::Definition const*>::Yield const& yield) {
        for (auto const* record : analysis.get<ca::usedef::UseDefAnalysis>().getAllUseDefs()) {
          if (record->isDefinition()) yield(record->asDefinition());
        }
      }};
  Naive<ca::usedef::Use const*> use{[](ca::Analysis const& analysis, Naive<ca::usedef::Use const*>::Yield const& yield) {
    for (auto const* record : analysis.get<ca::usedef::UseDefAnalysis>().getAllUseDefs()) {
      if (record->isUse()) yield(record->asUse());
    }
  }};
};

}  // namespace plexus::testing
