#pragma once

#include <memory>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include "platform/analysis/analysis.hpp"
#include "platform/analysis/file_type.hpp"
#include "platform/nameresolution/symbol_table.hpp"

namespace frontend {

/// The symbols of one file and how its identifiers are used, resolved by the
/// rules of the analysed language:
///
/// - inside a function, a name is a variable when it is an input, an output,
///   declared global or persistent, or assigned anywhere in the function
///   (loop variables and `catch` identifiers included); a nested function
///   shares the variables of the functions around it;
/// - a script's workspace works the same way for its statements;
/// - any other name is a function of the file (main, local, nested), a method
///   or the class, or else external: one symbol per external name for the
///   whole file.
///
/// Names that declare rather than refer (attributes, properties, events,
/// enumerators, the parts of an import) have no symbol.
///
/// Made once per analysis by `Analysis::get<FileSymbols>()`, and handed out
/// by the front end as both the symbol table and the identifier-use analysis.
///
/// Invariants: built once from a finished tree and never changed; every
/// symbol has at least one occurrence; symbols are listed by first
/// occurrence.
class FileSymbols final : public ca::nameresolution::SymbolTable, public ca::nameresolution::IdUseAnalysis {
 public:
  static std::shared_ptr<FileSymbols> build(ca::ast::Program const& program, ca::FileType type);

  /// The key of this analysis in an analysis's cache.
  static ca::astapi::StringId GetAnalysisId();
  /// Resolves the names of the program of `analysis`.
  static std::shared_ptr<FileSymbols> Create(ca::Analysis const& analysis);

  ca::nameresolution::SymbolTableEntry const* getSymbol(ca::ast::Identifier const& identifier) const override;
  std::vector<ca::nameresolution::SymbolTableEntry const*> getSymbols() const override;

  bool isArgumentSignature(ca::ast::Identifier const& identifier) const override;
  bool isDotAssignment(ca::ast::Identifier const& identifier) const override;

  /// Whether the identifier defines its variable: an input, a loop variable,
  /// a `catch` identifier, a name declared global or persistent, or the head
  /// of an assignment's target.
  bool isDefinition(ca::ast::Identifier const& identifier) const { return definitions_.count(&identifier) != 0; }
  ca::FileType getFileType() const noexcept { return fileType_; }
  /// The program whose identifiers these are.
  ca::ast::Program const& getProgram() const noexcept { return *program_; }

 private:
  friend class NameResolver;
  FileSymbols() = default;

  ca::FileType fileType_ = ca::FileType::Script;
  ca::ast::Program const* program_ = nullptr;
  std::vector<std::unique_ptr<ca::nameresolution::SymbolTableEntry>> symbols_;  // by first occurrence
  std::unordered_map<ca::ast::Identifier const*, ca::nameresolution::SymbolTableEntry const*> byIdentifier_;
  std::unordered_set<ca::ast::Identifier const*> signatures_;
  std::unordered_set<ca::ast::Identifier const*> dotAssignments_;
  std::unordered_set<ca::ast::Identifier const*> definitions_;
};

}  // namespace frontend
