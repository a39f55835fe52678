#pragma once

// The vocabulary of the `Identifier` node: what an identifier refers to (a
// variable, a function, an external), what it spells, how long it is, how it
// is used, and the way from an identifier to every occurrence of its symbol.
// Unlike their counterparts over symbols (symbols.hpp), the questions about
// what an identifier refers to are lenient: an identifier without a symbol
// fails them, it does not make them fail.

#include <memory>
#include <string>
#include <vector>

#include "platform/analysis/analysis_impl.hpp"
#include "platform/i18n/i18n.hpp"
#include "platform/tosk/tosk_analysis.hpp"
#include "platform/tosk/tosk_annotation.hpp"
#include "rulesystem/graph/pipe_handle.hpp"
#include "rulesystem/graph/stage_of.hpp"
#include "rulesystem/graph/tree_types.hpp"

namespace ca::rulesystem {

// --- What an identifier refers to ---
//
// Each asks the symbol table for the identifier's symbol and that symbol one
// question; an identifier without a symbol fails. Stages that ask the same
// question are one, whatever their descriptions.

/// Keeps the identifiers whose symbol is a variable of any sort.
///   all.program | getAllSymbols() | getSymbolOccurences() | isVariable()
std::unique_ptr<Predicate<Identifier const&>> isVariable();

/// Keeps the identifiers whose symbol is an input of its function.
///   all.program | getAllSymbols() | getSymbolOccurences() | isInputVariable()
std::unique_ptr<Predicate<Identifier const&>> isInputVariable();

/// Keeps the identifiers whose symbol is a variable that a nested function
/// shares with the function around it.
///   all.program | getAllSymbols() | getSymbolOccurences() | isSharedVariable()
std::unique_ptr<Predicate<Identifier const&>> isSharedVariable();

/// Keeps the identifiers that name a function nested in another.
///   all.program | getAllSymbols() | getSymbolOccurences() | isNestedFunction()
std::unique_ptr<Predicate<Identifier const&>> isNestedFunction();

/// Keeps the identifiers that name a local function: a later function of a
/// file, or a function of a script.
///   all.program | getAllSymbols() | getSymbolOccurences() | isLocalFunction()
std::unique_ptr<Predicate<Identifier const&>> isLocalFunction();

/// Keeps the identifiers that name the first function of a function file.
///   all.program | getAllSymbols() | getSymbolOccurences() | isMainFunction()
std::unique_ptr<Predicate<Identifier const&>> isMainFunction();

/// Keeps the identifiers whose name the file defines nowhere.
///   all.program | getAllSymbols() | getSymbolOccurences() | isExternal()
std::unique_ptr<Predicate<Identifier const&>> isExternal();

/// Keeps the identifiers whose symbol is a global variable.
///   all.program | getAllSymbols() | getSymbolOccurences() | isGlobalVariable()
std::unique_ptr<Predicate<Identifier const&>> isGlobalVariable();

/// Keeps the identifiers whose symbol is a persistent variable.
///   all.program | getAllSymbols() | getSymbolOccurences() | isPersistentVariable()
std::unique_ptr<Predicate<Identifier const&>> isPersistentVariable();

/// Keeps the identifiers of a variable that is used but defined nowhere. It
/// asks what `isSymbolVariableUse` asks, and prints as
/// "isVariableWithoutDefinition".
///   all.program | getAllSymbols() | getSymbolOccurences() | isVariableWithoutAnyDefinition()
std::unique_ptr<Predicate<Identifier const&>> isVariableWithoutAnyDefinition();

// --- What an identifier spells ---

/// Keeps the identifiers that spell one of `names` exactly. Linear in the
/// names; many names are cheaper as keys of a switch (`isSymbolName`). An
/// empty list keeps nothing.
///   all.program | getAllSymbols() | getSymbolOccurences() | isStringId(std::vector<std::u16string>{u"values", u"n"})
std::unique_ptr<Predicate<Identifier const&>> isStringId(std::vector<std::u16string> names);

/// Keeps the identifiers that spell `name` exactly; the one-name list.
///   all.program | getAllSymbols() | getSymbolOccurences() | isStringId(u"total")
std::unique_ptr<Predicate<Identifier const&>> isStringId(std::u16string name);

/// Keeps the identifiers whose text equals `text` under case folding. Two
/// texts that differ only in case make two stages that answer alike.
///   all.program | getAllSymbols() | getSymbolOccurences() | isTextCaseInsensitive(u"abcde")
std::unique_ptr<Predicate<Identifier const&>> isTextCaseInsensitive(std::u16string text);

// --- How an identifier is used ---
//
// Both print as "IdUsePredicate"; the question they ask tells them apart.

/// Keeps the identifiers that are an input or output in the signature of a
/// function, method or anonymous function.
///   all.program | getAllSymbols() | getSymbolOccurences() | isUsedAsArgumentSignature()
std::unique_ptr<Predicate<Identifier const&>> isUsedAsArgumentSignature();

/// Keeps the identifiers that head the target of an assignment to a field,
/// `s` in `s.a = 1`.
///   all.program | getAllSymbols() | getSymbolOccurences() | isUsedAsDotAssignment()
std::unique_ptr<Predicate<Identifier const&>> isUsedAsDotAssignment();

/// Keeps the identifiers that spell a restricted external name (`eval`,
/// `evalin`, `load`, ...), by the spelling alone: a local variable of such a
/// name passes too.
///   all.program | getAllSymbols() | getSymbolOccurences() | isNameRestrictedExternal()
std::unique_ptr<Predicate<Identifier const&>> isNameRestrictedExternal();

// --- From an identifier to its symbol's occurrences ---

/// Gives every occurrence of the identifier's symbol, the first first. Only
/// for an identifier that has a symbol: put a question such as `isVariable()`
/// in front.
///   all.program | getAllSymbols() | getFirstSymbolOccurrence() | isVariable() | getOccurrences()
std::unique_ptr<SelectMany<Identifier const&, Identifier const&>> getOccurrences();

// --- The length of an identifier ---

/// The length of an identifier in 16-bit units, compared with a number:
/// `identifierLength{} < n` or `identifierLength{} > n`, either way round.
///   all.program | getAllSymbols() | getSymbolOccurences() | (identifierLength{} > 30)
struct identifierLength {};

/// Keeps the identifiers shorter (`<`) or longer (`>`) than `limit`. Both are
/// strict; `n > identifierLength{}` is the same stage as
/// `identifierLength{} < n`.
///   all.program | getAllSymbols() | getSymbolOccurences() | (5 > identifierLength{})
std::unique_ptr<Predicate<Identifier const&>> operator<(identifierLength, unsigned long limit);
std::unique_ptr<Predicate<Identifier const&>> operator>(unsigned long limit, identifierLength);
std::unique_ptr<Predicate<Identifier const&>> operator>(identifierLength, unsigned long limit);
std::unique_ptr<Predicate<Identifier const&>> operator<(unsigned long limit, identifierLength);

// --- Annotations of the class-object analysis ---

/// The identifiers that bear one annotation of the class-object analysis,
/// such as the object parameter of a method.
///   all.program | getAllSymbols() | getSymbolOccurences() | hasToskAnnotation{ca::core::ToskAnnotation::ObjectParameter}
struct hasToskAnnotation {
  ca::core::ToskAnnotation annotation;
};

/// Keeps the identifiers that bear the tag's annotation, as the class-object
/// analysis of an `AnalysisImpl` tells (another analysis is a std::bad_cast).
///   all.program | getAllSymbols() | getSymbolOccurences() | hasToskAnnotation{ca::core::ToskAnnotation::ObjectParameter}
template <template <class> class P>
requires isPipeHandle<P> P<Identifier const&>
operator|(P<Identifier const&> producer, hasToskAnnotation tag) {
  class ToskAnnotationPredicate final
      : public StageOf<ToskAnnotationPredicate, Predicate<Identifier const&>, ca::core::ToskAnnotation> {
   public:
    using StageOf<ToskAnnotationPredicate, Predicate<Identifier const&>, ca::core::ToskAnnotation>::StageOf;
    std::u16string description() const override {
      fl::i18n::TextStream text;
      text << u"HasToskAnnotation " << this->template parameter<0>();
      return text.str();
    }
    bool test(Identifier const& identifier, ca::Analysis const& analysis) override {
      auto const tosk = dynamic_cast<ca::clients::AnalysisImpl const&>(analysis).getToskAnalysis();
      return tosk->hasAnnotation(identifier, this->template parameter<0>());
    }
  };
  return std::move(producer) | std::make_unique<ToskAnnotationPredicate>(tag.annotation);
}

}  // namespace ca::rulesystem
