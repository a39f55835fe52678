#pragma once

// The expression classes of the syntax tree.

#include "platform/ast/node.hpp"
#include "platform/ast/numeric_value.hpp"
#include "platform/ast/operators.hpp"
#include "platform/ast/string_id.hpp"
#include "platform/ast/text.hpp"

namespace lf::astapi {

template <class F>
class Field;
template <class F>
class InputArgument;
template <class F>
class Row;

/// A name: a variable, a function, a class, a package part. Never walked.
template <class F>
class Identifier final : public Expression<F> {
 public:
  static constexpr NodeKind Kind = NodeKind::Identifier;
  explicit Identifier(ca::astapi::StringId name) noexcept : Expression<F>(Kind), name_(name) {}

  ca::astapi::StringId getStringId() const noexcept { return name_; }
  ca::astapi::TextView getText() const noexcept { return ca::astapi::toTextView(name_.getString()); }

 private:
  ca::astapi::StringId name_;
};

/// `@(a, b) expr`.
template <class F>
class AnonymousFunction final : public Expression<F> {
 public:
  static constexpr NodeKind Kind = NodeKind::AnonymousFunction;
  AnonymousFunction(NodeList<InputArgument<F>> inputs, Expression<F> const* body) noexcept
      : Expression<F>(Kind), inputs_(inputs), body_(body) {
    this->adopt(inputs);
    this->adopt(body);
  }
  NodeList<InputArgument<F>> getInputs() const noexcept { return inputs_; }
  Expression<F> const* getBody() const noexcept { return body_; }

  /// Calls `fn` with each child, in walk order; absent optional children are skipped.
  template <class Fn>
  void forEachChild(Fn&& fn) const {
    for (auto const* child : inputs_) fn(static_cast<Node<F> const*>(child));
    fn(static_cast<Node<F> const*>(body_));
  }

 private:
  NodeList<InputArgument<F>> inputs_;
  Expression<F> const* body_;
};

/// `:` as a dimension in a size validation, as in `(1,:)`.
template <class F>
class AnySize final : public Expression<F> {
 public:
  static constexpr NodeKind Kind = NodeKind::AnySize;
  AnySize() noexcept : Expression<F>(Kind) {}
};

/// `left op right`, including `name@Super` (operator `SuperclassCall`).
template <class F>
class BinaryOperation final : public Expression<F> {
 public:
  static constexpr NodeKind Kind = NodeKind::BinaryOperation;
  BinaryOperation(BinaryOperator op, Expression<F> const* left, Expression<F> const* right) noexcept
      : Expression<F>(Kind), left_(left), right_(right), op_(op) {
    this->adopt(left);
    this->adopt(right);
  }
  BinaryOperator getOperator() const noexcept { return op_; }
  Expression<F> const* getLeft() const noexcept { return left_; }
  Expression<F> const* getRight() const noexcept { return right_; }

  /// Calls `fn` with each child, in walk order; absent optional children are skipped.
  template <class Fn>
  void forEachChild(Fn&& fn) const {
    fn(static_cast<Node<F> const*>(left_));
    fn(static_cast<Node<F> const*>(right_));
  }

 private:
  Expression<F> const* left_;
  Expression<F> const* right_;
  BinaryOperator op_;
};

/// `base{args}`.
template <class F>
class BraceOperation final : public Expression<F> {
 public:
  static constexpr NodeKind Kind = NodeKind::BraceOperation;
  BraceOperation(Expression<F> const* base, NodeList<Expression<F>> arguments) noexcept
      : Expression<F>(Kind), base_(base), arguments_(arguments) {
    this->adopt(base);
    this->adopt(arguments);
  }
  Expression<F> const* getBase() const noexcept { return base_; }
  NodeList<Expression<F>> getArguments() const noexcept { return arguments_; }

  /// Calls `fn` with each child, in walk order; absent optional children are skipped.
  template <class Fn>
  void forEachChild(Fn&& fn) const {
    fn(static_cast<Node<F> const*>(base_));
    for (auto const* child : arguments_) fn(static_cast<Node<F> const*>(child));
  }

 private:
  Expression<F> const* base_;
  NodeList<Expression<F>> arguments_;
};

/// `{a, b; c, d}`: a list of rows.
template <class F>
class CellArray final : public Expression<F> {
 public:
  static constexpr NodeKind Kind = NodeKind::CellArray;
  explicit CellArray(NodeList<Row<F>> rows) noexcept : Expression<F>(Kind), rows_(rows) { this->adopt(rows); }
  NodeList<Row<F>> getRows() const noexcept { return rows_; }

  /// Calls `fn` with each child, in walk order; absent optional children are skipped.
  template <class Fn>
  void forEachChild(Fn&& fn) const {
    for (auto const* child : rows_) fn(static_cast<Node<F> const*>(child));
  }

 private:
  NodeList<Row<F>> rows_;
};

/// `[a, b; c, d]`: a list of rows.
template <class F>
class Matrix final : public Expression<F> {
 public:
  static constexpr NodeKind Kind = NodeKind::Matrix;
  explicit Matrix(NodeList<Row<F>> rows) noexcept : Expression<F>(Kind), rows_(rows) { this->adopt(rows); }
  NodeList<Row<F>> getRows() const noexcept { return rows_; }

  /// Calls `fn` with each child, in walk order; absent optional children are skipped.
  template <class Fn>
  void forEachChild(Fn&& fn) const {
    for (auto const* child : rows_) fn(static_cast<Node<F> const*>(child));
  }

 private:
  NodeList<Row<F>> rows_;
};

/// One row of a matrix or cell array.
template <class F>
class Row final : public Expression<F> {
 public:
  static constexpr NodeKind Kind = NodeKind::Row;
  explicit Row(NodeList<Expression<F>> elements) noexcept : Expression<F>(Kind), elements_(elements) {
    this->adopt(elements);
  }
  NodeList<Expression<F>> getElements() const noexcept { return elements_; }

  /// Calls `fn` with each child, in walk order; absent optional children are skipped.
  template <class Fn>
  void forEachChild(Fn&& fn) const {
    for (auto const* child : elements_) fn(static_cast<Node<F> const*>(child));
  }

 private:
  NodeList<Expression<F>> elements_;
};

/// Shared shape of the two text literals: the value (quotes removed, doubled
/// quotes undone) and an optional attached node.
template <class F>
class TextLiteral : public Expression<F> {
 public:
  ca::astapi::TextView getValue() const noexcept { return value_; }
  Node<F> const* getAttached() const noexcept { return attached_; }

 protected:
  TextLiteral(NodeKind kind, ca::astapi::TextView value, Node<F> const* attached) noexcept
      : Expression<F>(kind), value_(value), attached_(attached) {
    this->adopt(attached);
  }

 public:
  /// Calls `fn` with each child, in walk order; absent optional children are skipped.
  template <class Fn>
  void forEachChild(Fn&& fn) const {
    if (attached_ != nullptr) fn(static_cast<Node<F> const*>(attached_));
  }

 private:
  ca::astapi::TextView value_;
  Node<F> const* attached_;
};

/// `'text'`: a char vector. Also each word of command syntax.
template <class F>
class CharVectorLiteral final : public TextLiteral<F> {
 public:
  static constexpr NodeKind Kind = NodeKind::CharVectorLiteral;
  explicit CharVectorLiteral(ca::astapi::TextView value, Node<F> const* attached = nullptr) noexcept
      : TextLiteral<F>(Kind, value, attached) {}
};

/// `"text"`: a string.
template <class F>
class StringLiteral final : public TextLiteral<F> {
 public:
  static constexpr NodeKind Kind = NodeKind::StringLiteral;
  explicit StringLiteral(ca::astapi::TextView value, Node<F> const* attached = nullptr) noexcept
      : TextLiteral<F>(Kind, value, attached) {}
};

/// `:` alone as an index, as in `a(:, 1)`.
template <class F>
class ColonIndex final : public Expression<F> {
 public:
  static constexpr NodeKind Kind = NodeKind::ColonIndex;
  ColonIndex() noexcept : Expression<F>(Kind) {}
};

/// `first:last` or `first:step:last`.
template <class F>
class ColonVector final : public Expression<F> {
 public:
  static constexpr NodeKind Kind = NodeKind::ColonVector;
  ColonVector(Expression<F> const* first, Expression<F> const* step, Expression<F> const* last) noexcept
      : Expression<F>(Kind), first_(first), step_(step), last_(last) {
    this->adopt(first);
    this->adopt(step);
    this->adopt(last);
  }
  Expression<F> const* getFirst() const noexcept { return first_; }
  /// Null for `first:last`.
  Expression<F> const* getStep() const noexcept { return step_; }
  Expression<F> const* getLast() const noexcept { return last_; }

  /// Calls `fn` with each child, in walk order; absent optional children are skipped.
  template <class Fn>
  void forEachChild(Fn&& fn) const {
    fn(static_cast<Node<F> const*>(first_));
    if (step_ != nullptr) fn(static_cast<Node<F> const*>(step_));
    fn(static_cast<Node<F> const*>(last_));
  }

 private:
  Expression<F> const* first_;
  Expression<F> const* step_;
  Expression<F> const* last_;
};

/// Kind 20: an expression that a tree producer keeps but does not model. It
/// has no children and the walk skips it.
template <class F>
class OpaqueExpression final : public Expression<F> {
 public:
  static constexpr NodeKind Kind = NodeKind::OpaqueExpression;
  explicit OpaqueExpression(ca::astapi::TextView text) noexcept : Expression<F>(Kind), text_(text) {}
  ca::astapi::TextView getText() const noexcept { return text_; }

 private:
  ca::astapi::TextView text_;
};

/// A field name: the right side of `a.b`, or the name of `Name=value`.
template <class F>
class Field final : public Node<F> {
 public:
  static constexpr NodeKind Kind = NodeKind::Field;
  explicit Field(ca::astapi::StringId name) noexcept : Node<F>(Kind), name_(name) {}

  ca::astapi::StringId getStringId() const noexcept { return name_; }
  ca::astapi::TextView getText() const noexcept { return ca::astapi::toTextView(name_.getString()); }
  ca::astapi::SourceText getSourceText() const noexcept { return ca::astapi::SourceText(getText()); }

 private:
  ca::astapi::StringId name_;
};

/// `left.field`. Chains nest to the left: `a.b.c` is `(a.b).c`.
template <class F>
class DotOperation final : public Expression<F> {
 public:
  static constexpr NodeKind Kind = NodeKind::DotOperation;
  DotOperation(Expression<F> const* left, Field<F> const* field) noexcept
      : Expression<F>(Kind), left_(left), field_(field) {
    this->adopt(left);
    this->adopt(field);
  }
  Expression<F> const* getLeft() const noexcept { return left_; }
  // Not noexcept: rules hand this accessor to a pipe operator as a member
  // pointer of type `Field const& (DotOperation::*)() const`, and noexcept
  // would make it a different type.
  Field<F> const& getField() const { return *field_; }

  /// Calls `fn` with each child, in walk order; absent optional children are skipped.
  template <class Fn>
  void forEachChild(Fn&& fn) const {
    fn(static_cast<Node<F> const*>(left_));
    fn(static_cast<Node<F> const*>(field_));
  }

 private:
  Expression<F> const* left_;
  Field<F> const* field_;
};

/// `left.(expression)`: a dynamic field.
template <class F>
class DotParenOperation final : public Expression<F> {
 public:
  static constexpr NodeKind Kind = NodeKind::DotParenOperation;
  DotParenOperation(Expression<F> const* left, Expression<F> const* expression) noexcept
      : Expression<F>(Kind), left_(left), expression_(expression) {
    this->adopt(left);
    this->adopt(expression);
  }
  Expression<F> const* getLeft() const noexcept { return left_; }
  Expression<F> const* getExpression() const noexcept { return expression_; }

  /// Calls `fn` with each child, in walk order; absent optional children are skipped.
  template <class Fn>
  void forEachChild(Fn&& fn) const {
    fn(static_cast<Node<F> const*>(left_));
    fn(static_cast<Node<F> const*>(expression_));
  }

 private:
  Expression<F> const* left_;
  Expression<F> const* expression_;
};

/// `end` inside an index.
template <class F>
class EndIndex final : public Expression<F> {
 public:
  static constexpr NodeKind Kind = NodeKind::EndIndex;
  EndIndex() noexcept : Expression<F>(Kind) {}
};

/// `~` as an ignored input or output.
template <class F>
class Ignored final : public Expression<F> {
 public:
  static constexpr NodeKind Kind = NodeKind::Ignored;
  Ignored() noexcept : Expression<F>(Kind) {}
};

/// `Name=value` at the end of an argument list.
template <class F>
class NamedArgument final : public Expression<F> {
 public:
  static constexpr NodeKind Kind = NodeKind::NamedArgument;
  NamedArgument(Field<F> const* name, Expression<F> const* value) noexcept
      : Expression<F>(Kind), name_(name), value_(value) {
    this->adopt(name);
    this->adopt(value);
  }
  Field<F> const& getName() const noexcept { return *name_; }
  Expression<F> const* getValue() const noexcept { return value_; }

  /// Calls `fn` with each child, in walk order; absent optional children are skipped.
  template <class Fn>
  void forEachChild(Fn&& fn) const {
    fn(static_cast<Node<F> const*>(name_));
    fn(static_cast<Node<F> const*>(value_));
  }

 private:
  Field<F> const* name_;
  Expression<F> const* value_;
};

/// A numeric literal with its value and its spelling.
template <class F>
class NumberLiteral final : public Expression<F> {
 public:
  static constexpr NodeKind Kind = NodeKind::NumberLiteral;
  NumberLiteral(NumericValue value, ca::astapi::TextView text) noexcept
      : Expression<F>(Kind), value_(value), text_(text) {}
  NumericValue const& getValue() const noexcept { return value_; }
  ca::astapi::TextView getText() const noexcept { return text_; }

 private:
  NumericValue value_;
  ca::astapi::TextView text_;
};

/// `function(args)`: an index or a call; call resolution tells which.
template <class F>
class ParenOperation final : public Expression<F> {
 public:
  static constexpr NodeKind Kind = NodeKind::ParenOperation;
  ParenOperation(Expression<F> const* function, NodeList<Expression<F>> arguments) noexcept
      : Expression<F>(Kind), function_(function), arguments_(arguments) {
    this->adopt(function);
    this->adopt(arguments);
  }
  Expression<F> const* getFunction() const noexcept { return function_; }
  NodeList<Expression<F>> getArguments() const noexcept { return arguments_; }

  /// Calls `fn` with each child, in walk order; absent optional children are skipped.
  template <class Fn>
  void forEachChild(Fn&& fn) const {
    fn(static_cast<Node<F> const*>(function_));
    for (auto const* child : arguments_) fn(static_cast<Node<F> const*>(child));
  }

 private:
  Expression<F> const* function_;
  NodeList<Expression<F>> arguments_;
};

/// `(expression)`.
template <class F>
class ParenthesizedExpression final : public Expression<F> {
 public:
  static constexpr NodeKind Kind = NodeKind::ParenthesizedExpression;
  explicit ParenthesizedExpression(Expression<F> const* expression) noexcept
      : Expression<F>(Kind), expression_(expression) {
    this->adopt(expression);
  }
  Expression<F> const* getExpression() const noexcept { return expression_; }

  /// Calls `fn` with each child, in walk order; absent optional children are skipped.
  template <class Fn>
  void forEachChild(Fn&& fn) const {
    fn(static_cast<Node<F> const*>(expression_));
  }

 private:
  Expression<F> const* expression_;
};

/// A prefix or postfix operator, `@name` or `?Name`.
template <class F>
class UnaryOperation final : public Expression<F> {
 public:
  static constexpr NodeKind Kind = NodeKind::UnaryOperation;
  UnaryOperation(UnaryOperator op, Expression<F> const* operand) noexcept
      : Expression<F>(Kind), operand_(operand), op_(op) {
    this->adopt(operand);
  }
  UnaryOperator getOperator() const noexcept { return op_; }
  Expression<F> const& getOperand() const noexcept { return *operand_; }

  /// Calls `fn` with each child, in walk order; absent optional children are skipped.
  template <class Fn>
  void forEachChild(Fn&& fn) const {
    fn(static_cast<Node<F> const*>(operand_));
  }

 private:
  Expression<F> const* operand_;
  UnaryOperator op_;
};

}  // namespace lf::astapi
