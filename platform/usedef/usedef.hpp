#pragma once

#include <cstdint>
#include <iosfwd>
#include <vector>

#include "platform/ast/ast.hpp"

namespace ca::controlflow {
/// A node of a control-flow graph.
struct ControlFlowNode;
}  // namespace ca::controlflow

namespace ca::usedef {

class Definition;
class Use;

/// A record of the use-def analysis: a definition of a variable, a use of one,
/// or both at once (an assignment to part of a variable).
///
/// Invariants: the kind is fixed at construction and decides `isDefinition`
/// and `isUse`; a record whose kind is a definition derives from `Definition`,
/// one whose kind is a use from `Use`. `Definition` and `Use` derive virtually,
/// so a record that is both has one `UseDefBase`.
class UseDefBase {
 public:
  enum class Kind : std::uint8_t {
    FullAssignmentDef,        // x = ..., [x, y] = ...
    PartialAssignmentUseDef,  // x(2) = ..., x.f = ..., x{1} = ...: uses and defines x
    InputDef,                 // an input of a function
    LoopVariableDef,          // the variable of a for or parfor loop
    CatchDef,                 // the identifier after catch
    GlobalDef,                // global x
    PersistentDef,            // persistent x
    VariableUse,              // a read of a variable
  };

  virtual ~UseDefBase() = default;
  UseDefBase(UseDefBase const&) = delete;
  UseDefBase& operator=(UseDefBase const&) = delete;

  Kind getKind() const noexcept { return kind_; }
  bool isDefinition() const noexcept { return kind_ != Kind::VariableUse; }
  bool isUse() const noexcept { return kind_ == Kind::VariableUse || kind_ == Kind::PartialAssignmentUseDef; }
  /// The identifier that the record is about.
  ast::Identifier const* getIdentifier() const noexcept { return identifier_; }

  /// This record as a `Definition`, or null when it is none: the checked
  /// downcast, read from a field instead of searched through the virtual base.
  Definition const* asDefinition() const noexcept { return definition_; }
  /// This record as a `Use`, or null when it is none.
  Use const* asUse() const noexcept { return use_; }

 protected:
  UseDefBase(Kind kind, ast::Identifier const* identifier) noexcept : kind_(kind), identifier_(identifier) {}

 private:
  friend class Definition;
  friend class Use;

  Kind kind_;
  ast::Identifier const* identifier_;
  Definition const* definition_ = nullptr;
  Use const* use_ = nullptr;
};

/// A definition of a variable.
class Definition : public virtual UseDefBase {
 protected:
  // The virtual base is constructed by the most derived class; this
  // initialiser only satisfies the language.
  Definition() noexcept : UseDefBase(Kind::FullAssignmentDef, nullptr) { definition_ = this; }
};

/// A use of a variable, linked to the definitions that reach it through the
/// control-flow graph and to its node in that graph.
class Use : public virtual UseDefBase {
 public:
  /// The reaching definition: the one that reaches, or of several the last in
  /// source order; null when none reaches this use.
  Definition const* getDefinition() const noexcept { return definitions_.empty() ? nullptr : definitions_.back(); }
  /// Every definition that reaches this use, in source order.
  std::vector<Definition const*> const& getDefinitions() const noexcept { return definitions_; }
  controlflow::ControlFlowNode const* getCfgNode() const noexcept { return cfgNode_; }

  void setDefinitions(std::vector<Definition const*> definitions) { definitions_ = std::move(definitions); }
  void setCfgNode(controlflow::ControlFlowNode const* node) noexcept { cfgNode_ = node; }

 protected:
  Use() noexcept : UseDefBase(Kind::VariableUse, nullptr) { use_ = this; }

 private:
  std::vector<Definition const*> definitions_;
  controlflow::ControlFlowNode const* cfgNode_ = nullptr;
};

/// A definition by assignment, whole or partial.
class AssignmentDef : public Definition {
 protected:
  // As in Definition: the most derived class constructs the virtual base.
  AssignmentDef() noexcept : UseDefBase(Kind::FullAssignmentDef, nullptr) {}
};

/// A definition of one kind. Its `UseDefBase` is constructed here, as the most
/// derived class, with the real kind.
template <UseDefBase::Kind K, class Base = Definition>
class DefinitionOf final : public Base {
 public:
  static constexpr UseDefBase::Kind ClassKind = K;
  explicit DefinitionOf(ast::Identifier const* identifier) noexcept : UseDefBase(K, identifier) {}
};

using FullAssignmentDef = DefinitionOf<UseDefBase::Kind::FullAssignmentDef, AssignmentDef>;
using InputDef = DefinitionOf<UseDefBase::Kind::InputDef>;
using LoopVariableDef = DefinitionOf<UseDefBase::Kind::LoopVariableDef>;
using CatchDef = DefinitionOf<UseDefBase::Kind::CatchDef>;
using GlobalDef = DefinitionOf<UseDefBase::Kind::GlobalDef>;
using PersistentDef = DefinitionOf<UseDefBase::Kind::PersistentDef>;

/// A read of a variable.
class VariableUse final : public Use {
 public:
  static constexpr Kind ClassKind = Kind::VariableUse;
  explicit VariableUse(ast::Identifier const* identifier) noexcept : UseDefBase(ClassKind, identifier) {}
};

/// An assignment to part of a variable: both a use of the old value and a
/// definition of the new one.
class PartialAssignmentUseDef final : public AssignmentDef, public Use {
 public:
  static constexpr Kind ClassKind = Kind::PartialAssignmentUseDef;
  explicit PartialAssignmentUseDef(ast::Identifier const* identifier) noexcept : UseDefBase(ClassKind, identifier) {}
};

/// Writes the kind's name, "FullAssignmentDef" and so on.
std::ostream& operator<<(std::ostream& out, UseDefBase::Kind kind);

}  // namespace ca::usedef
