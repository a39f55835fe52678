#pragma once

// The stages of the benchmark rules, written as a rule author would. The
// stages of a shared prefix have no parameters, so every instance equals every
// other; the last stage of each rule has one, so that rules looking for
// different values keep different vertices.

#include <string>

#include "platform/ast/ast.hpp"
#include "platform/ast/string_id.hpp"
#include "rulesystem/graph/stage.hpp"
#include "rulesystem/graph/stage_of.hpp"

namespace plexus::bench {

/// Passes calls whose called expression is a plain name: `f(x)`, not `s.f(x)`.
class CallsByName final
    : public ca::rulesystem::StageOf<CallsByName, ca::rulesystem::Predicate<ca::ast::ParenOperation const&>> {
 public:
  std::u16string description() const override { return u"CallsByName"; }
  bool test(ca::ast::ParenOperation const& call, ca::Analysis const&) override {
    return call.getFunction()->getKind() == lf::astapi::NodeKind::Identifier;
  }
};

/// The called name of a call that passed `CallsByName`.
class CalledName final
    : public ca::rulesystem::StageOf<CalledName,
                                     ca::rulesystem::Transform<ca::ast::ParenOperation const&, ca::astapi::StringId>> {
 public:
  std::u16string description() const override { return u"CalledName"; }
  ca::astapi::StringId transform(ca::ast::ParenOperation const& call, ca::Analysis const&) const override {
    return static_cast<ca::ast::Identifier const*>(call.getFunction())->getStringId();
  }
};

/// Passes assignments to a plain name: `x = ...`, not `x(i) = ...`.
class AssignsName final
    : public ca::rulesystem::StageOf<AssignsName, ca::rulesystem::Predicate<ca::ast::Assignment const&>> {
 public:
  std::u16string description() const override { return u"AssignsName"; }
  bool test(ca::ast::Assignment const& assignment, ca::Analysis const&) override {
    return assignment.getLeft()->getKind() == lf::astapi::NodeKind::Identifier;
  }
};

/// The assigned name of an assignment that passed `AssignsName`.
class AssignedName final
    : public ca::rulesystem::StageOf<AssignedName,
                                     ca::rulesystem::Transform<ca::ast::Assignment const&, ca::astapi::StringId>> {
 public:
  std::u16string description() const override { return u"AssignedName"; }
  ca::astapi::StringId transform(ca::ast::Assignment const& assignment, ca::Analysis const&) const override {
    return static_cast<ca::ast::Identifier const*>(assignment.getLeft())->getStringId();
  }
};

/// The operator of a binary operation.
class OperatorOf final
    : public ca::rulesystem::StageOf<
          OperatorOf, ca::rulesystem::Transform<ca::ast::BinaryOperation const&, lf::astapi::BinaryOperator>> {
 public:
  std::u16string description() const override { return u"OperatorOf"; }
  lf::astapi::BinaryOperator transform(ca::ast::BinaryOperation const& operation, ca::Analysis const&) const override {
    return operation.getOperator();
  }
};

/// Passes one name.
class NameIs final
    : public ca::rulesystem::StageOf<NameIs, ca::rulesystem::Predicate<ca::astapi::StringId>, ca::astapi::StringId> {
 public:
  using StageOf::StageOf;
  ca::astapi::StringId name() const { return parameter<0>(); }
  std::u16string description() const override { return u"NameIs " + name().getString(); }
  bool test(ca::astapi::StringId candidate, ca::Analysis const&) override { return candidate == name(); }
};

/// Passes one operator.
class OperatorIs final
    : public ca::rulesystem::StageOf<OperatorIs, ca::rulesystem::Predicate<lf::astapi::BinaryOperator>,
                                     lf::astapi::BinaryOperator> {
 public:
  using StageOf::StageOf;
  lf::astapi::BinaryOperator op() const { return parameter<0>(); }
  std::u16string description() const override {
    auto const spelling = lf::astapi::spelling(op());
    return u"OperatorIs " + std::u16string(spelling.begin(), spelling.end());
  }
  bool test(lf::astapi::BinaryOperator candidate, ca::Analysis const&) override { return candidate == op(); }
};

}  // namespace plexus::bench
