#include "rulesystem/calls/call_arguments.hpp"

#include <functional>

namespace ca::rulesystem {

namespace {

using ca::callresolution::Call;
using lf::astapi::NodeKind;
using CallPredicate = std::unique_ptr<Predicate<Call const&>>;

/// The text of a comparison in a count predicate's description.
template <class Op>
constexpr char16_t const* comparisonText();
template <>
constexpr char16_t const* comparisonText<std::equal_to<unsigned long>>() {
  return u"==";
}
template <>
constexpr char16_t const* comparisonText<std::not_equal_to<unsigned long>>() {
  return u"!=";
}
template <>
constexpr char16_t const* comparisonText<std::less<unsigned long>>() {
  return u"<";
}
template <>
constexpr char16_t const* comparisonText<std::greater<unsigned long>>() {
  return u">";
}
template <>
constexpr char16_t const* comparisonText<std::less_equal<unsigned long>>() {
  return u"<=";
}
template <>
constexpr char16_t const* comparisonText<std::greater_equal<unsigned long>>() {
  return u">=";
}

std::u16string countDescription(char16_t const* what, char16_t const* comparison, unsigned long count) {
  fl::i18n::TextStream text;
  text << what << comparison << u" " << count;
  return text.str();
}

/// How many results the context of a call takes, from the syntax alone.
/// Parentheses count as a context of their own: `(f(x));` takes one.
unsigned long outputCount(Call const& call) {
  Node const& node = *call.getNode();
  if (lf::astapi::isA<CommandInvocation>(node)) return 0;
  Node const* const parent = node.getParent();
  if (parent == nullptr) return 1;
  switch (parent->getKind()) {
    case NodeKind::ExpressionStatement:
    case NodeKind::AnonymousFunction:
    case NodeKind::PrintStatement: return 0;
    case NodeKind::MultiLhsAssignment: return lf::astapi::cast<MultiLhsAssignment>(*parent).getOutputs().size();
    default: return 1;
  }
}

/// The first node above a call that is not a pair of parentheses around it.
Node const* contextAbove(Node const& node) {
  Node const* above = node.getParent();
  while (above != nullptr && lf::astapi::isA<ParenthesizedExpression>(*above)) above = above->getParent();
  return above;
}

/// Compares the number of arguments of a call with `count`.
template <class Op>
class ArgumentCountPredicate final : public StageOf<ArgumentCountPredicate<Op>, Predicate<Call const&>, unsigned long> {
  using Base = StageOf<ArgumentCountPredicate<Op>, Predicate<Call const&>, unsigned long>;

 public:
  using Base::Base;
  unsigned long count() const { return this->template parameter<0>(); }
  std::u16string description() const override {
    return countDescription(u"NumArgs ", comparisonText<Op>(), count());
  }
  bool test(Call const& call, ca::Analysis const&) override { return Op{}(call.getNumArguments(), count()); }
};

/// Compares the number of results a call's context takes with `count`.
template <class Op>
class OutputArgumentCountPredicate final
    : public StageOf<OutputArgumentCountPredicate<Op>, Predicate<Call const&>, unsigned long> {
  using Base = StageOf<OutputArgumentCountPredicate<Op>, Predicate<Call const&>, unsigned long>;

 public:
  using Base::Base;
  unsigned long count() const { return this->template parameter<0>(); }
  std::u16string description() const override {
    return countDescription(u"NumOutputArgs ", comparisonText<Op>(), count());
  }
  bool test(Call const& call, ca::Analysis const&) override { return Op{}(outputCount(call), count()); }
};

template <template <class> class CountPredicate, class Op>
CallPredicate countIs(unsigned long count) {
  return std::make_unique<CountPredicate<Op>>(count);
}

}  // namespace

// With the number on the left, the comparison is mirrored: `n < tag` says
// that the count is greater than n.

CallPredicate operator==(numArguments const&, unsigned long count) {
  return countIs<ArgumentCountPredicate, std::equal_to<unsigned long>>(count);
}
CallPredicate operator!=(numArguments const&, unsigned long count) {
  return countIs<ArgumentCountPredicate, std::not_equal_to<unsigned long>>(count);
}
CallPredicate operator<(numArguments const&, unsigned long count) {
  return countIs<ArgumentCountPredicate, std::less<unsigned long>>(count);
}
CallPredicate operator>(numArguments const&, unsigned long count) {
  return countIs<ArgumentCountPredicate, std::greater<unsigned long>>(count);
}
CallPredicate operator<=(numArguments const&, unsigned long count) {
  return countIs<ArgumentCountPredicate, std::less_equal<unsigned long>>(count);
}
CallPredicate operator>=(numArguments const&, unsigned long count) {
  return countIs<ArgumentCountPredicate, std::greater_equal<unsigned long>>(count);
}
CallPredicate operator==(unsigned long count, numArguments const&) {
  return countIs<ArgumentCountPredicate, std::equal_to<unsigned long>>(count);
}
CallPredicate operator!=(unsigned long count, numArguments const&) {
  return countIs<ArgumentCountPredicate, std::not_equal_to<unsigned long>>(count);
}
CallPredicate operator<(unsigned long count, numArguments const&) {
  return countIs<ArgumentCountPredicate, std::greater<unsigned long>>(count);
}
CallPredicate operator>(unsigned long count, numArguments const&) {
  return countIs<ArgumentCountPredicate, std::less<unsigned long>>(count);
}
CallPredicate operator<=(unsigned long count, numArguments const&) {
  return countIs<ArgumentCountPredicate, std::greater_equal<unsigned long>>(count);
}
CallPredicate operator>=(unsigned long count, numArguments const&) {
  return countIs<ArgumentCountPredicate, std::less_equal<unsigned long>>(count);
}

CallPredicate operator==(numOutputArguments const&, unsigned long count) {
  return countIs<OutputArgumentCountPredicate, std::equal_to<unsigned long>>(count);
}
CallPredicate operator!=(numOutputArguments const&, unsigned long count) {
  return countIs<OutputArgumentCountPredicate, std::not_equal_to<unsigned long>>(count);
}
CallPredicate operator<(numOutputArguments const&, unsigned long count) {
  return countIs<OutputArgumentCountPredicate, std::less<unsigned long>>(count);
}
CallPredicate operator>(numOutputArguments const&, unsigned long count) {
  return countIs<OutputArgumentCountPredicate, std::greater<unsigned long>>(count);
}
CallPredicate operator<=(numOutputArguments const&, unsigned long count) {
  return countIs<OutputArgumentCountPredicate, std::less_equal<unsigned long>>(count);
}
CallPredicate operator>=(numOutputArguments const&, unsigned long count) {
  return countIs<OutputArgumentCountPredicate, std::greater_equal<unsigned long>>(count);
}
CallPredicate operator==(unsigned long count, numOutputArguments const&) {
  return countIs<OutputArgumentCountPredicate, std::equal_to<unsigned long>>(count);
}
CallPredicate operator!=(unsigned long count, numOutputArguments const&) {
  return countIs<OutputArgumentCountPredicate, std::not_equal_to<unsigned long>>(count);
}
CallPredicate operator<(unsigned long count, numOutputArguments const&) {
  return countIs<OutputArgumentCountPredicate, std::greater<unsigned long>>(count);
}
CallPredicate operator>(unsigned long count, numOutputArguments const&) {
  return countIs<OutputArgumentCountPredicate, std::less<unsigned long>>(count);
}
CallPredicate operator<=(unsigned long count, numOutputArguments const&) {
  return countIs<OutputArgumentCountPredicate, std::greater_equal<unsigned long>>(count);
}
CallPredicate operator>=(unsigned long count, numOutputArguments const&) {
  return countIs<OutputArgumentCountPredicate, std::less_equal<unsigned long>>(count);
}

std::unique_ptr<SelectMany<Call const&, Expression const&>> getSingleOutput() {
  // Only directly on the right of `=`: `y = (f(x))` assigns the parentheses.
  class GetSingleOutput final : public StageOf<GetSingleOutput, SelectMany<Call const&, Expression const&>> {
   public:
    std::u16string description() const override { return u"GetSingleOutput"; }
    void select(Call const& call, ca::Analysis const&,
                std::function<void(Expression const&)> const& yield) const override {
      if (auto const* assignment = lf::astapi::dynCast<Assignment>(call.getNode()->getParent())) {
        yield(*assignment->getLeft());
      }
    }
  };
  return std::make_unique<GetSingleOutput>();
}

std::unique_ptr<SelectMany<Call const&, Expression const&>> getOutputInMultiAssignment(unsigned long index) {
  class GetOutputInMultiAssignment final
      : public StageOf<GetOutputInMultiAssignment, SelectMany<Call const&, Expression const&>, unsigned long> {
   public:
    using StageOf::StageOf;
    unsigned long index() const { return parameter<0>(); }
    // The position is deliberately not shown: two such stages print alike.
    std::u16string description() const override { return u"GetOutputInMultiAssignment"; }
    void select(Call const& call, ca::Analysis const&,
                std::function<void(Expression const&)> const& yield) const override {
      PLEXUS_INVARIANT(index() != 0, "getOutputInMultiAssignment counts positions from 1");
      auto const* assignment = lf::astapi::dynCast<MultiLhsAssignment>(call.getNode()->getParent());
      if (assignment == nullptr) return;
      auto const outputs = assignment->getOutputs();
      if (outputs.empty() || outputs.size() < index()) return;
      yield(*outputs[index() - 1]);
    }
  };
  return std::make_unique<GetOutputInMultiAssignment>(index);
}

std::unique_ptr<Predicate<Call const&>> isOutputDefinitelyUsed() {
  class IsOutputDefinitelyUsed final : public StageOf<IsOutputDefinitelyUsed, Predicate<Call const&>> {
   public:
    std::u16string description() const override { return u"IsOutputDefinitelyUsed"; }
    bool test(Call const& call, ca::Analysis const&) override {
      Node const& node = *call.getNode();
      if (lf::astapi::isA<CommandInvocation>(node)) return false;
      Node const* const above = contextAbove(node);
      // The body of an anonymous function may or may not be used: unknown.
      return above != nullptr && !lf::astapi::isA<AnonymousFunction>(*above) &&
             !lf::astapi::isA<ExpressionStatement>(*above);
    }
  };
  return std::make_unique<IsOutputDefinitelyUsed>();
}

std::unique_ptr<Predicate<Call const&>> isOutputDefinitelyNotUsed() {
  class IsOutputDefinitelyNotUsed final : public StageOf<IsOutputDefinitelyNotUsed, Predicate<Call const&>> {
   public:
    std::u16string description() const override { return u"IsOutputDefinitelyNotUsed"; }
    bool test(Call const& call, ca::Analysis const&) override {
      Node const& node = *call.getNode();
      if (lf::astapi::isA<CommandInvocation>(node)) return true;
      Node const* const above = contextAbove(node);
      return above != nullptr && lf::astapi::isA<ExpressionStatement>(*above);
    }
  };
  return std::make_unique<IsOutputDefinitelyNotUsed>();
}

std::unique_ptr<Predicate<Call const&>> isDotSyntax() {
  class IsDotSyntax final : public StageOf<IsDotSyntax, Predicate<Call const&>> {
   public:
    std::u16string description() const override { return u"IsDotSyntax"; }
    bool test(Call const& call, ca::Analysis const&) override {
      Node const* node = call.getNode();
      if (lf::astapi::isA<CommandInvocation>(*node)) return false;
      if (auto const* paren = lf::astapi::dynCast<ParenOperation>(node)) node = paren->getFunction();
      return lf::astapi::isA<DotOperation>(node);
    }
  };
  return std::make_unique<IsDotSyntax>();
}

}  // namespace ca::rulesystem
