#pragma once

// Negation and disjunction of predicates. There is no conjunction: chaining
// `where` stages is one, and lets each stage be shared.

#include <concepts>
#include <memory>
#include <string>
#include <type_traits>
#include <typeinfo>

#include "rulesystem/graph/stage.hpp"
#include "rulesystem/graph/stage_of.hpp"

namespace ca::rulesystem {

/// `!p`: passes what `p` rejects.
///
///     auto withArguments = all.parenOperation | !std::make_unique<HasArgumentCount>(0);
template <class T>
class NotPredicate final : public StageOf<NotPredicate<T>, Predicate<T>, std::unique_ptr<Predicate<T>>> {
  using Base = StageOf<NotPredicate<T>, Predicate<T>, std::unique_ptr<Predicate<T>>>;

 public:
  using Base::Base;

  /// The negated predicate.
  Predicate<T>& operand() const { return *this->template parameter<0>(); }

  std::u16string description() const override {
    // Appended piece by piece: GCC 12 at -O3 warns falsely (-Wrestrict) on a
    // literal + string concatenation.
    std::u16string text = u"!( ";
    text += operand().description();
    text += u" )";
    return text;
  }
  bool test(T item, ca::Analysis const& analysis) override { return !operand().test(item, analysis); }
};

/// `a || b`: passes what either passes. Both operands are tested for every
/// item, also when the first passes, since testing may change state (a
/// subrule's pending signal is used up by its test).
///
///     auto oneOrTwo = all.parenOperation | (std::make_unique<HasArgumentCount>(1) || std::make_unique<HasArgumentCount>(2));
template <class T, class L, class R>
class OrPredicate final
    : public StageOf<OrPredicate<T, L, R>, Predicate<T>, std::unique_ptr<Predicate<L>>, std::unique_ptr<Predicate<R>>> {
  using Base =
      StageOf<OrPredicate<T, L, R>, Predicate<T>, std::unique_ptr<Predicate<L>>, std::unique_ptr<Predicate<R>>>;

 public:
  using Base::Base;

  Predicate<L>& first() const { return *this->template parameter<0>(); }
  Predicate<R>& second() const { return *this->template parameter<1>(); }

  std::u16string description() const override {
    std::u16string text = u"(";
    text += first().description();
    text += u") || (";
    text += second().description();
    text += u")";
    return text;
  }
  bool test(T item, ca::Analysis const& analysis) override {
    bool const firstPassed = first().test(ItemConversion<L, T>::convert(item), analysis);
    bool const secondPassed = second().test(ItemConversion<R, T>::convert(item), analysis);
    return firstPassed || secondPassed;
  }
};

namespace detail {
template <class S>
concept PredicateStage = std::derived_from<S, PredicateBase>;

/// The item type of a disjunction: the operands' common item, where one that
/// looks only at the analysis (`Typeless`) takes the other's, and of a base
/// and a derived class the derived one, which both operands can take.
template <class L, class R>
using OrItem = std::conditional_t<std::is_same_v<L, Typeless>, R,
                                  std::conditional_t<std::is_same_v<R, Typeless> || std::is_convertible_v<L, R>, L, R>>;
}  // namespace detail

/// Negation of a predicate; takes the operand over.
template <detail::PredicateStage S>
std::unique_ptr<Predicate<typename S::Item>> operator!(std::unique_ptr<S> operand) {
  using T = typename S::Item;
  return std::make_unique<NotPredicate<T>>(std::unique_ptr<Predicate<T>>(std::move(operand)));
}

/// Disjunction of two predicates; takes both over. The operands are put in an
/// order fixed by their classes, so that `a || b` and `b || a` are one stage.
/// A null operand raises std::bad_typeid.
template <detail::PredicateStage A, detail::PredicateStage B>
std::unique_ptr<Predicate<detail::OrItem<typename A::Item, typename B::Item>>> operator||(std::unique_ptr<A> left,
                                                                                          std::unique_ptr<B> right) {
  using LeftItem = typename A::Item;
  using RightItem = typename B::Item;
  using T = detail::OrItem<LeftItem, RightItem>;
  std::unique_ptr<Predicate<LeftItem>> l(std::move(left));
  std::unique_ptr<Predicate<RightItem>> r(std::move(right));
  std::type_info const& leftClass = typeid(*l.get());
  std::type_info const& rightClass = typeid(*r.get());
  if (leftClass.before(rightClass)) {
    return std::make_unique<OrPredicate<T, LeftItem, RightItem>>(std::move(l), std::move(r));
  }
  return std::make_unique<OrPredicate<T, RightItem, LeftItem>>(std::move(r), std::move(l));
}

}  // namespace ca::rulesystem
