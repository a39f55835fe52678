#include "rulesystem/syntax/identifiers.hpp"

#include <functional>
#include <set>
#include <type_traits>
#include <utility>

#include "platform/ast/restricted_externals.hpp"
#include "platform/ast/string_id.hpp"
#include "platform/nameresolution/symbol_table.hpp"
#include "platform/utils/invariant.hpp"

namespace ca::rulesystem {

namespace {

using ca::nameresolution::IdUseAnalysis;
using ca::nameresolution::SymbolTableEntry;

using EntryQuestion = bool (SymbolTableEntry::*)() const;
using IdUseQuestion = bool (IdUseAnalysis::*)(Identifier const&) const;

/// One question asked of the symbol of an identifier. The ten factories
/// differ only in the member they ask, virtual or not; stages with the same
/// member are one, so the description is held but not compared.
class IdentifierSymbolPredicate final : public StageOf<IdentifierSymbolPredicate, Predicate<Identifier const&>,
                                                       EntryQuestion, Uncompared<std::u16string>> {
 public:
  using StageOf::StageOf;
  std::u16string description() const override { return parameter<1>().value; }
  bool test(Identifier const& identifier, ca::Analysis const& analysis) override {
    // Lenient where the symbol stages are strict: no symbol, or a symbol that
    // is no entry, fails the test. (Here ca::Symbol is the entry class, so
    // only the first can happen.)
    auto const* entry = dynamic_cast<SymbolTableEntry const*>(analysis.getSymbolTable()->getSymbol(identifier));
    if (entry == nullptr) return false;
    return (entry->*parameter<0>())();
  }
};

std::unique_ptr<Predicate<Identifier const&>> symbolQuestion(EntryQuestion question, std::u16string description) {
  return std::make_unique<IdentifierSymbolPredicate>(question, std::move(description));
}

/// One question asked of the identifier-use analysis; both questions print
/// alike and are told apart by the member they ask.
class IdUsePredicate final : public StageOf<IdUsePredicate, Predicate<Identifier const&>, IdUseQuestion> {
 public:
  using StageOf::StageOf;
  std::u16string description() const override { return u"IdUsePredicate"; }
  bool test(Identifier const& identifier, ca::Analysis const& analysis) override {
    std::shared_ptr<IdUseAnalysis const> const uses =
        dynamic_cast<ca::clients::AnalysisImpl const&>(analysis).getIdUseAnalysis();
    return ((*uses).*parameter<0>())(identifier);
  }
};

/// The length of an identifier against a limit, strictly below
/// (`std::less`) or above (`std::greater`).
template <class Compare>
class IdentifierLengthPredicate final
    : public StageOf<IdentifierLengthPredicate<Compare>, Predicate<Identifier const&>, unsigned long> {
 public:
  using StageOf<IdentifierLengthPredicate<Compare>, Predicate<Identifier const&>, unsigned long>::StageOf;
  std::u16string description() const override {
    fl::i18n::TextStream text;
    text << u"IdentifierLength " << (std::is_same_v<Compare, std::less<unsigned long>> ? u"<" : u">") << u" "
         << this->template parameter<0>();
    return text.str();
  }
  bool test(Identifier const& identifier, ca::Analysis const&) override {
    return Compare{}(identifier.getText().size(), this->template parameter<0>());
  }
};

using ShorterThan = IdentifierLengthPredicate<std::less<unsigned long>>;
using LongerThan = IdentifierLengthPredicate<std::greater<unsigned long>>;

}  // namespace

std::unique_ptr<Predicate<Identifier const&>> isVariable() {
  return symbolQuestion(&SymbolTableEntry::isVariable, u"IsVariable");
}
std::unique_ptr<Predicate<Identifier const&>> isInputVariable() {
  return symbolQuestion(&SymbolTableEntry::isInputVariable, u"IsInputVariable");
}
std::unique_ptr<Predicate<Identifier const&>> isSharedVariable() {
  return symbolQuestion(&SymbolTableEntry::isSharedVariable, u"IsSharedVariable");
}
std::unique_ptr<Predicate<Identifier const&>> isNestedFunction() {
  return symbolQuestion(&SymbolTableEntry::isNestedFunction, u"IsNestedFunction");
}
std::unique_ptr<Predicate<Identifier const&>> isLocalFunction() {
  return symbolQuestion(&SymbolTableEntry::isLocalFunction, u"IsLocalFunction");
}
std::unique_ptr<Predicate<Identifier const&>> isMainFunction() {
  return symbolQuestion(&SymbolTableEntry::isMainFunction, u"IsMainFunction");
}
std::unique_ptr<Predicate<Identifier const&>> isExternal() {
  return symbolQuestion(&SymbolTableEntry::isExternal, u"IsExternal");
}
std::unique_ptr<Predicate<Identifier const&>> isGlobalVariable() {
  return symbolQuestion(&SymbolTableEntry::isGlobalVariable, u"IsGlobalVariable");
}
std::unique_ptr<Predicate<Identifier const&>> isPersistentVariable() {
  return symbolQuestion(&SymbolTableEntry::isPersistentVariable, u"IsPersistentVariable");
}
std::unique_ptr<Predicate<Identifier const&>> isVariableWithoutAnyDefinition() {
  // Printed as the listings of the graph have always shown it.
  return symbolQuestion(&SymbolTableEntry::isVariableUse, u"isVariableWithoutDefinition");
}

std::unique_ptr<Predicate<Identifier const&>> isStringId(std::vector<std::u16string> names) {
  class IsStringId final
      : public StageOf<IsStringId, Predicate<Identifier const&>, std::vector<std::u16string>> {
   public:
    using StageOf::StageOf;
    std::u16string description() const override {
      std::u16string text = u"IsStringId";
      for (std::u16string const& name : parameter<0>()) text += u" " + name;
      return text;
    }
    bool test(Identifier const& identifier, ca::Analysis const&) override {
      ca::astapi::StringId const spelled = identifier.getStringId();
      for (std::u16string const& name : parameter<0>()) {
        if (ca::astapi::StringId(name) == spelled) return true;
      }
      return false;
    }
  };
  return std::make_unique<IsStringId>(std::move(names));
}

std::unique_ptr<Predicate<Identifier const&>> isStringId(std::u16string name) {
  return isStringId(std::vector<std::u16string>{std::move(name)});
}

std::unique_ptr<Predicate<Identifier const&>> isTextCaseInsensitive(std::u16string text) {
  // Compared with regard to case, so texts that differ only in case are two
  // stages; the test itself ignores case.
  class IsTextCaseInsensitive final
      : public StageOf<IsTextCaseInsensitive, Predicate<Identifier const&>, std::u16string> {
   public:
    using StageOf::StageOf;
    std::u16string description() const override { return u"IsTextCaseInsensitive " + parameter<0>(); }
    bool test(Identifier const& identifier, ca::Analysis const&) override {
      ca::astapi::TextView const spelled = identifier.getText();
      std::u16string const& text = parameter<0>();
      return fl::i18n::detail::compare(spelled.data(), spelled.size(), text.data(), text.size(),
                                       fl::i18n::case_insensitive{}) == 0;
    }
  };
  return std::make_unique<IsTextCaseInsensitive>(std::move(text));
}

std::unique_ptr<Predicate<Identifier const&>> isUsedAsArgumentSignature() {
  return std::make_unique<IdUsePredicate>(&IdUseAnalysis::isArgumentSignature);
}

std::unique_ptr<Predicate<Identifier const&>> isUsedAsDotAssignment() {
  return std::make_unique<IdUsePredicate>(&IdUseAnalysis::isDotAssignment);
}

std::unique_ptr<Predicate<Identifier const&>> isNameRestrictedExternal() {
  class IsNameRestrictedExternal final : public StageOf<IsNameRestrictedExternal, Predicate<Identifier const&>> {
   public:
    std::u16string description() const override { return u"IsNameRestrictedExternal"; }
    bool test(Identifier const& identifier, ca::Analysis const&) override {
      // Interned once, so that each test is a search among words.
      static std::set<ca::astapi::StringId> const restricted = [] {
        std::set<ca::astapi::StringId> ids;
        for (std::u16string const& name : lf::astapi::getRestrictedExternals()) ids.insert(ca::astapi::StringId(name));
        return ids;
      }();
      return restricted.contains(identifier.getStringId());
    }
  };
  return std::make_unique<IsNameRestrictedExternal>();
}

std::unique_ptr<SelectMany<Identifier const&, Identifier const&>> getOccurrences() {
  class GetOccurrences final : public StageOf<GetOccurrences, SelectMany<Identifier const&, Identifier const&>> {
   public:
    std::u16string description() const override { return u"GetOccurrences"; }
    void select(Identifier const& identifier, ca::Analysis const& analysis,
                std::function<void(Identifier const&)> const& yield) const override {
      ca::Symbol const* const symbol = analysis.getSymbolTable()->getSymbol(identifier);
      // A rule puts a question about the symbol in front; an identifier
      // without one is outside this stage's contract.
      PLEXUS_INVARIANT(symbol != nullptr, "getOccurrences() was given an identifier without a symbol");
      if (symbol == nullptr) return;
      for (Identifier const* occurrence : symbol->getOccurrences()) yield(*occurrence);
    }
  };
  return std::make_unique<GetOccurrences>();
}

std::unique_ptr<Predicate<Identifier const&>> operator<(identifierLength, unsigned long limit) {
  return std::make_unique<ShorterThan>(limit);
}
std::unique_ptr<Predicate<Identifier const&>> operator>(unsigned long limit, identifierLength) {
  return std::make_unique<ShorterThan>(limit);
}
std::unique_ptr<Predicate<Identifier const&>> operator>(identifierLength, unsigned long limit) {
  return std::make_unique<LongerThan>(limit);
}
std::unique_ptr<Predicate<Identifier const&>> operator<(unsigned long limit, identifierLength) {
  return std::make_unique<LongerThan>(limit);
}

}  // namespace ca::rulesystem
