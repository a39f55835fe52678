#include "rulesystem/rulesystem.hpp"
#include "tests/rulesystem/reference/reference_pipelines.hpp"

namespace plexus::testing {

using namespace ca::rulesystem;

std::vector<ReferencePipeline> identifierAndSymbolPipelines() {
  return {
      // The symbols of a program, of each sort.
      PLEXUS_PIPELINE(all.program | getAllSymbols()),
      PLEXUS_PIPELINE(all.program | getAllSymbols() | isSymbolVariable()),
      PLEXUS_PIPELINE(all.program | getAllSymbols() | isSymbolSharedVariable()),
      PLEXUS_PIPELINE(all.program | getAllSymbols() | isSymbolVariableUse()),
      PLEXUS_PIPELINE(all.program | getAllSymbols() | isSymbolExternal()),
      PLEXUS_PIPELINE(all.program | getAllSymbols() | isSymbolOutputVariable()),
      PLEXUS_PIPELINE(all.program | getAllSymbols() | isSymbolClass()),
      PLEXUS_PIPELINE(all.program | getAllSymbols() | isSymbolFunction()),
      PLEXUS_PIPELINE(all.program | getAllSymbols() | isSymbolMethod()),
      PLEXUS_PIPELINE(all.program | getAllSymbols() | isSymbolGlobalVariable()),
      PLEXUS_PIPELINE(all.program | getAllSymbols() | isSymbolPersistentVariable()),
      PLEXUS_PIPELINE(all.program | getAllSymbols() | isSymbolLastOutputVariable()),
      PLEXUS_PIPELINE(all.program | getAllSymbols() | isSymbolOutputVariable() | isSymbolLastOutputVariable()),

      // From symbols back to identifiers.
      PLEXUS_PIPELINE(all.program | getAllSymbols() | isSymbolVariable() | getSymbolOccurences() | isVariable()),
      PLEXUS_PIPELINE(all.program | getAllSymbols() | isSymbolFunction() | getFirstSymbolOccurrence()),
      PLEXUS_PIPELINE(all.program | getAllSymbols() | getFirstSymbolOccurrence() | isVariable() | getOccurrences()),
      PLEXUS_PIPELINE(all.program | getAllSymbols() | isSymbolExternal() | getSymbolOccurences() |
                      isNameRestrictedExternal()),

      // Names: keyed through one switch, next to the predicate that spells
      // the same name on the identifiers.
      PLEXUS_PIPELINE(all.program | getAllSymbols() | isSymbolName(std::set<std::u16string>{u"values", u"total"})),
      PLEXUS_PIPELINE(all.program | getAllSymbols() | isSymbolName(u"total")),
      PLEXUS_PIPELINE(all.program | getAllSymbols() | isSymbolName(u"disp") | getSymbolOccurences()),
      PLEXUS_PIPELINE(all.program | getAllSymbols() | isSymbolName(u"obj") | getFirstSymbolOccurrence()),
      PLEXUS_PIPELINE(all.program | getAllSymbols() | getSymbolOccurences() | isStringId(u"disp")),
      PLEXUS_PIPELINE(all.program | getAllSymbols() | getSymbolOccurences() | isStringId(u"total")),
      PLEXUS_PIPELINE(all.program | getAllSymbols() | getSymbolOccurences() |
                      isStringId(std::vector<std::u16string>{u"values", u"n"})),
      // The same names in the other order: another stage that answers alike.
      PLEXUS_PIPELINE(all.program | getAllSymbols() | getSymbolOccurences() |
                      isStringId(std::vector<std::u16string>{u"n", u"values"})),
      PLEXUS_PIPELINE(all.program | getAllSymbols() | getSymbolOccurences() | isTextCaseInsensitive(u"abcde")),
      PLEXUS_PIPELINE(all.program | getAllSymbols() | getSymbolOccurences() | isTextCaseInsensitive(u"ABCDE")),

      // What the symbol of an identifier is.
      PLEXUS_PIPELINE(all.program | getAllSymbols() | getSymbolOccurences() | isVariable()),
      PLEXUS_PIPELINE(all.program | getAllSymbols() | getSymbolOccurences() | isInputVariable()),
      PLEXUS_PIPELINE(all.program | getAllSymbols() | getSymbolOccurences() | isSharedVariable()),
      PLEXUS_PIPELINE(all.program | getAllSymbols() | getSymbolOccurences() | isNestedFunction()),
      PLEXUS_PIPELINE(all.program | getAllSymbols() | getSymbolOccurences() | isLocalFunction()),
      PLEXUS_PIPELINE(all.program | getAllSymbols() | getSymbolOccurences() | isMainFunction()),
      PLEXUS_PIPELINE(all.program | getAllSymbols() | getSymbolOccurences() | isExternal()),
      PLEXUS_PIPELINE(all.program | getAllSymbols() | getSymbolOccurences() | isGlobalVariable()),
      PLEXUS_PIPELINE(all.program | getAllSymbols() | getSymbolOccurences() | isPersistentVariable()),
      PLEXUS_PIPELINE(all.program | getAllSymbols() | getSymbolOccurences() | isVariableWithoutAnyDefinition()),

      // How an identifier is used: two stages that print alike.
      PLEXUS_PIPELINE(all.program | getAllSymbols() | getSymbolOccurences() | isUsedAsArgumentSignature()),
      PLEXUS_PIPELINE(all.program | getAllSymbols() | getSymbolOccurences() | isUsedAsDotAssignment()),
      PLEXUS_PIPELINE(all.program | getAllSymbols() | getSymbolOccurences() | isNameRestrictedExternal()),

      // Lengths, each bound written both ways round.
      PLEXUS_PIPELINE(all.program | getAllSymbols() | getSymbolOccurences() | (identifierLength{} > 30)),
      PLEXUS_PIPELINE(all.program | getAllSymbols() | getSymbolOccurences() | (30 < identifierLength{})),
      PLEXUS_PIPELINE(all.program | getAllSymbols() | getSymbolOccurences() | (5 > identifierLength{})),
      PLEXUS_PIPELINE(all.program | getAllSymbols() | getSymbolOccurences() | (identifierLength{} < 5)),
      PLEXUS_PIPELINE(all.program | getAllSymbols() | getFirstSymbolOccurrence() | (identifierLength{} < 2)),

      // The class-object analysis's annotation of method objects.
      PLEXUS_PIPELINE(all.program | getAllSymbols() | getSymbolOccurences() |
                      hasToskAnnotation{ca::core::ToskAnnotation::ObjectParameter}),
  };
}

}  // namespace plexus::testing
