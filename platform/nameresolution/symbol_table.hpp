#pragma once

#include <vector>

#include "platform/ast/ast.hpp"

namespace ca::nameresolution {

/// One symbol of a file: a variable, function, class or external name within
/// its scope. Its classifications come with the name-resolution analysis.
class SymbolTableEntry;

/// The symbols of one analysed file.
class SymbolTable {
 public:
  virtual ~SymbolTable() = default;

  /// The symbol that `identifier` refers to, or null when it refers to none.
  virtual SymbolTableEntry const* getSymbol(ast::Identifier const& identifier) const = 0;
  /// Every symbol of the table, in the table's own order.
  virtual std::vector<SymbolTableEntry const*> getSymbols() const = 0;
};

}  // namespace ca::nameresolution

namespace ca {
using Symbol = nameresolution::SymbolTableEntry;
}  // namespace ca
