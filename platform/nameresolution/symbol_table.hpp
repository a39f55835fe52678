#pragma once

#include <algorithm>
#include <cstdint>
#include <memory>
#include <span>
#include <vector>

#include "platform/analysis/provided_analysis.hpp"
#include "platform/ast/ast.hpp"
#include "platform/ast/string_id.hpp"

namespace ca::nameresolution {

/// One symbol of a file: a name within its scope, with what it is and every
/// identifier that refers to it.
///
/// Scopes follow the analysed language: each function has its own variables,
/// shared with the functions nested in it; a script has its workspace;
/// functions, methods and the class are one symbol each for the whole file,
/// and so is every external name (one that no part of the file defines).
///
/// Invariants: the name and the classification are fixed once the table is
/// built; occurrences are in source order and never empty.
class SymbolTableEntry {
 public:
  /// What a symbol is; a symbol may be several of these at once (an input
  /// that is also shared, a method that is the constructor).
  enum Flag : std::uint32_t {
    Variable = 1u << 0,
    InputVariable = 1u << 1,
    OutputVariable = 1u << 2,
    GlobalVariable = 1u << 3,
    PersistentVariable = 1u << 4,
    SharedVariable = 1u << 5,   // a variable of a function seen by a nested function
    VariableUse = 1u << 6,      // a variable that is used but never defined
    Function = 1u << 7,         // any function the file defines
    MainFunction = 1u << 8,     // the first function of a function file
    LocalFunction = 1u << 9,    // a later function of a file, or a function of a script
    NestedFunction = 1u << 10,  // a function inside a function
    Method = 1u << 11,          // a method defined or declared in the class
    Constructor = 1u << 12,     // the method named like the class
    Class = 1u << 13,           // the class the file defines
    External = 1u << 14,        // defined nowhere in the file
  };

  SymbolTableEntry(astapi::StringId name, std::uint32_t flags) noexcept : name_(name), flags_(flags) {}
  virtual ~SymbolTableEntry() = default;

  /// The name, as 16-bit text.
  virtual astapi::TextView getName() const { return astapi::toTextView(name_.getString()); }
  astapi::StringId getStringId() const noexcept { return name_; }
  /// Every identifier that refers to this symbol, first first.
  std::span<ast::Identifier const* const> getOccurrences() const noexcept { return occurrences_; }

  virtual bool isVariable() const { return has(Variable); }
  bool isInputVariable() const noexcept { return has(InputVariable); }
  bool isOutputVariable() const noexcept { return has(OutputVariable); }
  virtual bool isGlobalVariable() const { return has(GlobalVariable); }
  virtual bool isPersistentVariable() const { return has(PersistentVariable); }
  virtual bool isSharedVariable() const { return has(SharedVariable); }
  bool isVariableUse() const noexcept { return has(VariableUse); }
  virtual bool isFunction() const { return has(Function); }
  bool isMainFunction() const noexcept { return has(MainFunction); }
  virtual bool isLocalFunction() const { return has(LocalFunction); }
  virtual bool isNestedFunction() const { return has(NestedFunction); }
  virtual bool isMethod() const { return has(Method); }
  bool isConstructor() const noexcept { return has(Constructor); }
  virtual bool isClass() const { return has(Class); }
  bool isExternal() const noexcept { return has(External); }

  std::uint32_t getFlags() const noexcept { return flags_; }

  // For the analysis that builds the table.
  void addFlags(std::uint32_t flags) noexcept { flags_ |= flags; }
  void removeFlags(std::uint32_t flags) noexcept { flags_ &= ~flags; }
  void addOccurrence(ast::Identifier const* identifier) { occurrences_.push_back(identifier); }
  /// Puts the occurrences in source order, once all are added.
  void sortOccurrences() {
    std::stable_sort(occurrences_.begin(), occurrences_.end(), [](ast::Identifier const* a, ast::Identifier const* b) {
      return a->getSourceRange().first.offset < b->getSourceRange().first.offset;
    });
  }

 private:
  bool has(std::uint32_t flag) const noexcept { return (flags_ & flag) != 0; }

  astapi::StringId name_;
  std::uint32_t flags_;
  std::vector<ast::Identifier const*> occurrences_;
};

/// The symbols of one analysed file. Reached through
/// `Analysis::getSymbolTable()` or `get<SymbolTable>()`, which make it once
/// per analysis through the analysis provider.
class SymbolTable {
 public:
  virtual ~SymbolTable() = default;

  /// The key of this analysis in an analysis's cache.
  static astapi::StringId GetAnalysisId() {
    static astapi::StringId const id(u"ca::nameresolution::SymbolTable");
    return id;
  }
  /// Asks the provider of `analysis`, an `AnalysisImpl`, to make it.
  static std::shared_ptr<SymbolTable> Create(Analysis const& analysis) {
    return clients::createByProvider<SymbolTable>(analysis);
  }

  /// The symbol that `identifier` refers to, or null when it refers to none
  /// (names of attributes, properties, events and enumerators, the parts of
  /// an import).
  virtual SymbolTableEntry const* getSymbol(ast::Identifier const& identifier) const = 0;
  /// Every symbol of the table, in the table's own order: by first occurrence.
  virtual std::vector<SymbolTableEntry const*> getSymbols() const = 0;
};

/// How identifiers are used, beyond what their symbols say. Reached through
/// `get<IdUseAnalysis>()` (and `AnalysisImpl::getIdUseAnalysis`), made once
/// per analysis through the analysis provider.
class IdUseAnalysis {
 public:
  virtual ~IdUseAnalysis() = default;

  /// The key of this analysis in an analysis's cache.
  static astapi::StringId GetAnalysisId() {
    static astapi::StringId const id(u"ca::nameresolution::IdUseAnalysis");
    return id;
  }
  /// Asks the provider of `analysis`, an `AnalysisImpl`, to make it.
  static std::shared_ptr<IdUseAnalysis> Create(Analysis const& analysis) {
    return clients::createByProvider<IdUseAnalysis>(analysis);
  }
  /// The identifier is an input or output in the signature of a function,
  /// method, method declaration or anonymous function.
  virtual bool isArgumentSignature(ast::Identifier const& identifier) const = 0;
  /// The identifier heads the target of an assignment to a field: `obj` in
  /// `obj.p = 1`, `s.a(2).b = 3` or `[obj.p, q] = f()`.
  virtual bool isDotAssignment(ast::Identifier const& identifier) const = 0;
};

}  // namespace ca::nameresolution

namespace ca {
using Symbol = nameresolution::SymbolTableEntry;
}  // namespace ca
