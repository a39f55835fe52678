#pragma once

// The classes of functions, methods, classes and arguments blocks, and the
// root of the tree.

#include "platform/ast/statements.hpp"
#include "platform/utils/invariant.hpp"

namespace lf::astapi {

template <class F>
class ArgumentsBlock;

/// One input of a function: an `Identifier` or, for `~`, an `Ignored`.
/// Exactly one of the two is present in a well-formed tree: the constructors
/// of one child promise it (checked builds stop at a null child), and only the
/// constructor of two children may break it.
template <class F>
class InputArgument final : public Node<F> {
 public:
  static constexpr NodeKind Kind = NodeKind::InputArgument;
  explicit InputArgument(Identifier<F> const* identifier) noexcept
      : Node<F>(Kind), identifier_(identifier), ignored_(nullptr) {
    PLEXUS_INVARIANT(identifier != nullptr,
                     "an InputArgument has exactly one of an Identifier and an Ignored; this one was given a null "
                     "Identifier (malformed input takes the constructor of two children)");
    this->adopt(identifier);
  }
  explicit InputArgument(Ignored<F> const* ignored) noexcept : Node<F>(Kind), identifier_(nullptr), ignored_(ignored) {
    PLEXUS_INVARIANT(ignored != nullptr,
                     "an InputArgument has exactly one of an Identifier and an Ignored; this one was given a null "
                     "Ignored (malformed input takes the constructor of two children)");
    this->adopt(ignored);
  }
  /// Both at once, or neither: only for tree producers that must represent
  /// malformed input as it came.
  InputArgument(Identifier<F> const* identifier, Ignored<F> const* ignored) noexcept
      : Node<F>(Kind), identifier_(identifier), ignored_(ignored) {
    this->adopt(identifier);
    this->adopt(ignored);
  }
  Identifier<F> const* getIdentifier() const noexcept { return identifier_; }
  Ignored<F> const* getIgnored() const noexcept { return ignored_; }
  /// Calls `fn` with each present child: the identifier, then the ignored marker.
  template <class Fn>
  void forEachChild(Fn&& fn) const {
    if (identifier_ != nullptr) fn(static_cast<Node<F> const*>(identifier_));
    if (ignored_ != nullptr) fn(static_cast<Node<F> const*>(ignored_));
  }

 private:
  Identifier<F> const* identifier_;
  Ignored<F> const* ignored_;
};

/// `function [o1, o2] = name(a, b) ... end`. Nested functions stand in the
/// body. `Method` derives from it, so that a method passes as a `Function`
/// where only name, inputs and outputs matter.
template <class F>
class Function : public Node<F> {
 public:
  static constexpr NodeKind Kind = NodeKind::Function;
  Function(Identifier<F> const* name, NodeList<InputArgument<F>> inputs, NodeList<Identifier<F>> outputs,
           NodeList<ArgumentsBlock<F>> declarationBlocks, NodeList<Node<F>> body) noexcept
      : Function(Kind, name, inputs, outputs, declarationBlocks, body) {}

  Identifier<F> const* getName() const noexcept { return name_; }
  NodeList<InputArgument<F>> getInputs() const noexcept { return inputs_; }
  NodeList<Identifier<F>> getOutputs() const noexcept { return outputs_; }
  /// The arguments blocks at the head of the body.
  NodeList<ArgumentsBlock<F>> getDeclarationBlocks() const noexcept { return declarationBlocks_; }
  NodeList<Node<F>> getBody() const noexcept { return body_; }

 protected:
  Function(NodeKind kind, Identifier<F> const* name, NodeList<InputArgument<F>> inputs, NodeList<Identifier<F>> outputs,
           NodeList<ArgumentsBlock<F>> declarationBlocks, NodeList<Node<F>> body) noexcept
      : Node<F>(kind),
        name_(name),
        inputs_(inputs),
        outputs_(outputs),
        declarationBlocks_(declarationBlocks),
        body_(body) {
    this->adopt(name);
    this->adopt(inputs);
    this->adopt(outputs);
    this->adopt(declarationBlocks);
    this->adopt(body);
  }

 public:
  /// Calls `fn` with each child, in walk order; absent optional children are skipped.
  template <class Fn>
  void forEachChild(Fn&& fn) const {
    fn(static_cast<Node<F> const*>(name_));
    for (auto const* child : inputs_) fn(static_cast<Node<F> const*>(child));
    for (auto const* child : outputs_) fn(static_cast<Node<F> const*>(child));
    for (auto const* child : declarationBlocks_) fn(static_cast<Node<F> const*>(child));
    for (auto const* child : body_) fn(static_cast<Node<F> const*>(child));
  }

 private:
  Identifier<F> const* name_;
  NodeList<InputArgument<F>> inputs_;
  NodeList<Identifier<F>> outputs_;
  NodeList<ArgumentsBlock<F>> declarationBlocks_;
  NodeList<Node<F>> body_;
};

/// The base of `MethodDeclaration` and `MethodDefinition` (class bits 0x11).
/// The name of a property accessor holds the dot, as in `set.Prop`.
template <class F>
class Method : public Function<F> {
 protected:
  using Function<F>::Function;
};

/// `r = name(obj, x)` inside a methods block: a signature without a body.
template <class F>
class MethodDeclaration final : public Method<F> {
 public:
  static constexpr NodeKind Kind = NodeKind::MethodDeclaration;
  MethodDeclaration(Identifier<F> const* name, NodeList<InputArgument<F>> inputs,
                    NodeList<Identifier<F>> outputs) noexcept
      : Method<F>(Kind, name, inputs, outputs, {}, {}) {}
};

/// A function inside a methods block.
template <class F>
class MethodDefinition final : public Method<F> {
 public:
  static constexpr NodeKind Kind = NodeKind::MethodDefinition;
  MethodDefinition(Identifier<F> const* name, NodeList<InputArgument<F>> inputs, NodeList<Identifier<F>> outputs,
                   NodeList<ArgumentsBlock<F>> declarationBlocks, NodeList<Node<F>> body) noexcept
      : Method<F>(Kind, name, inputs, outputs, declarationBlocks, body) {}
};

/// `Name`, `Name = value` or `~Name` in the attribute list of a class or block.
template <class F>
class Attribute final : public Node<F> {
 public:
  static constexpr NodeKind Kind = NodeKind::Attribute;
  Attribute(Identifier<F> const* name, Expression<F> const* value, bool negated = false) noexcept
      : Node<F>(Kind), name_(name), value_(value), negated_(negated) {
    this->adopt(name);
    this->adopt(value);
  }
  Identifier<F> const* getName() const noexcept { return name_; }
  /// Null for `Name` and `~Name`.
  Expression<F> const* getValue() const noexcept { return value_; }
  /// True for `~Name`.
  bool isNegated() const noexcept { return negated_; }

  /// Calls `fn` with each child, in walk order; absent optional children are skipped.
  template <class Fn>
  void forEachChild(Fn&& fn) const {
    fn(static_cast<Node<F> const*>(name_));
    if (value_ != nullptr) fn(static_cast<Node<F> const*>(value_));
  }

 private:
  Identifier<F> const* name_;
  Expression<F> const* value_;
  bool negated_;
};

/// The size, class and validators of an argument or property:
/// `(1,:) double {mustBePositive}`.
template <class F>
class Validation final : public Node<F> {
 public:
  static constexpr NodeKind Kind = NodeKind::Validation;
  Validation(NodeList<Expression<F>> dimensions, Expression<F> const* className,
             NodeList<Expression<F>> validators) noexcept
      : Node<F>(Kind), dimensions_(dimensions), className_(className), validators_(validators) {
    this->adopt(dimensions);
    this->adopt(className);
    this->adopt(validators);
  }
  /// Numbers or `AnySize`; empty without a size.
  NodeList<Expression<F>> getDimensions() const noexcept { return dimensions_; }
  /// Null without a class.
  Expression<F> const* getClassName() const noexcept { return className_; }
  NodeList<Expression<F>> getValidators() const noexcept { return validators_; }

  /// Calls `fn` with each child, in walk order; absent optional children are skipped.
  template <class Fn>
  void forEachChild(Fn&& fn) const {
    for (auto const* child : dimensions_) fn(static_cast<Node<F> const*>(child));
    if (className_ != nullptr) fn(static_cast<Node<F> const*>(className_));
    for (auto const* child : validators_) fn(static_cast<Node<F> const*>(child));
  }

 private:
  NodeList<Expression<F>> dimensions_;
  Expression<F> const* className_;
  NodeList<Expression<F>> validators_;
};

/// One entry of an arguments block: `name (dims) Class {validators} = default`.
/// The name may be `opts.Name` (named by field) or `opts.?pkg.Class` (named by
/// class); then `getName` holds `opts`.
template <class F>
class Argument final : public Node<F> {
 public:
  static constexpr NodeKind Kind = NodeKind::Argument;
  Argument(InputArgument<F> const* name, Field<F> const* fieldPart, Expression<F> const* classPart,
           Validation<F> const* validation, Expression<F> const* defaultValue) noexcept
      : Node<F>(Kind),
        name_(name),
        fieldPart_(fieldPart),
        classPart_(classPart),
        validation_(validation),
        defaultValue_(defaultValue) {
    this->adopt(name);
    this->adopt(fieldPart);
    this->adopt(classPart);
    this->adopt(validation);
    this->adopt(defaultValue);
  }
  InputArgument<F> const* getName() const noexcept { return name_; }
  Field<F> const* getFieldPart() const noexcept { return fieldPart_; }
  Expression<F> const* getClassPart() const noexcept { return classPart_; }
  Validation<F> const* getValidation() const noexcept { return validation_; }
  Expression<F> const* getDefaultValue() const noexcept { return defaultValue_; }

  /// Calls `fn` with each child, in walk order; absent optional children are skipped.
  template <class Fn>
  void forEachChild(Fn&& fn) const {
    fn(static_cast<Node<F> const*>(name_));
    if (fieldPart_ != nullptr) fn(static_cast<Node<F> const*>(fieldPart_));
    if (classPart_ != nullptr) fn(static_cast<Node<F> const*>(classPart_));
    if (validation_ != nullptr) fn(static_cast<Node<F> const*>(validation_));
    if (defaultValue_ != nullptr) fn(static_cast<Node<F> const*>(defaultValue_));
  }

 private:
  InputArgument<F> const* name_;
  Field<F> const* fieldPart_;
  Expression<F> const* classPart_;
  Validation<F> const* validation_;
  Expression<F> const* defaultValue_;
};

/// Shared shape of the blocks of attributes and members: arguments, methods,
/// properties, events and enumeration blocks.
template <class F, class Member>
class MemberBlock : public Node<F> {
 public:
  NodeList<Attribute<F>> getAttributes() const noexcept { return attributes_; }
  NodeList<Member> getMembers() const noexcept { return members_; }

 protected:
  MemberBlock(NodeKind kind, NodeList<Attribute<F>> attributes, NodeList<Member> members) noexcept
      : Node<F>(kind), attributes_(attributes), members_(members) {
    this->adopt(attributes);
    this->adopt(members);
  }

 public:
  /// Calls `fn` with each child, in walk order; absent optional children are skipped.
  template <class Fn>
  void forEachChild(Fn&& fn) const {
    for (auto const* child : attributes_) fn(static_cast<Node<F> const*>(child));
    for (auto const* child : members_) fn(static_cast<Node<F> const*>(child));
  }

 private:
  NodeList<Attribute<F>> attributes_;
  NodeList<Member> members_;
};

/// `arguments (Input) ... end` at the head of a function body.
template <class F>
class ArgumentsBlock final : public MemberBlock<F, Argument<F>> {
 public:
  static constexpr NodeKind Kind = NodeKind::ArgumentsBlock;
  ArgumentsBlock(NodeList<Attribute<F>> attributes, NodeList<Argument<F>> arguments) noexcept
      : MemberBlock<F, Argument<F>>(Kind, attributes, arguments) {}
  NodeList<Argument<F>> getArguments() const noexcept { return this->getMembers(); }
};

/// `methods (Static) ... end`: `MethodDefinition` and `MethodDeclaration` members.
template <class F>
class MethodsBlock final : public MemberBlock<F, Method<F>> {
 public:
  static constexpr NodeKind Kind = NodeKind::MethodsBlock;
  MethodsBlock(NodeList<Attribute<F>> attributes, NodeList<Method<F>> members) noexcept
      : MemberBlock<F, Method<F>>(Kind, attributes, members) {}
};

/// `P3 (1,:) double {mustBePositive} = [1 2]`.
template <class F>
class Property final : public Node<F> {
 public:
  static constexpr NodeKind Kind = NodeKind::Property;
  Property(Identifier<F> const* name, Validation<F> const* validation, Expression<F> const* defaultValue) noexcept
      : Node<F>(Kind), name_(name), validation_(validation), defaultValue_(defaultValue) {
    this->adopt(name);
    this->adopt(validation);
    this->adopt(defaultValue);
  }
  Identifier<F> const* getName() const noexcept { return name_; }
  Validation<F> const* getValidation() const noexcept { return validation_; }
  Expression<F> const* getDefaultValue() const noexcept { return defaultValue_; }

  /// Calls `fn` with each child, in walk order; absent optional children are skipped.
  template <class Fn>
  void forEachChild(Fn&& fn) const {
    fn(static_cast<Node<F> const*>(name_));
    if (validation_ != nullptr) fn(static_cast<Node<F> const*>(validation_));
    if (defaultValue_ != nullptr) fn(static_cast<Node<F> const*>(defaultValue_));
  }

 private:
  Identifier<F> const* name_;
  Validation<F> const* validation_;
  Expression<F> const* defaultValue_;
};

/// `properties (Access = private) ... end`.
template <class F>
class PropertiesBlock final : public MemberBlock<F, Property<F>> {
 public:
  static constexpr NodeKind Kind = NodeKind::PropertiesBlock;
  PropertiesBlock(NodeList<Attribute<F>> attributes, NodeList<Property<F>> members) noexcept
      : MemberBlock<F, Property<F>>(Kind, attributes, members) {}
};

/// One event of an events block; the optional second part is kept for tree
/// producers that attach something to an event name.
template <class F>
class Event final : public Node<F> {
 public:
  static constexpr NodeKind Kind = NodeKind::Event;
  explicit Event(Identifier<F> const* name, Node<F> const* second = nullptr) noexcept
      : Node<F>(Kind), name_(name), second_(second) {
    this->adopt(name);
    this->adopt(second);
  }
  Identifier<F> const* getName() const noexcept { return name_; }
  Node<F> const* getSecondPart() const noexcept { return second_; }

  /// Calls `fn` with each child, in walk order; absent optional children are skipped.
  template <class Fn>
  void forEachChild(Fn&& fn) const {
    fn(static_cast<Node<F> const*>(name_));
    if (second_ != nullptr) fn(static_cast<Node<F> const*>(second_));
  }

 private:
  Identifier<F> const* name_;
  Node<F> const* second_;
};

/// `events (ListenAccess = public) ... end`.
template <class F>
class EventsBlock final : public MemberBlock<F, Event<F>> {
 public:
  static constexpr NodeKind Kind = NodeKind::EventsBlock;
  EventsBlock(NodeList<Attribute<F>> attributes, NodeList<Event<F>> members) noexcept
      : MemberBlock<F, Event<F>>(Kind, attributes, members) {}
};

/// `Red (1, 0, 0)` in an enumeration block.
template <class F>
class Enumerator final : public Node<F> {
 public:
  static constexpr NodeKind Kind = NodeKind::Enumerator;
  Enumerator(Identifier<F> const* name, NodeList<Expression<F>> arguments) noexcept
      : Node<F>(Kind), name_(name), arguments_(arguments) {
    this->adopt(name);
    this->adopt(arguments);
  }
  Identifier<F> const* getName() const noexcept { return name_; }
  NodeList<Expression<F>> getArguments() const noexcept { return arguments_; }

  /// Calls `fn` with each child, in walk order; absent optional children are skipped.
  template <class Fn>
  void forEachChild(Fn&& fn) const {
    fn(static_cast<Node<F> const*>(name_));
    for (auto const* child : arguments_) fn(static_cast<Node<F> const*>(child));
  }

 private:
  Identifier<F> const* name_;
  NodeList<Expression<F>> arguments_;
};

/// `enumeration ... end`.
template <class F>
class EnumerationBlock final : public MemberBlock<F, Enumerator<F>> {
 public:
  static constexpr NodeKind Kind = NodeKind::EnumerationBlock;
  EnumerationBlock(NodeList<Attribute<F>> attributes, NodeList<Enumerator<F>> members) noexcept
      : MemberBlock<F, Enumerator<F>>(Kind, attributes, members) {}
};

/// `classdef (Sealed) Name < Base1 & Base2 ... end`.
template <class F>
class Classdef final : public Node<F> {
 public:
  static constexpr NodeKind Kind = NodeKind::Classdef;
  Classdef(NodeList<Attribute<F>> attributes, Identifier<F> const* name, NodeList<Expression<F>> superclasses,
           NodeList<Node<F>> blocks) noexcept
      : Node<F>(Kind), attributes_(attributes), name_(name), superclasses_(superclasses), blocks_(blocks) {
    this->adopt(attributes);
    this->adopt(name);
    this->adopt(superclasses);
    this->adopt(blocks);
  }
  NodeList<Attribute<F>> getAttributes() const noexcept { return attributes_; }
  Identifier<F> const* getName() const noexcept { return name_; }
  NodeList<Expression<F>> getSuperclasses() const noexcept { return superclasses_; }
  /// Properties, methods, events and enumeration blocks, in source order.
  NodeList<Node<F>> getBlocks() const noexcept { return blocks_; }

  /// Calls `fn` with each child, in walk order; absent optional children are skipped.
  template <class Fn>
  void forEachChild(Fn&& fn) const {
    for (auto const* child : attributes_) fn(static_cast<Node<F> const*>(child));
    fn(static_cast<Node<F> const*>(name_));
    for (auto const* child : superclasses_) fn(static_cast<Node<F> const*>(child));
    for (auto const* child : blocks_) fn(static_cast<Node<F> const*>(child));
  }

 private:
  NodeList<Attribute<F>> attributes_;
  Identifier<F> const* name_;
  NodeList<Expression<F>> superclasses_;
  NodeList<Node<F>> blocks_;
};

/// The root of a tree: the statements, functions and class of one file.
template <class F>
class Program final : public Node<F> {
 public:
  static constexpr NodeKind Kind = NodeKind::Program;
  Program(ca::astapi::TextView filePath, NodeList<Node<F>> body) noexcept
      : Node<F>(Kind), filePath_(filePath), body_(body) {
    this->adopt(body);
  }
  ca::astapi::TextView getFilePath() const noexcept { return filePath_; }
  NodeList<Node<F>> getBody() const noexcept { return body_; }

  /// Calls `fn` with each child, in walk order; absent optional children are skipped.
  template <class Fn>
  void forEachChild(Fn&& fn) const {
    for (auto const* child : body_) fn(static_cast<Node<F> const*>(child));
  }

 private:
  ca::astapi::TextView filePath_;
  NodeList<Node<F>> body_;
};

}  // namespace lf::astapi
