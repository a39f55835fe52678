#pragma once

// Small stages for tests of the graph: one of each kind, with and without
// parameters, that count how often they run.

#include <memory>
#include <string>

#include "rulesystem/graph/producer.hpp"
#include "rulesystem/graph/tree_types.hpp"

namespace plexus::testing {

using namespace ca::rulesystem;

/// Passes every node; counts its tests in `*calls` when given.
class AcceptAll final : public Predicate<Node const&> {
 public:
  explicit AcceptAll(int* calls = nullptr) : calls_(calls) {}
  std::u16string description() const override { return u"AcceptAll"; }
  bool dependsOn(ConsumerBase const*) const override { return false; }
  bool lessThan(PredicateBase const*) const override { return false; }
  bool test(Node const&, ca::Analysis const&) override {
    if (calls_ != nullptr) ++*calls_;
    return true;
  }

 private:
  int* calls_;
};

/// Passes nodes of one kind; the kind is its parameter.
class HasKind final : public Predicate<Node const&> {
 public:
  explicit HasKind(lf::astapi::NodeKind kind, int* calls = nullptr) : kind_(kind), calls_(calls) {}
  std::u16string description() const override { return u"HasKind"; }
  bool dependsOn(ConsumerBase const*) const override { return false; }
  bool lessThan(PredicateBase const* other) const override {
    return kind_ < dynamic_cast<HasKind const&>(*other).kind_;
  }
  bool test(Node const& node, ca::Analysis const&) override {
    if (calls_ != nullptr) ++*calls_;
    return node.getKind() == kind_;
  }

 private:
  lf::astapi::NodeKind kind_;
  int* calls_;
};

/// Passes rows that hold a number literal among their elements.
class HasNumber final : public Predicate<Row const&> {
 public:
  std::u16string description() const override { return u"HasNumber"; }
  bool dependsOn(ConsumerBase const*) const override { return false; }
  bool lessThan(PredicateBase const*) const override { return false; }
  bool test(Row const& row, ca::Analysis const&) override {
    for (Expression const* element : row.getElements()) {
      if (element->getKind() == lf::astapi::NodeKind::NumberLiteral) return true;
    }
    return false;
  }
};

/// The called expression of a paren operation.
class FunctionOf final : public Transform<ParenOperation const&, Expression const&> {
 public:
  explicit FunctionOf(int* calls = nullptr) : calls_(calls) {}
  std::u16string description() const override { return u"FunctionOf"; }
  bool lessThan(TransformBase const*) const override { return false; }
  Expression const& transform(ParenOperation const& node, ca::Analysis const&) const override {
    if (calls_ != nullptr) ++*calls_;
    return *node.getFunction();
  }

 private:
  int* calls_;
};

/// The arguments of a paren operation, one by one.
class ArgumentsOf final : public SelectMany<ParenOperation const&, Expression const&> {
 public:
  std::u16string description() const override { return u"ArgumentsOf"; }
  bool lessThan(SelectManyBase const*) const override { return false; }
  void select(ParenOperation const& node, ca::Analysis const&,
              std::function<void(Expression const&)> const& yield) const override {
    for (Expression const* argument : node.getArguments()) yield(*argument);
  }
};

}  // namespace plexus::testing
