#pragma once

#include <concepts>
#include <cstddef>
#include <string>
#include <tuple>
#include <type_traits>
#include <typeinfo>
#include <utility>

#include <boost/core/demangle.hpp>

#include "rulesystem/graph/checked_precondition.hpp"
#include "rulesystem/graph/parameter_order.hpp"
#include "rulesystem/graph/stage.hpp"

namespace ca::rulesystem {

namespace detail {

template <class Kind>
concept StageKind = std::derived_from<Kind, PredicateBase> || std::derived_from<Kind, TransformBase> ||
    std::derived_from<Kind, SelectManyBase>;

/// The stage base class that declares `lessThan` for Kind.
template <StageKind Kind>
using StageBaseOf =
    std::conditional_t<std::derived_from<Kind, PredicateBase>, PredicateBase,
                       std::conditional_t<std::derived_from<Kind, TransformBase>, TransformBase, SelectManyBase>>;

/// The parameters of a stage, held in declaration order.
template <StageKind Kind, class... Parameters>
class StageParameters : public Kind {
 public:
  using ParameterTypes = std::tuple<Parameters...>;

  /// One argument per parameter, in order.
  explicit StageParameters(Parameters... parameters) : parameters_(std::move(parameters)...) {}

  /// The parameter at `Index`.
  template <std::size_t Index>
  std::tuple_element_t<Index, ParameterTypes> const& parameter() const noexcept {
    return std::get<Index>(parameters_);
  }

 protected:
  [[no_unique_address]] ParameterTypes parameters_;
};

/// Whether a parameter is an owned predicate, whose dependencies the stage
/// that holds it shares.
template <class P>
bool parameterDependsOn(P const& parameter, ConsumerBase const* other) {
  if constexpr (requires { requires std::derived_from<typename P::element_type, PredicateBase>; }) {
    PredicateBase const* const stage = parameter.get();
    return stage != nullptr && stage->dependsOn(other);
  } else {
    return false;
  }
}

/// A predicate depends on what the predicates among its parameters depend on;
/// other stages have no dependencies to tell.
template <StageKind Kind, class... Parameters>
class StageDependencies : public StageParameters<Kind, Parameters...> {
 public:
  using StageParameters<Kind, Parameters...>::StageParameters;
};

template <StageKind Kind, class... Parameters>
requires std::derived_from<Kind, PredicateBase>
class StageDependencies<Kind, Parameters...> : public StageParameters<Kind, Parameters...> {
 public:
  using StageParameters<Kind, Parameters...>::StageParameters;

  /// Whether any parameter that is a predicate depends on `other`; false when
  /// none is. A stage that holds a part of the graph overrides this.
  bool dependsOn(ConsumerBase const* other) const override {
    return std::apply([other](auto const&... held) { return (parameterDependsOn(held, other) || ...); },
                      this->parameters_);
  }
};

/// Bytes that fill the tail padding of a stage's layout (none for zero).
template <std::size_t Bytes>
struct TailFill {
  char bytes[Bytes];
};
template <>
struct TailFill<0> {};

template <class Layout, std::size_t Bytes>
struct TailProbe : Layout {
  char probe[Bytes];
};

/// The tail padding of Layout: the most bytes that a class derived from it
/// can place without growing it (the Itanium C++ ABI puts a derived class's
/// members there).
template <class Layout, std::size_t... Bytes>
constexpr std::size_t tailPadding(std::index_sequence<Bytes...>) {
  std::size_t padding = 0;
  ((padding = sizeof(TailProbe<Layout, Bytes + 1>) == sizeof(Layout) ? Bytes + 1 : padding), ...);
  return padding;
}
template <class Layout>
inline constexpr std::size_t tailPaddingOf = tailPadding<Layout>(std::make_index_sequence<alignof(Layout) - 1>{});

}  // namespace detail

/// The one way to write a stage: the base holds the stage's parameters, and
/// those parameters are its identity. `Kind` is `Predicate<T>`,
/// `Transform<In, Out>` or `SelectMany<In, Out>`; `Parameters` are what
/// tells two stages of the class apart, in order.
///
///     class HasArgumentCount final
///         : public StageOf<HasArgumentCount, Predicate<ParenOperation const&>, std::size_t> {
///      public:
///       using StageOf::StageOf;
///       std::size_t count() const { return parameter<0>(); }
///       std::u16string description() const override { return u"HasArgumentCount"; }
///       bool test(ParenOperation const& call, ca::Analysis const&) override {
///         return call.getArguments().size() == count();
///       }
///     };
///
///     all.parenOperation | std::make_unique<HasArgumentCount>(2)  // one vertex however many rules ask
///
/// What it gives:
/// - `lessThan`, final: the parameters compared in order, each through
///   `ParameterOrder` (see parameter_order.hpp), so that none can be left out;
/// - for predicates, `dependsOn`: true when a parameter that is a predicate
///   depends on `other`. A stage that holds a part of the graph (a subrule)
///   overrides it;
/// - `parameter<I>()`, read access; name accessors after what they mean.
///
/// What it refuses, at compile time: a parameter type without an order (one
/// that would compare by address, say); a derived class that is not final;
/// and a data member of the derived class's own, which would be left out of
/// the identity and silently merge two different stages. What does not change
/// the stage's answers but must be held anyway goes in as `Uncompared<T>`.
template <class Derived, detail::StageKind Kind, class... Parameters>
class StageOf : public detail::StageDependencies<Kind, Parameters...> {
  static_assert((StageParameter<Parameters> && ...),
                "every parameter of a stage needs an order, ParameterOrder<P>: a value with operator<, an owned "
                "stage, a member-function pointer, a Producer, or Uncompared<T> for what is deliberately not "
                "part of the stage's identity (see rulesystem/graph/parameter_order.hpp)");

  using Layout = detail::StageDependencies<Kind, Parameters...>;
  using StageBase = detail::StageBaseOf<Kind>;

 public:
  using Layout::Layout;

  /// The order among stages of class Derived: the parameters, compared in
  /// order. `other` is of class Derived, which the stage comparators see to
  /// (and checked builds check).
  bool lessThan(StageBase const* other) const final {
    // Here Derived is complete. Its own members would not be compared, and
    // two stages that differ in them would become one vertex.
    static_assert(sizeof(Derived) == sizeof(StageOf),
                  "a stage keeps its state in StageOf's parameters: a data member of the stage class's own "
                  "would be left out of the stage's identity, merging stages that differ in it (make it a "
                  "parameter, or Uncompared<T> if it truly does not change what the stage does)");
    static_assert(std::is_final_v<Derived>,
                  "a stage class must be final: a class derived from it would share its identity while adding "
                  "to it");
    static_assert(std::is_base_of_v<StageOf, Derived>,
                  "the first argument of StageOf is the stage class that derives from it");
    PLEXUS_CHECK_PRECONDITION(typeid(*other) == typeid(Derived),
                              "StageOf::lessThan of " + boost::core::demangle(typeid(Derived).name()) +
                                  " was given a stage of another class, " +
                                  boost::core::demangle(typeid(*other).name()) +
                                  "; compare stages through PredicateCompare, TransformCompare or "
                                  "SelectManyCompare, which order by class first");
    StageOf const& that = static_cast<Derived const&>(*other);
    return lexicographicLess<0>(that);
  }

 private:
  template <std::size_t Index>
  bool lexicographicLess(StageOf const& that) const {
    if constexpr (Index == sizeof...(Parameters)) {
      return false;
    } else {
      using Order = ParameterOrder<std::tuple_element_t<Index, typename Layout::ParameterTypes>>;
      auto const& mine = std::get<Index>(this->parameters_);
      auto const& theirs = std::get<Index>(that.parameters_);
      if (Order::less(mine, theirs)) return true;
      if (Order::less(theirs, mine)) return false;
      return lexicographicLess<Index + 1>(that);
    }
  }

  // Fills the layout's tail padding, where the ABI would otherwise place a
  // small member of the derived class without changing its size.
  [[no_unique_address]] detail::TailFill<detail::tailPaddingOf<Layout>> tailFill_{};
};

}  // namespace ca::rulesystem
