#pragma once

// The vocabulary of symbols: from a `Program` to every symbol of the file,
// the symbols of one sort or one name, and back from a symbol to the
// identifiers that spell it. The questions about a symbol's sort are strict:
// they are asked of the symbol-table entry, and a symbol of any other class
// is a std::bad_cast.

#include <memory>
#include <set>
#include <string>

#include "platform/nameresolution/symbol_table.hpp"
#include "rulesystem/graph/stage.hpp"
#include "rulesystem/graph/switch.hpp"
#include "rulesystem/graph/tree_types.hpp"

namespace ca::rulesystem {

// --- The sort of a symbol ---
//
// Each asks the symbol one question; stages that ask the same question are
// one, whatever their descriptions.

/// Keeps the symbols that are variables of any sort.
///   all.program | getAllSymbols() | isSymbolVariable()
std::unique_ptr<Predicate<ca::Symbol const&>> isSymbolVariable();

/// Keeps the variables that a nested function shares with the function
/// around it. Prints as "IsSharedSymbolVariable".
///   all.program | getAllSymbols() | isSymbolSharedVariable()
std::unique_ptr<Predicate<ca::Symbol const&>> isSymbolSharedVariable();

/// Keeps the variables that are used but defined nowhere.
///   all.program | getAllSymbols() | isSymbolVariableUse()
std::unique_ptr<Predicate<ca::Symbol const&>> isSymbolVariableUse();

/// Keeps the names that the file defines nowhere.
///   all.program | getAllSymbols() | isSymbolExternal()
std::unique_ptr<Predicate<ca::Symbol const&>> isSymbolExternal();

/// Keeps the output variables of functions and methods.
///   all.program | getAllSymbols() | isSymbolOutputVariable()
std::unique_ptr<Predicate<ca::Symbol const&>> isSymbolOutputVariable();

/// Keeps the class that the file defines.
///   all.program | getAllSymbols() | isSymbolClass()
std::unique_ptr<Predicate<ca::Symbol const&>> isSymbolClass();

/// Keeps the functions that the file defines, methods included.
///   all.program | getAllSymbols() | isSymbolFunction()
std::unique_ptr<Predicate<ca::Symbol const&>> isSymbolFunction();

/// Keeps the methods that the class defines or declares.
///   all.program | getAllSymbols() | isSymbolMethod()
std::unique_ptr<Predicate<ca::Symbol const&>> isSymbolMethod();

/// Keeps the global variables.
///   all.program | getAllSymbols() | isSymbolGlobalVariable()
std::unique_ptr<Predicate<ca::Symbol const&>> isSymbolGlobalVariable();

/// Keeps the persistent variables.
///   all.program | getAllSymbols() | isSymbolPersistentVariable()
std::unique_ptr<Predicate<ca::Symbol const&>> isSymbolPersistentVariable();

/// Keeps the output variables that stand last in their function's output
/// list, judged by the first occurrence alone: one that first occurs outside
/// an output list (shared with an enclosing function) does not pass.
///   all.program | getAllSymbols() | isSymbolLastOutputVariable()
std::unique_ptr<Predicate<ca::Symbol const&>> isSymbolLastOutputVariable();

// --- From a program to its symbols, and back to the identifiers ---

/// Gives every symbol of the file, in the table's order, for each `Program`
/// item (the whole table each time).
///   all.program | getAllSymbols()
std::unique_ptr<SelectMany<Program const&, ca::Symbol const&>> getAllSymbols();

/// Gives every identifier at which the symbol occurs, the first first.
/// Prints as "GetSymbolOccurrences".
///   all.program | getAllSymbols() | isSymbolVariable() | getSymbolOccurences() | isVariable()
std::unique_ptr<SelectMany<ca::Symbol const&, Identifier const&>> getSymbolOccurences();

/// Gives the first identifier at which the symbol occurs; every symbol of a
/// table has one.
///   all.program | getAllSymbols() | isSymbolFunction() | getFirstSymbolOccurrence()
std::unique_ptr<Transform<ca::Symbol const&, Identifier const&>> getFirstSymbolOccurrence();

// --- The name of a symbol ---

/// Keeps the symbols named exactly (with regard to case) one of `names`. All
/// such questions behind one producer meet in one switch on the name, which
/// is computed once per symbol however many rules ask. An empty set gives a
/// switchable without cases, which a producer does not take.
///   all.program | getAllSymbols() | isSymbolName(std::set<std::u16string>{u"values", u"total"})
std::unique_ptr<Switchable<ca::Symbol const&, std::u16string>> isSymbolName(std::set<std::u16string> const& names);

/// Keeps the symbols named exactly `name`; the one-name set.
///   all.program | getAllSymbols() | isSymbolName(u"disp") | getSymbolOccurences()
std::unique_ptr<Switchable<ca::Symbol const&, std::u16string>> isSymbolName(std::u16string const& name);

}  // namespace ca::rulesystem
