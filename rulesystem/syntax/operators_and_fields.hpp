#pragma once

// Operators and fields: which operator a binary or unary operation has, what
// a unary operator works on, and what the field of a dot expression is
// called. Operators and exact field names are keys of one switch behind a
// producer, so that any number of rules asking them cost one lookup per item.

#include <cstdint>
#include <memory>
#include <set>
#include <string>
#include <utility>

#include "platform/ast/ast.hpp"
#include "platform/ast/operators.hpp"
#include "platform/ast/string_id.hpp"
#include "platform/utils/type_names.hpp"
#include "rulesystem/graph/pipe_handle.hpp"
#include "rulesystem/graph/stage.hpp"
#include "rulesystem/graph/stage_of.hpp"
#include "rulesystem/graph/switch.hpp"
#include "rulesystem/graph/tree_types.hpp"

namespace ca::rulesystem {

/// Keeps the binary operations whose operator is one of `operators`, or is
/// `op`: a branch of the one switch on the operator behind the producer.
///   all.binaryOperation | isBinaryOperation(lf::astapi::BinaryOperator::Plus)
std::unique_ptr<Switchable<BinaryOperation const&, lf::astapi::BinaryOperator>> isBinaryOperation(
    std::set<lf::astapi::BinaryOperator> operators);
std::unique_ptr<Switchable<BinaryOperation const&, lf::astapi::BinaryOperator>> isBinaryOperation(
    lf::astapi::BinaryOperator op);

/// Keeps the unary operations whose operator is one of `operators`, or is
/// `op`: a branch of the one switch on the operator behind the producer.
///   all.unaryOperation | isUnaryOperation(lf::astapi::UnaryOperator::FunctionHandle)
std::unique_ptr<Switchable<UnaryOperation const&, lf::astapi::UnaryOperator>> isUnaryOperation(
    std::set<lf::astapi::UnaryOperator> operators);
std::unique_ptr<Switchable<UnaryOperation const&, lf::astapi::UnaryOperator>> isUnaryOperation(
    lf::astapi::UnaryOperator op);

/// Gives the operand of a unary operation as the identifier it must be: a
/// rule filters first (`@name` and `?Name` have one). A checked build stops
/// at any other operand; other builds give an identifier with an empty name
/// that stands nowhere in the tree.
///   all.unaryOperation | isUnaryOperation(lf::astapi::UnaryOperator::Metaclass) | getUnaryOperand()
std::unique_ptr<Transform<UnaryOperation const&, Identifier const&>> getUnaryOperand();

/// Keeps the `obj@Base` operations that call the constructor of a
/// superclass, not those that call a superclass method.
///   all.binaryOperation | isSuperclassConstructorCall()
std::unique_ptr<Predicate<BinaryOperation const&>> isSuperclassConstructorCall();

/// Keeps the fields named exactly `text`, case included: a branch of the one
/// switch on the field's name behind the producer.
///   all.field | isFieldStringId(u"name")
std::unique_ptr<Switchable<Field const&, ca::astapi::StringId>> isFieldStringId(std::u16string const& text);

/// Keeps the fields whose source text is longer than `limit` 16-bit units.
///   all.field | isFieldLongerThan(5)
std::unique_ptr<Predicate<Field const&>> isFieldLongerThan(std::uint64_t limit);

/// Keeps the fields whose name equals `text` when case is ignored.
///   all.field | isFieldTextCaseInsensitive(u"name")
std::unique_ptr<Predicate<Field const&>> isFieldTextCaseInsensitive(std::u16string text);

/// `producer | &DotOperation::getField`: gives the field of each dot
/// operation, by way of the member function named. The stage prints the
/// type of the member pointer, not which member it is.
///   upcast<Node const&>(all.field) | getParent<DotOperation>() | &DotOperation::getField
template <template <class> class P>
requires isPipeHandle<P> P<Field const&>
operator|(P<DotOperation const&> producer, Field const& (DotOperation::*member)() const) {
  using Member = Field const& (DotOperation::*)() const;
  class TraverseTransform final
      : public StageOf<TraverseTransform, Transform<DotOperation const&, Field const&>, Member> {
    using Base = StageOf<TraverseTransform, Transform<DotOperation const&, Field const&>, Member>;

   public:
    using Base::Base;
    Member method() const { return this->template parameter<0>(); }

    std::u16string description() const override { return ca::utils::prettyTypeName<Member>(); }
    Field const& transform(DotOperation const& dot, ca::Analysis const&) const override { return (dot.*method())(); }
  };
  return std::move(producer) | std::make_unique<TraverseTransform>(member);
}

}  // namespace ca::rulesystem
