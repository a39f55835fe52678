#pragma once

// What an occurrence of a variable does to it, for the rules that ask
// whether a variable is ever set or ever read: stages over the identifiers
// of a symbol, answered by the name resolution of the front end.

#include <functional>
#include <string>

#include "frontend/analysis/name_resolution.hpp"
#include "rulesystem/rulesystem.hpp"

namespace plexus::rules {

/// Keeps the identifiers that define their variable: an input, the head of
/// an assignment's target (whole or in part), a loop variable, a `catch`
/// identifier, a name declared global or persistent.
class IsVariableDefinition final
    : public ca::rulesystem::StageOf<IsVariableDefinition, ca::rulesystem::Predicate<ca::ast::Identifier const&>> {
 public:
  std::u16string description() const override { return u"IsVariableDefinition"; }
  bool test(ca::ast::Identifier const& identifier, ca::Analysis const& analysis) override {
    return analysis.get<frontend::FileSymbols>().isDefinition(identifier);
  }
};

/// Keeps the identifiers that read their variable's value: every occurrence
/// but those in a signature or an arguments block, and definitions of the
/// whole variable. Setting part of a variable (`x(2) = 1`, `s.f = 1`) reads
/// the rest of it.
class IsVariableRead final
    : public ca::rulesystem::StageOf<IsVariableRead, ca::rulesystem::Predicate<ca::ast::Identifier const&>> {
 public:
  std::u16string description() const override { return u"IsVariableRead"; }
  bool test(ca::ast::Identifier const& identifier, ca::Analysis const& analysis) override {
    ca::ast::Node const* const parent = identifier.getParent();
    // An input's own name, in a signature or naming an arguments-block entry.
    if (parent == nullptr || lf::astapi::isA<ca::ast::InputArgument>(*parent)) return false;
    auto const& symbols = analysis.get<frontend::FileSymbols>();
    if (symbols.isArgumentSignature(identifier)) return false;
    if (!symbols.isDefinition(identifier)) return true;
    // The head of a partial target stands as the base of an index or field.
    switch (parent->getKind()) {
      case lf::astapi::NodeKind::ParenOperation:
      case lf::astapi::NodeKind::BraceOperation:
      case lf::astapi::NodeKind::DotOperation:
      case lf::astapi::NodeKind::DotParenOperation: return true;
      default: return false;
    }
  }
};

/// Gives the first occurrence of a symbol that defines it; nothing for a
/// symbol that no occurrence defines.
class FirstVariableDefinition final
    : public ca::rulesystem::StageOf<FirstVariableDefinition,
                                     ca::rulesystem::SelectMany<ca::Symbol const&, ca::ast::Identifier const&>> {
 public:
  std::u16string description() const override { return u"FirstVariableDefinition"; }
  void select(ca::Symbol const& symbol, ca::Analysis const& analysis,
              std::function<void(ca::ast::Identifier const&)> const& yield) const override {
    auto const& symbols = analysis.get<frontend::FileSymbols>();
    for (ca::ast::Identifier const* occurrence : symbol.getOccurrences()) {
      if (symbols.isDefinition(*occurrence)) {
        yield(*occurrence);
        return;
      }
    }
  }
};

}  // namespace plexus::rules
