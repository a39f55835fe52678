#pragma once

// The stages of the benchmark rules, written as a rule author would. The
// stages of a shared prefix have no parameters, so every instance equals every
// other; the last stage of each rule has one, so that rules looking for
// different values keep different vertices.

#include <string>

#include "platform/ast/ast.hpp"
#include "platform/ast/string_id.hpp"
#include "rulesystem/graph/stage.hpp"

namespace plexus::bench {

/// Passes calls whose called expression is a plain name: `f(x)`, not `s.f(x)`.
class CallsByName final : public ca::rulesystem::Predicate<ca::ast::ParenOperation const&> {
 public:
  std::u16string description() const override { return u"CallsByName"; }
  bool dependsOn(ca::rulesystem::ConsumerBase const*) const override { return false; }
  bool lessThan(ca::rulesystem::PredicateBase const*) const override { return false; }
  bool test(ca::ast::ParenOperation const& call, ca::Analysis const&) override {
    return call.getFunction()->getKind() == lf::astapi::NodeKind::Identifier;
  }
};

/// The called name of a call that passed `CallsByName`.
class CalledName final : public ca::rulesystem::Transform<ca::ast::ParenOperation const&, ca::astapi::StringId> {
 public:
  std::u16string description() const override { return u"CalledName"; }
  bool lessThan(ca::rulesystem::TransformBase const*) const override { return false; }
  ca::astapi::StringId transform(ca::ast::ParenOperation const& call, ca::Analysis const&) const override {
    return static_cast<ca::ast::Identifier const*>(call.getFunction())->getStringId();
  }
};

/// Passes assignments to a plain name: `x = ...`, not `x(i) = ...`.
class AssignsName final : public ca::rulesystem::Predicate<ca::ast::Assignment const&> {
 public:
  std::u16string description() const override { return u"AssignsName"; }
  bool dependsOn(ca::rulesystem::ConsumerBase const*) const override { return false; }
  bool lessThan(ca::rulesystem::PredicateBase const*) const override { return false; }
  bool test(ca::ast::Assignment const& assignment, ca::Analysis const&) override {
    return assignment.getLeft()->getKind() == lf::astapi::NodeKind::Identifier;
  }
};

/// The assigned name of an assignment that passed `AssignsName`.
class AssignedName final : public ca::rulesystem::Transform<ca::ast::Assignment const&, ca::astapi::StringId> {
 public:
  std::u16string description() const override { return u"AssignedName"; }
  bool lessThan(ca::rulesystem::TransformBase const*) const override { return false; }
  ca::astapi::StringId transform(ca::ast::Assignment const& assignment, ca::Analysis const&) const override {
    return static_cast<ca::ast::Identifier const*>(assignment.getLeft())->getStringId();
  }
};

/// The operator of a binary operation.
class OperatorOf final : public ca::rulesystem::Transform<ca::ast::BinaryOperation const&, lf::astapi::BinaryOperator> {
 public:
  std::u16string description() const override { return u"OperatorOf"; }
  bool lessThan(ca::rulesystem::TransformBase const*) const override { return false; }
  lf::astapi::BinaryOperator transform(ca::ast::BinaryOperation const& operation, ca::Analysis const&) const override {
    return operation.getOperator();
  }
};

/// Passes one name.
class NameIs final : public ca::rulesystem::Predicate<ca::astapi::StringId> {
 public:
  explicit NameIs(ca::astapi::StringId name) : name_(name) {}
  std::u16string description() const override { return u"NameIs " + name_.getString(); }
  bool dependsOn(ca::rulesystem::ConsumerBase const*) const override { return false; }
  bool lessThan(ca::rulesystem::PredicateBase const* other) const override {
    return name_ < static_cast<NameIs const*>(other)->name_;
  }
  bool test(ca::astapi::StringId name, ca::Analysis const&) override { return name == name_; }

 private:
  ca::astapi::StringId name_;
};

/// Passes one operator.
class OperatorIs final : public ca::rulesystem::Predicate<lf::astapi::BinaryOperator> {
 public:
  explicit OperatorIs(lf::astapi::BinaryOperator op) : op_(op) {}
  std::u16string description() const override {
    auto const spelling = lf::astapi::spelling(op_);
    return u"OperatorIs " + std::u16string(spelling.begin(), spelling.end());
  }
  bool dependsOn(ca::rulesystem::ConsumerBase const*) const override { return false; }
  bool lessThan(ca::rulesystem::PredicateBase const* other) const override {
    return op_ < static_cast<OperatorIs const*>(other)->op_;
  }
  bool test(lf::astapi::BinaryOperator op, ca::Analysis const&) override { return op == op_; }

 private:
  lf::astapi::BinaryOperator op_;
};

}  // namespace plexus::bench
