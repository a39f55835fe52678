#pragma once

// How a stage compares one of its parameters: the single customisation point
// through which `StageOf` builds a stage's identity.

#include <compare>
#include <concepts>
#include <cstddef>
#include <memory>
#include <optional>
#include <ranges>
#include <tuple>
#include <type_traits>
#include <utility>

#include "rulesystem/graph/method_comparator.hpp"
#include "rulesystem/graph/stage.hpp"
#include "rulesystem/graph/uncompared.hpp"

namespace ca::rulesystem {

/// `ParameterOrder<P>::less(a, b)`: a strict weak order on parameters of type
/// P in which two values are equivalent exactly when a stage given either
/// does the same work. Specialise it for a parameter type of your own that has
/// no `operator<`, or whose `operator<` is not about its value. Given here:
///
/// - ordinary values, by their `operator<`: numbers, enums, `std::u16string`,
///   `ca::astapi::StringId` (ordered by text), and pairs, tuples, optionals
///   and containers of such values. Floating-point numbers go by their total
///   order (`std::strong_order`), so that a NaN is not equal to every number;
/// - owned stages (`std::unique_ptr` or `std::shared_ptr` of a predicate, a
///   transform or a select-many), by stage identity through
///   `PredicateCompare`, `TransformCompare` or `SelectManyCompare`: two
///   separately made equal operands are one, whatever their addresses;
/// - member-function pointers, through the process-wide `getComparator<M>()`,
///   since the language compares them for equality only;
/// - `Uncompared<T>`: always equivalent, deliberately outside the identity.
///
/// `Producer<T>` is ordered next to its definition, in producer.hpp, by the
/// vertex it designates. Anything that would compare by address (a raw
/// pointer, a smart pointer to something other than a stage, a container of
/// those) has no order: two rules made apart would never share, or worse, a
/// freed and remade object would merge unrelated ones.
template <class P>
struct ParameterOrder;

/// What a stage may hold as a parameter: a value of a type with an order. Not
/// a reference, which the stage would outlive.
template <class P>
concept StageParameter = std::is_object_v<P> && requires(P const& a, P const& b) {
  { ParameterOrder<P>::less(a, b) } -> std::same_as<bool>;
};

namespace detail {

template <class S>
concept OwnedStage =
    std::derived_from<S, PredicateBase> || std::derived_from<S, TransformBase> || std::derived_from<S, SelectManyBase>;

/// Whether `operator<` on P, where it exists, would look at addresses.
template <class P>
struct ComparesAddresses
    : std::bool_constant<std::is_pointer_v<P> || std::is_member_pointer_v<P> || std::is_null_pointer_v<P>> {};
template <class T, class D>
struct ComparesAddresses<std::unique_ptr<T, D>> : std::true_type {};
template <class T>
struct ComparesAddresses<std::shared_ptr<T>> : std::true_type {};
template <class T>
struct ComparesAddresses<std::optional<T>> : ComparesAddresses<T> {};
template <class A, class B>
struct ComparesAddresses<std::pair<A, B>> : std::disjunction<ComparesAddresses<A>, ComparesAddresses<B>> {};
template <class... T>
struct ComparesAddresses<std::tuple<T...>> : std::disjunction<ComparesAddresses<T>...> {};
template <std::ranges::range R>
struct ComparesAddresses<R> : ComparesAddresses<std::ranges::range_value_t<R>> {};

/// A value whose `operator<` is its order; floating point is ordered apart.
template <class P>
concept OrderedValue = !ComparesAddresses<P>::value && !std::floating_point<P> && requires(P const& a, P const& b) {
  { a < b } -> std::convertible_to<bool>;
};

template <class S>
bool stageOrder(S const* a, S const* b) {
  if constexpr (std::derived_from<S, PredicateBase>) {
    return PredicateCompare()(a, b);
  } else if constexpr (std::derived_from<S, TransformBase>) {
    return TransformCompare()(a, b);
  } else {
    return SelectManyCompare()(a, b);
  }
}

}  // namespace detail

template <class P>
requires detail::OrderedValue<P>
struct ParameterOrder<P> {
  static bool less(P const& a, P const& b) { return static_cast<bool>(a < b); }
};

template <std::floating_point P>
struct ParameterOrder<P> {
  static bool less(P a, P b) { return std::strong_order(a, b) < 0; }
};

template <detail::OwnedStage S>
struct ParameterOrder<std::unique_ptr<S>> {
  static bool less(std::unique_ptr<S> const& a, std::unique_ptr<S> const& b) {
    return detail::stageOrder<S>(a.get(), b.get());
  }
};

template <detail::OwnedStage S>
struct ParameterOrder<std::shared_ptr<S>> {
  static bool less(std::shared_ptr<S> const& a, std::shared_ptr<S> const& b) {
    return detail::stageOrder<S>(a.get(), b.get());
  }
};

template <class M>
requires std::is_member_function_pointer_v<M>
struct ParameterOrder<M> {
  static bool less(M a, M b) { return getComparator<M>()->compare(a, b); }
};

template <class T>
struct ParameterOrder<Uncompared<T>> {
  static bool less(Uncompared<T> const&, Uncompared<T> const&) { return false; }
};

}  // namespace ca::rulesystem
