#pragma once

// Small stages for tests of the graph: one of each kind, with and without
// parameters, that count how often they run.

#include <functional>
#include <memory>
#include <string>

#include "rulesystem/graph/producer.hpp"
#include "rulesystem/graph/stage_of.hpp"
#include "rulesystem/graph/tree_types.hpp"
#include "rulesystem/graph/uncompared.hpp"

namespace plexus::testing {

using namespace ca::rulesystem;

/// Adds one to `*calls` when there is a counter.
inline void count(int* calls) {
  if (calls != nullptr) ++*calls;
}

/// Passes every node; counts its tests in `*calls` when given.
class AcceptAll final : public StageOf<AcceptAll, Predicate<Node const&>, Uncompared<int*>> {
 public:
  explicit AcceptAll(int* calls = nullptr) : StageOf(calls) {}
  std::u16string description() const override { return u"AcceptAll"; }
  bool test(Node const&, ca::Analysis const&) override {
    count(parameter<0>().value);
    return true;
  }
};

/// Passes nodes of one kind; the kind is its parameter.
class HasKind final : public StageOf<HasKind, Predicate<Node const&>, lf::astapi::NodeKind, Uncompared<int*>> {
 public:
  explicit HasKind(lf::astapi::NodeKind kind, int* calls = nullptr) : StageOf(kind, calls) {}
  lf::astapi::NodeKind kind() const { return parameter<0>(); }
  std::u16string description() const override { return u"HasKind"; }
  bool test(Node const& node, ca::Analysis const&) override {
    count(parameter<1>().value);
    return node.getKind() == kind();
  }
};

/// Passes rows that hold a number literal among their elements.
class HasNumber final : public StageOf<HasNumber, Predicate<Row const&>> {
 public:
  std::u16string description() const override { return u"HasNumber"; }
  bool test(Row const& row, ca::Analysis const&) override {
    for (Expression const* element : row.getElements()) {
      if (element->getKind() == lf::astapi::NodeKind::NumberLiteral) return true;
    }
    return false;
  }
};

/// Looks only at the analysis: passes for scripts.
class IsScript final : public StageOf<IsScript, Predicate<Typeless>> {
 public:
  std::u16string description() const override { return u"IsScript"; }
  bool test(Typeless, ca::Analysis const& analysis) override { return analysis.getFileType() == ca::FileType::Script; }
};

/// A number whose comparisons are counted in `*comparisons`, to see when a
/// stage's parameters are compared; the order is the number's.
struct CountedNumber {
  int value;
  int* comparisons;

  friend bool operator<(CountedNumber const& a, CountedNumber const& b) {
    ++*a.comparisons;
    return a.value < b.value;
  }
};

/// Passes every node; its one parameter counts how often stage identity
/// compares it.
class ComparisonSpy final : public StageOf<ComparisonSpy, Predicate<Node const&>, CountedNumber> {
 public:
  ComparisonSpy(int number, int* comparisons) : StageOf(CountedNumber{number, comparisons}) {}
  std::u16string description() const override { return u"ComparisonSpy"; }
  bool test(Node const&, ca::Analysis const&) override { return true; }
};

/// The called expression of a paren operation.
class FunctionOf final
    : public StageOf<FunctionOf, Transform<ParenOperation const&, Expression const&>, Uncompared<int*>> {
 public:
  explicit FunctionOf(int* calls = nullptr) : StageOf(calls) {}
  std::u16string description() const override { return u"FunctionOf"; }
  Expression const& transform(ParenOperation const& node, ca::Analysis const&) const override {
    count(parameter<0>().value);
    return *node.getFunction();
  }
};

/// The expression of an expression statement, as a node.
class StatementExpression final
    : public StageOf<StatementExpression, Transform<ExpressionStatement const&, Node const&>> {
 public:
  std::u16string description() const override { return u"StatementExpression"; }
  Node const& transform(ExpressionStatement const& statement, ca::Analysis const&) const override {
    return *statement.getExpression();
  }
};

/// The arguments of a paren operation, one by one.
class ArgumentsOf final : public StageOf<ArgumentsOf, SelectMany<ParenOperation const&, Expression const&>> {
 public:
  std::u16string description() const override { return u"ArgumentsOf"; }
  void select(ParenOperation const& node, ca::Analysis const&,
              std::function<void(Expression const&)> const& yield) const override {
    for (Expression const* argument : node.getArguments()) yield(*argument);
  }
};

}  // namespace plexus::testing
