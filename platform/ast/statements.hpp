#pragma once

// The statement classes of the syntax tree, and the blocks that belong to
// compound statements.

#include "platform/ast/expressions.hpp"

namespace lf::astapi {

/// `lhs = rhs`.
template <class F>
class Assignment final : public Node<F> {
 public:
  static constexpr NodeKind Kind = NodeKind::Assignment;
  Assignment(Expression<F> const* left, Expression<F> const* right) noexcept
      : Node<F>(Kind), left_(left), right_(right) {
    this->adopt(left);
    this->adopt(right);
  }
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
};

/// `[a, ~, c] = rhs`.
template <class F>
class MultiLhsAssignment final : public Node<F> {
 public:
  static constexpr NodeKind Kind = NodeKind::MultiLhsAssignment;
  MultiLhsAssignment(NodeList<Expression<F>> outputs, Expression<F> const* right) noexcept
      : Node<F>(Kind), outputs_(outputs), right_(right) {
    this->adopt(outputs);
    this->adopt(right);
  }
  NodeList<Expression<F>> getOutputs() const noexcept { return outputs_; }
  Expression<F> const* getRight() const noexcept { return right_; }

  /// Calls `fn` with each child, in walk order; absent optional children are skipped.
  template <class Fn>
  void forEachChild(Fn&& fn) const {
    for (auto const* child : outputs_) fn(static_cast<Node<F> const*>(child));
    fn(static_cast<Node<F> const*>(right_));
  }

 private:
  NodeList<Expression<F>> outputs_;
  Expression<F> const* right_;
};

/// `!command`: the rest of the line, verbatim.
template <class F>
class BangStatement final : public Node<F> {
 public:
  static constexpr NodeKind Kind = NodeKind::BangStatement;
  explicit BangStatement(ca::astapi::TextView command) noexcept : Node<F>(Kind), command_(command) {}
  ca::astapi::TextView getCommand() const noexcept { return command_; }

 private:
  ca::astapi::TextView command_;
};

/// `break`.
template <class F>
class BreakStatement final : public Node<F> {
 public:
  static constexpr NodeKind Kind = NodeKind::BreakStatement;
  BreakStatement() noexcept : Node<F>(Kind) {}
};

/// `continue`.
template <class F>
class ContinueStatement final : public Node<F> {
 public:
  static constexpr NodeKind Kind = NodeKind::ContinueStatement;
  ContinueStatement() noexcept : Node<F>(Kind) {}
};

/// `return`.
template <class F>
class ReturnStatement final : public Node<F> {
 public:
  static constexpr NodeKind Kind = NodeKind::ReturnStatement;
  ReturnStatement() noexcept : Node<F>(Kind) {}
};

/// A statement with nothing in it, such as a lone `;`.
template <class F>
class EmptyStatement final : public Node<F> {
 public:
  static constexpr NodeKind Kind = NodeKind::EmptyStatement;
  EmptyStatement() noexcept : Node<F>(Kind) {}
};

/// Kind 21: a statement that a tree producer keeps but does not model. It has
/// no children and the walk skips it.
template <class F>
class OpaqueStatement final : public Node<F> {
 public:
  static constexpr NodeKind Kind = NodeKind::OpaqueStatement;
  explicit OpaqueStatement(ca::astapi::TextView text) noexcept : Node<F>(Kind), text_(text) {}
  ca::astapi::TextView getText() const noexcept { return text_; }

 private:
  ca::astapi::TextView text_;
};

/// `hold on`: command syntax. Each argument is a `CharVectorLiteral`.
template <class F>
class CommandInvocation final : public Node<F> {
 public:
  static constexpr NodeKind Kind = NodeKind::CommandInvocation;
  CommandInvocation(Expression<F> const* functionName, NodeList<Expression<F>> arguments) noexcept
      : Node<F>(Kind), functionName_(functionName), arguments_(arguments) {
    this->adopt(functionName);
    this->adopt(arguments);
  }
  Expression<F> const* getFunctionName() const noexcept { return functionName_; }
  NodeList<Expression<F>> getArguments() const noexcept { return arguments_; }

  /// Calls `fn` with each child, in walk order; absent optional children are skipped.
  template <class Fn>
  void forEachChild(Fn&& fn) const {
    fn(static_cast<Node<F> const*>(functionName_));
    for (auto const* child : arguments_) fn(static_cast<Node<F> const*>(child));
  }

 private:
  Expression<F> const* functionName_;
  NodeList<Expression<F>> arguments_;
};

/// Shared shape of the two statements that hold only an expression.
template <class F>
class SingleExpressionStatement : public Node<F> {
 public:
  Expression<F> const* getExpression() const noexcept { return expression_; }

 protected:
  SingleExpressionStatement(NodeKind kind, Expression<F> const* expression) noexcept
      : Node<F>(kind), expression_(expression) {
    this->adopt(expression);
  }

 public:
  /// Calls `fn` with each child, in walk order; absent optional children are skipped.
  template <class Fn>
  void forEachChild(Fn&& fn) const {
    fn(static_cast<Node<F> const*>(expression_));
  }

 private:
  Expression<F> const* expression_;
};

/// `expr;`: an expression whose result is not shown.
template <class F>
class ExpressionStatement final : public SingleExpressionStatement<F> {
 public:
  static constexpr NodeKind Kind = NodeKind::ExpressionStatement;
  explicit ExpressionStatement(Expression<F> const* expression) noexcept
      : SingleExpressionStatement<F>(Kind, expression) {}
};

/// `expr` ending without `;`: an expression whose result is shown.
template <class F>
class PrintStatement final : public SingleExpressionStatement<F> {
 public:
  static constexpr NodeKind Kind = NodeKind::PrintStatement;
  explicit PrintStatement(Expression<F> const* expression) noexcept : SingleExpressionStatement<F>(Kind, expression) {}
};

/// Shared shape of the blocks that hold only a body.
template <class F>
class BodyBlock : public Node<F> {
 public:
  NodeList<Node<F>> getBody() const noexcept { return body_; }

 protected:
  BodyBlock(NodeKind kind, NodeList<Node<F>> body) noexcept : Node<F>(kind), body_(body) { this->adopt(body); }

 public:
  /// Calls `fn` with each child, in walk order; absent optional children are skipped.
  template <class Fn>
  void forEachChild(Fn&& fn) const {
    for (auto const* child : body_) fn(static_cast<Node<F> const*>(child));
  }

 private:
  NodeList<Node<F>> body_;
};

/// `else ...` of an if statement.
template <class F>
class ElseBlock final : public BodyBlock<F> {
 public:
  static constexpr NodeKind Kind = NodeKind::ElseBlock;
  explicit ElseBlock(NodeList<Node<F>> body) noexcept : BodyBlock<F>(Kind, body) {}
};

/// `otherwise ...` of a switch statement.
template <class F>
class OtherwiseBlock final : public BodyBlock<F> {
 public:
  static constexpr NodeKind Kind = NodeKind::OtherwiseBlock;
  explicit OtherwiseBlock(NodeList<Node<F>> body) noexcept : BodyBlock<F>(Kind, body) {}
};

/// Shared shape of a condition with a body.
template <class F>
class ConditionalBlock : public Node<F> {
 public:
  Expression<F> const* getCondition() const noexcept { return condition_; }
  NodeList<Node<F>> getBody() const noexcept { return body_; }

 protected:
  ConditionalBlock(NodeKind kind, Expression<F> const* condition, NodeList<Node<F>> body) noexcept
      : Node<F>(kind), condition_(condition), body_(body) {
    this->adopt(condition);
    this->adopt(body);
  }

 public:
  /// Calls `fn` with each child, in walk order; absent optional children are skipped.
  template <class Fn>
  void forEachChild(Fn&& fn) const {
    fn(static_cast<Node<F> const*>(condition_));
    for (auto const* child : body_) fn(static_cast<Node<F> const*>(child));
  }

 private:
  Expression<F> const* condition_;
  NodeList<Node<F>> body_;
};

/// `elseif condition ...`.
template <class F>
class ElseifBlock final : public ConditionalBlock<F> {
 public:
  static constexpr NodeKind Kind = NodeKind::ElseifBlock;
  ElseifBlock(Expression<F> const* condition, NodeList<Node<F>> body) noexcept
      : ConditionalBlock<F>(Kind, condition, body) {}
};

/// `case value ...` or `case {v1, v2} ...`.
template <class F>
class CaseSelection final : public ConditionalBlock<F> {
 public:
  static constexpr NodeKind Kind = NodeKind::CaseSelection;
  CaseSelection(Expression<F> const* condition, NodeList<Node<F>> body) noexcept
      : ConditionalBlock<F>(Kind, condition, body) {}
};

/// `while condition ... end`.
template <class F>
class WhileStatement final : public ConditionalBlock<F> {
 public:
  static constexpr NodeKind Kind = NodeKind::WhileStatement;
  WhileStatement(Expression<F> const* condition, NodeList<Node<F>> body) noexcept
      : ConditionalBlock<F>(Kind, condition, body) {}
};

/// `if c ... elseif c ... else ... end`.
template <class F>
class IfStatement final : public Node<F> {
 public:
  static constexpr NodeKind Kind = NodeKind::IfStatement;
  IfStatement(Expression<F> const* condition, NodeList<Node<F>> body, NodeList<ElseifBlock<F>> elseifBlocks,
              ElseBlock<F> const* elseBlock) noexcept
      : Node<F>(Kind), condition_(condition), body_(body), elseifBlocks_(elseifBlocks), elseBlock_(elseBlock) {
    this->adopt(condition);
    this->adopt(body);
    this->adopt(elseifBlocks);
    this->adopt(elseBlock);
  }
  Expression<F> const* getCondition() const noexcept { return condition_; }
  NodeList<Node<F>> getBody() const noexcept { return body_; }
  NodeList<ElseifBlock<F>> getElseifBlocks() const noexcept { return elseifBlocks_; }
  /// Null without an `else`.
  ElseBlock<F> const* getElseBlock() const noexcept { return elseBlock_; }

  /// Calls `fn` with each child, in walk order; absent optional children are skipped.
  template <class Fn>
  void forEachChild(Fn&& fn) const {
    fn(static_cast<Node<F> const*>(condition_));
    for (auto const* child : body_) fn(static_cast<Node<F> const*>(child));
    for (auto const* child : elseifBlocks_) fn(static_cast<Node<F> const*>(child));
    if (elseBlock_ != nullptr) fn(static_cast<Node<F> const*>(elseBlock_));
  }

 private:
  Expression<F> const* condition_;
  NodeList<Node<F>> body_;
  NodeList<ElseifBlock<F>> elseifBlocks_;
  ElseBlock<F> const* elseBlock_;
};

/// `switch e case ... otherwise ... end`.
template <class F>
class SwitchStatement final : public Node<F> {
 public:
  static constexpr NodeKind Kind = NodeKind::SwitchStatement;
  SwitchStatement(Expression<F> const* expression, NodeList<CaseSelection<F>> cases,
                  OtherwiseBlock<F> const* otherwise) noexcept
      : Node<F>(Kind), expression_(expression), cases_(cases), otherwise_(otherwise) {
    this->adopt(expression);
    this->adopt(cases);
    this->adopt(otherwise);
  }
  Expression<F> const* getExpression() const noexcept { return expression_; }
  NodeList<CaseSelection<F>> getCases() const noexcept { return cases_; }
  /// Null without an `otherwise`.
  OtherwiseBlock<F> const* getOtherwiseBlock() const noexcept { return otherwise_; }

  /// Calls `fn` with each child, in walk order; absent optional children are skipped.
  template <class Fn>
  void forEachChild(Fn&& fn) const {
    fn(static_cast<Node<F> const*>(expression_));
    for (auto const* child : cases_) fn(static_cast<Node<F> const*>(child));
    if (otherwise_ != nullptr) fn(static_cast<Node<F> const*>(otherwise_));
  }

 private:
  Expression<F> const* expression_;
  NodeList<CaseSelection<F>> cases_;
  OtherwiseBlock<F> const* otherwise_;
};

/// `catch err ...`; the identifier is optional.
template <class F>
class CatchBlock final : public Node<F> {
 public:
  static constexpr NodeKind Kind = NodeKind::CatchBlock;
  CatchBlock(Identifier<F> const* identifier, NodeList<Node<F>> body) noexcept
      : Node<F>(Kind), identifier_(identifier), body_(body) {
    this->adopt(identifier);
    this->adopt(body);
  }
  /// Null for a bare `catch`.
  Identifier<F> const* getIdentifier() const noexcept { return identifier_; }
  NodeList<Node<F>> getBody() const noexcept { return body_; }

  /// Calls `fn` with each child, in walk order; absent optional children are skipped.
  template <class Fn>
  void forEachChild(Fn&& fn) const {
    if (identifier_ != nullptr) fn(static_cast<Node<F> const*>(identifier_));
    for (auto const* child : body_) fn(static_cast<Node<F> const*>(child));
  }

 private:
  Identifier<F> const* identifier_;
  NodeList<Node<F>> body_;
};

/// `try ... catch ... end`.
template <class F>
class TryStatement final : public Node<F> {
 public:
  static constexpr NodeKind Kind = NodeKind::TryStatement;
  TryStatement(NodeList<Node<F>> body, CatchBlock<F> const* catchBlock) noexcept
      : Node<F>(Kind), body_(body), catchBlock_(catchBlock) {
    this->adopt(body);
    this->adopt(catchBlock);
  }
  NodeList<Node<F>> getBody() const noexcept { return body_; }
  /// Null without a `catch`.
  CatchBlock<F> const* getCatchBlock() const noexcept { return catchBlock_; }

  /// Calls `fn` with each child, in walk order; absent optional children are skipped.
  template <class Fn>
  void forEachChild(Fn&& fn) const {
    for (auto const* child : body_) fn(static_cast<Node<F> const*>(child));
    if (catchBlock_ != nullptr) fn(static_cast<Node<F> const*>(catchBlock_));
  }

 private:
  NodeList<Node<F>> body_;
  CatchBlock<F> const* catchBlock_;
};

/// `for v = range ... end`.
template <class F>
class ForStatement final : public Node<F> {
 public:
  static constexpr NodeKind Kind = NodeKind::ForStatement;
  ForStatement(Expression<F> const* loopVariable, Expression<F> const* range, NodeList<Node<F>> body) noexcept
      : Node<F>(Kind), loopVariable_(loopVariable), range_(range), body_(body) {
    this->adopt(loopVariable);
    this->adopt(range);
    this->adopt(body);
  }
  Expression<F> const* getLoopVariable() const noexcept { return loopVariable_; }
  Expression<F> const* getRange() const noexcept { return range_; }
  NodeList<Node<F>> getBody() const noexcept { return body_; }

  /// Calls `fn` with each child, in walk order; absent optional children are skipped.
  template <class Fn>
  void forEachChild(Fn&& fn) const {
    fn(static_cast<Node<F> const*>(loopVariable_));
    fn(static_cast<Node<F> const*>(range_));
    for (auto const* child : body_) fn(static_cast<Node<F> const*>(child));
  }

 private:
  Expression<F> const* loopVariable_;
  Expression<F> const* range_;
  NodeList<Node<F>> body_;
};

/// `parfor v = range ... end` or `parfor (v = range, M) ... end`. The options
/// come before the body in the walk.
template <class F>
class ParforStatement final : public Node<F> {
 public:
  static constexpr NodeKind Kind = NodeKind::ParforStatement;
  ParforStatement(Expression<F> const* loopVariable, Expression<F> const* range, NodeList<Expression<F>> options,
                  NodeList<Node<F>> body) noexcept
      : Node<F>(Kind), loopVariable_(loopVariable), range_(range), options_(options), body_(body) {
    this->adopt(loopVariable);
    this->adopt(range);
    this->adopt(options);
    this->adopt(body);
  }
  Expression<F> const* getLoopVariable() const noexcept { return loopVariable_; }
  Expression<F> const* getRange() const noexcept { return range_; }
  NodeList<Expression<F>> getOptions() const noexcept { return options_; }
  NodeList<Node<F>> getBody() const noexcept { return body_; }

  /// Calls `fn` with each child, in walk order; absent optional children are skipped.
  template <class Fn>
  void forEachChild(Fn&& fn) const {
    fn(static_cast<Node<F> const*>(loopVariable_));
    fn(static_cast<Node<F> const*>(range_));
    for (auto const* child : options_) fn(static_cast<Node<F> const*>(child));
    for (auto const* child : body_) fn(static_cast<Node<F> const*>(child));
  }

 private:
  Expression<F> const* loopVariable_;
  Expression<F> const* range_;
  NodeList<Expression<F>> options_;
  NodeList<Node<F>> body_;
};

/// `spmd ... end` or `spmd (n) ... end`.
template <class F>
class SpmdStatement final : public Node<F> {
 public:
  static constexpr NodeKind Kind = NodeKind::SpmdStatement;
  SpmdStatement(NodeList<Expression<F>> arguments, NodeList<Node<F>> body) noexcept
      : Node<F>(Kind), arguments_(arguments), body_(body) {
    this->adopt(arguments);
    this->adopt(body);
  }
  NodeList<Expression<F>> getArguments() const noexcept { return arguments_; }
  NodeList<Node<F>> getBody() const noexcept { return body_; }

  /// Calls `fn` with each child, in walk order; absent optional children are skipped.
  template <class Fn>
  void forEachChild(Fn&& fn) const {
    for (auto const* child : arguments_) fn(static_cast<Node<F> const*>(child));
    for (auto const* child : body_) fn(static_cast<Node<F> const*>(child));
  }

 private:
  NodeList<Expression<F>> arguments_;
  NodeList<Node<F>> body_;
};

/// Shared shape of `global a b` and `persistent a b`.
template <class F>
class DeclarationStatement : public Node<F> {
 public:
  NodeList<Identifier<F>> getNames() const noexcept { return names_; }

 protected:
  DeclarationStatement(NodeKind kind, NodeList<Identifier<F>> names) noexcept : Node<F>(kind), names_(names) {
    this->adopt(names);
  }

 public:
  /// Calls `fn` with each child, in walk order; absent optional children are skipped.
  template <class Fn>
  void forEachChild(Fn&& fn) const {
    for (auto const* child : names_) fn(static_cast<Node<F> const*>(child));
  }

 private:
  NodeList<Identifier<F>> names_;
};

/// `global a b c`.
template <class F>
class GlobalStatement final : public DeclarationStatement<F> {
 public:
  static constexpr NodeKind Kind = NodeKind::GlobalStatement;
  explicit GlobalStatement(NodeList<Identifier<F>> names) noexcept : DeclarationStatement<F>(Kind, names) {}
};

/// `persistent a b`.
template <class F>
class PersistentStatement final : public DeclarationStatement<F> {
 public:
  static constexpr NodeKind Kind = NodeKind::PersistentStatement;
  explicit PersistentStatement(NodeList<Identifier<F>> names) noexcept : DeclarationStatement<F>(Kind, names) {}
};

/// `import pkg.sub.*`: one part per dotted name part, `*` included.
template <class F>
class ImportCommand final : public Node<F> {
 public:
  static constexpr NodeKind Kind = NodeKind::ImportCommand;
  explicit ImportCommand(NodeList<Identifier<F>> parts) noexcept : Node<F>(Kind), parts_(parts) { this->adopt(parts); }
  NodeList<Identifier<F>> getParts() const noexcept { return parts_; }

  /// Calls `fn` with each child, in walk order; absent optional children are skipped.
  template <class Fn>
  void forEachChild(Fn&& fn) const {
    for (auto const* child : parts_) fn(static_cast<Node<F> const*>(child));
  }

 private:
  NodeList<Identifier<F>> parts_;
};

}  // namespace lf::astapi
