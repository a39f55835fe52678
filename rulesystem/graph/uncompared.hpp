#pragma once

#include <utility>

namespace ca::rulesystem {

/// A stage parameter that is deliberately left out of the stage's identity:
/// two stages that differ only here are one vertex, and the one asked for
/// second is dropped with its value. Only for what does not change which items
/// pass or what comes out: instrumentation, such as the call counter of a test
/// stage, or state that every instance makes for itself, such as a subrule's
/// own consumer. A value that changes the stage's answers must be compared, or
/// different rules would be merged into one.
///
///     class CountedCalls final : public StageOf<CountedCalls, Predicate<ParenOperation const&>, Uncompared<int*>> {
///      public:
///       using StageOf::StageOf;
///       std::u16string description() const override { return u"CountedCalls"; }
///       bool test(ParenOperation const&, ca::Analysis const&) override {
///         ++*parameter<0>().value;
///         return true;
///       }
///     };
///
/// Converts implicitly from the value, so that a constructor argument reads as
/// the value itself; the stage's declaration is where the choice shows.
template <class T>
struct Uncompared {
  Uncompared(T held) : value(std::move(held)) {}

  T value;
};

}  // namespace ca::rulesystem
