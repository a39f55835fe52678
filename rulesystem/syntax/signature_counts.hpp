#pragma once

// How many inputs or outputs a function or method declares. A signature whose
// inputs hold `varargin`, or whose outputs hold `varargout`, takes any number
// of further arguments, so its count is an interval [min, max]; a comparison
// with a number holds only when it holds for every count in the interval.
// That is why `==` and `!=` are not each other's negation here.

#include <cstdint>
#include <memory>
#include <string>

#include "platform/ast/ast.hpp"
#include "platform/i18n/i18n.hpp"
#include "rulesystem/graph/stage_of.hpp"
#include "rulesystem/graph/tree_types.hpp"

namespace ca::rulesystem {

/// The count of a function's inputs, for a comparison with a number that
/// makes a predicate on functions.
///   all.function | (functionInputs{} != 2)
struct functionInputs {};

/// The count of a function's outputs, for a comparison with a number that
/// makes a predicate on functions.
///   all.function | (functionOutputs{} == 1)
struct functionOutputs {};

/// The count of a method's inputs, the object included, for a comparison
/// with a number that makes a predicate on methods.
///   all.method | (methodInputs{} == 2)
struct methodInputs {};

/// The count of a method's outputs, for a comparison with a number that
/// makes a predicate on methods.
///   all.method | (methodOutputs{} != 1)
struct methodOutputs {};

/// The count of a signature: `min` ordinary items, and `max` the same unless
/// the list holds the open-ended name, when it is `open`.
struct ArgCountInterval {
  /// The largest unsigned 32-bit number, held in 64 bits: no upper bound.
  static constexpr std::uint64_t open = 4294967295u;

  std::uint64_t min = 0;
  std::uint64_t max = 0;
};

// The six comparisons of an interval with a number `c`, each true only when
// it holds for every count of the interval. Their names are part of the
// stages' descriptions.

/// The count is certainly `c`.
struct IntervalEqual {
  static constexpr char16_t const* name = u"IntervalEqual";
  static bool holds(ArgCountInterval const& counts, std::uint64_t c) { return counts.min == counts.max && c == counts.min; }
};
/// The count is certainly not `c`.
struct IntervalNotEqual {
  static constexpr char16_t const* name = u"IntervalNotEqual";
  static bool holds(ArgCountInterval const& counts, std::uint64_t c) { return counts.max < c || c < counts.min; }
};
/// Every count is above `c`.
struct IntervalGreater {
  static constexpr char16_t const* name = u"IntervalGreater";
  static bool holds(ArgCountInterval const& counts, std::uint64_t c) { return c < counts.min; }
};
/// Every count is below `c`.
struct IntervalLess {
  static constexpr char16_t const* name = u"IntervalLess";
  static bool holds(ArgCountInterval const& counts, std::uint64_t c) { return counts.max < c; }
};
/// Every count is at most `c`.
struct IntervalLessEqual {
  static constexpr char16_t const* name = u"IntervalLessEqual";
  static bool holds(ArgCountInterval const& counts, std::uint64_t c) { return counts.max <= c; }
};
/// Every count is at least `c`.
struct IntervalGreaterEqual {
  static constexpr char16_t const* name = u"IntervalGreaterEqual";
  static bool holds(ArgCountInterval const& counts, std::uint64_t c) { return counts.min >= c; }
};

namespace detail {

/// The names that open a signature, made once: interning takes a lock, and
/// every test of every count stage compares with them.
inline ca::astapi::StringId const& varargin() {
  static ca::astapi::StringId const name(u"varargin");
  return name;
}
inline ca::astapi::StringId const& varargout() {
  static ca::astapi::StringId const name(u"varargout");
  return name;
}

/// One more item of a signature: the open-ended name opens the interval,
/// anything else is one more ordinary item, wherever it stands.
inline void countItem(ArgCountInterval& counts, bool openEnded) {
  if (openEnded) {
    counts.max = ArgCountInterval::open;
    return;
  }
  ++counts.min;
  if (counts.max != ArgCountInterval::open) ++counts.max;
}

/// The count of the inputs of `function`; an ignored input is an ordinary one.
inline ArgCountInterval inputArgCount(Function const& function) {
  ArgCountInterval counts;
  for (InputArgument const* input : function.getInputs()) {
    Identifier const* name = input->getIdentifier();
    countItem(counts, name != nullptr && name->getStringId() == varargin());
  }
  return counts;
}

/// The count of the outputs of `function`.
inline ArgCountInterval outputArgCount(Function const& function) {
  ArgCountInterval counts;
  for (Identifier const* output : function.getOutputs()) countItem(counts, output->getStringId() == varargout());
  return counts;
}

/// "InputArg IntervalLess3": the family, the comparator and the number, with
/// no blank before the number.
template <class Cmp>
std::u16string describeArgCount(char16_t const* family, std::uint64_t count) {
  fl::i18n::TextStream text;
  text << family << Cmp::name << count;
  return text.str();
}

}  // namespace detail

/// Keeps the functions or methods (`T`) whose inputs compare as `Cmp` with
/// the number held. Made by the comparisons of `functionInputs` and
/// `methodInputs`; the number is its identity.
template <class T, class Cmp>
class CompareInputArgCount final : public StageOf<CompareInputArgCount<T, Cmp>, Predicate<T const&>, std::uint64_t> {
  using Base = StageOf<CompareInputArgCount<T, Cmp>, Predicate<T const&>, std::uint64_t>;

 public:
  using Base::Base;
  std::uint64_t count() const { return this->template parameter<0>(); }
  std::u16string description() const override { return detail::describeArgCount<Cmp>(u"InputArg ", count()); }
  bool test(T const& function, ca::Analysis const&) override {
    return Cmp::holds(detail::inputArgCount(function), count());
  }
};

/// Keeps the functions or methods (`T`) whose outputs compare as `Cmp` with
/// the number held. Made by the comparisons of `functionOutputs` and
/// `methodOutputs`; the number is its identity.
template <class T, class Cmp>
class CompareOutputArgCount final : public StageOf<CompareOutputArgCount<T, Cmp>, Predicate<T const&>, std::uint64_t> {
  using Base = StageOf<CompareOutputArgCount<T, Cmp>, Predicate<T const&>, std::uint64_t>;

 public:
  using Base::Base;
  std::uint64_t count() const { return this->template parameter<0>(); }
  std::u16string description() const override { return detail::describeArgCount<Cmp>(u"OutputArg ", count()); }
  bool test(T const& function, ca::Analysis const&) override {
    return Cmp::holds(detail::outputArgCount(function), count());
  }
};

namespace detail {
template <class Stage>
std::unique_ptr<Predicate<typename Stage::Item>> makeArgCountStage(std::uint64_t count) {
  return std::make_unique<Stage>(count);
}
}  // namespace detail

/// Keeps the functions whose input count certainly compares so with `count`:
/// with `varargin` only `>` and `>=` can hold, and only up to the ordinary inputs.
///   all.function | (functionInputs{} >= 2)
inline std::unique_ptr<Predicate<Function const&>> operator==(functionInputs, std::uint64_t count) {
  return detail::makeArgCountStage<CompareInputArgCount<Function, IntervalEqual>>(count);
}
inline std::unique_ptr<Predicate<Function const&>> operator!=(functionInputs, std::uint64_t count) {
  return detail::makeArgCountStage<CompareInputArgCount<Function, IntervalNotEqual>>(count);
}
inline std::unique_ptr<Predicate<Function const&>> operator>(functionInputs, std::uint64_t count) {
  return detail::makeArgCountStage<CompareInputArgCount<Function, IntervalGreater>>(count);
}
inline std::unique_ptr<Predicate<Function const&>> operator<(functionInputs, std::uint64_t count) {
  return detail::makeArgCountStage<CompareInputArgCount<Function, IntervalLess>>(count);
}
inline std::unique_ptr<Predicate<Function const&>> operator<=(functionInputs, std::uint64_t count) {
  return detail::makeArgCountStage<CompareInputArgCount<Function, IntervalLessEqual>>(count);
}
inline std::unique_ptr<Predicate<Function const&>> operator>=(functionInputs, std::uint64_t count) {
  return detail::makeArgCountStage<CompareInputArgCount<Function, IntervalGreaterEqual>>(count);
}

/// Keeps the functions whose output count certainly compares so with `count`:
/// with `varargout` only `>` and `>=` can hold, and only up to the ordinary outputs.
///   all.function | (functionOutputs{} == 0)
inline std::unique_ptr<Predicate<Function const&>> operator==(functionOutputs, std::uint64_t count) {
  return detail::makeArgCountStage<CompareOutputArgCount<Function, IntervalEqual>>(count);
}
inline std::unique_ptr<Predicate<Function const&>> operator!=(functionOutputs, std::uint64_t count) {
  return detail::makeArgCountStage<CompareOutputArgCount<Function, IntervalNotEqual>>(count);
}
inline std::unique_ptr<Predicate<Function const&>> operator>(functionOutputs, std::uint64_t count) {
  return detail::makeArgCountStage<CompareOutputArgCount<Function, IntervalGreater>>(count);
}
inline std::unique_ptr<Predicate<Function const&>> operator<(functionOutputs, std::uint64_t count) {
  return detail::makeArgCountStage<CompareOutputArgCount<Function, IntervalLess>>(count);
}
inline std::unique_ptr<Predicate<Function const&>> operator<=(functionOutputs, std::uint64_t count) {
  return detail::makeArgCountStage<CompareOutputArgCount<Function, IntervalLessEqual>>(count);
}
inline std::unique_ptr<Predicate<Function const&>> operator>=(functionOutputs, std::uint64_t count) {
  return detail::makeArgCountStage<CompareOutputArgCount<Function, IntervalGreaterEqual>>(count);
}

/// Keeps the methods, declared or defined, whose input count certainly
/// compares so with `count`; the object counts as an input.
///   all.method | (methodInputs{} > 1)
inline std::unique_ptr<Predicate<Method const&>> operator==(methodInputs, std::uint64_t count) {
  return detail::makeArgCountStage<CompareInputArgCount<Method, IntervalEqual>>(count);
}
inline std::unique_ptr<Predicate<Method const&>> operator!=(methodInputs, std::uint64_t count) {
  return detail::makeArgCountStage<CompareInputArgCount<Method, IntervalNotEqual>>(count);
}
inline std::unique_ptr<Predicate<Method const&>> operator>(methodInputs, std::uint64_t count) {
  return detail::makeArgCountStage<CompareInputArgCount<Method, IntervalGreater>>(count);
}
inline std::unique_ptr<Predicate<Method const&>> operator<(methodInputs, std::uint64_t count) {
  return detail::makeArgCountStage<CompareInputArgCount<Method, IntervalLess>>(count);
}
inline std::unique_ptr<Predicate<Method const&>> operator<=(methodInputs, std::uint64_t count) {
  return detail::makeArgCountStage<CompareInputArgCount<Method, IntervalLessEqual>>(count);
}
inline std::unique_ptr<Predicate<Method const&>> operator>=(methodInputs, std::uint64_t count) {
  return detail::makeArgCountStage<CompareInputArgCount<Method, IntervalGreaterEqual>>(count);
}

/// Keeps the methods, declared or defined, whose output count certainly
/// compares so with `count`.
///   all.methodDefinition | (methodOutputs{} == 1)
inline std::unique_ptr<Predicate<Method const&>> operator==(methodOutputs, std::uint64_t count) {
  return detail::makeArgCountStage<CompareOutputArgCount<Method, IntervalEqual>>(count);
}
inline std::unique_ptr<Predicate<Method const&>> operator!=(methodOutputs, std::uint64_t count) {
  return detail::makeArgCountStage<CompareOutputArgCount<Method, IntervalNotEqual>>(count);
}
inline std::unique_ptr<Predicate<Method const&>> operator>(methodOutputs, std::uint64_t count) {
  return detail::makeArgCountStage<CompareOutputArgCount<Method, IntervalGreater>>(count);
}
inline std::unique_ptr<Predicate<Method const&>> operator<(methodOutputs, std::uint64_t count) {
  return detail::makeArgCountStage<CompareOutputArgCount<Method, IntervalLess>>(count);
}
inline std::unique_ptr<Predicate<Method const&>> operator<=(methodOutputs, std::uint64_t count) {
  return detail::makeArgCountStage<CompareOutputArgCount<Method, IntervalLessEqual>>(count);
}
inline std::unique_ptr<Predicate<Method const&>> operator>=(methodOutputs, std::uint64_t count) {
  return detail::makeArgCountStage<CompareOutputArgCount<Method, IntervalGreaterEqual>>(count);
}

}  // namespace ca::rulesystem
