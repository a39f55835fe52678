#include "rulesystem/syntax/symbols.hpp"

#include <functional>
#include <utility>

#include "platform/ast/node_cast.hpp"
#include "platform/utils/invariant.hpp"
#include "rulesystem/graph/stage_of.hpp"
#include "rulesystem/graph/uncompared.hpp"

namespace ca::rulesystem {

namespace {

using ca::nameresolution::SymbolTableEntry;

using EntryQuestion = bool (SymbolTableEntry::*)() const;

/// One question asked of a symbol-table entry. The ten factories differ only
/// in the member they ask, virtual or not; stages with the same member are
/// one, so the description is held but not compared. Its members share their
/// numbering with the identifier questions, which hold the same pointer type.
class SymbolPredicate final : public StageOf<SymbolPredicate, Predicate<ca::Symbol const&>, EntryQuestion,
                                             Uncompared<std::u16string>> {
 public:
  using StageOf::StageOf;
  std::u16string description() const override { return parameter<1>().value; }
  bool test(ca::Symbol const& symbol, ca::Analysis const&) override {
    // Strict where the identifier questions are lenient: a symbol that is no
    // entry is a std::bad_cast, not a false.
    auto const& entry = dynamic_cast<SymbolTableEntry const&>(symbol);
    return (entry.*parameter<0>())();
  }
};

std::unique_ptr<Predicate<ca::Symbol const&>> entryQuestion(EntryQuestion question, std::u16string description) {
  return std::make_unique<SymbolPredicate>(question, std::move(description));
}

}  // namespace

std::unique_ptr<Predicate<ca::Symbol const&>> isSymbolVariable() {
  return entryQuestion(&SymbolTableEntry::isVariable, u"IsSymbolVariable");
}
std::unique_ptr<Predicate<ca::Symbol const&>> isSymbolSharedVariable() {
  // The words stand in this order in the listings of the graph.
  return entryQuestion(&SymbolTableEntry::isSharedVariable, u"IsSharedSymbolVariable");
}
std::unique_ptr<Predicate<ca::Symbol const&>> isSymbolVariableUse() {
  return entryQuestion(&SymbolTableEntry::isVariableUse, u"IsSymbolVariableUse");
}
std::unique_ptr<Predicate<ca::Symbol const&>> isSymbolExternal() {
  return entryQuestion(&SymbolTableEntry::isExternal, u"IsSymbolExternal");
}
std::unique_ptr<Predicate<ca::Symbol const&>> isSymbolOutputVariable() {
  return entryQuestion(&SymbolTableEntry::isOutputVariable, u"IsSymbolOutputVariable");
}
std::unique_ptr<Predicate<ca::Symbol const&>> isSymbolClass() {
  return entryQuestion(&SymbolTableEntry::isClass, u"IsSymbolClass");
}
std::unique_ptr<Predicate<ca::Symbol const&>> isSymbolFunction() {
  return entryQuestion(&SymbolTableEntry::isFunction, u"IsSymbolFunction");
}
std::unique_ptr<Predicate<ca::Symbol const&>> isSymbolMethod() {
  return entryQuestion(&SymbolTableEntry::isMethod, u"IsSymbolMethod");
}
std::unique_ptr<Predicate<ca::Symbol const&>> isSymbolGlobalVariable() {
  return entryQuestion(&SymbolTableEntry::isGlobalVariable, u"IsSymbolGlobalVariable");
}
std::unique_ptr<Predicate<ca::Symbol const&>> isSymbolPersistentVariable() {
  return entryQuestion(&SymbolTableEntry::isPersistentVariable, u"IsSymbolPersistentVariable");
}

std::unique_ptr<Predicate<ca::Symbol const&>> isSymbolLastOutputVariable() {
  class IsSymbolLastOutputVariable final
      : public StageOf<IsSymbolLastOutputVariable, Predicate<ca::Symbol const&>> {
   public:
    std::u16string description() const override { return u"IsSymbolLastOutputVariable"; }
    bool test(ca::Symbol const& symbol, ca::Analysis const&) override {
      auto const& entry = dynamic_cast<SymbolTableEntry const&>(symbol);
      if (!entry.isOutputVariable()) return false;
      // The first occurrence of an output is its place in the output list,
      // which comes before any use; only that one is looked at.
      auto const occurrences = entry.getOccurrences();
      PLEXUS_INVARIANT(!occurrences.empty(), "a symbol of the table has an occurrence");
      if (occurrences.empty()) return false;
      Identifier const* const first = occurrences.front();
      // An output of a nested function that the enclosing function shares
      // first occurs in the enclosing body, under no function: it is not
      // judged by a later occurrence, and a valid program must not stop the
      // run, so it does not pass.
      auto const* const function = lf::astapi::dynCast<Function>(first->getParent());
      if (function == nullptr) return false;
      auto const outputs = function->getOutputs();
      return !outputs.empty() && outputs.back() == first;
    }
  };
  return std::make_unique<IsSymbolLastOutputVariable>();
}

std::unique_ptr<SelectMany<Program const&, ca::Symbol const&>> getAllSymbols() {
  class GetAllSymbols final : public StageOf<GetAllSymbols, SelectMany<Program const&, ca::Symbol const&>> {
   public:
    std::u16string description() const override { return u"GetAllSymbols"; }
    void select(Program const&, ca::Analysis const& analysis,
                std::function<void(ca::Symbol const&)> const& yield) const override {
      // The whole table of the analysis: the program item only asks.
      for (ca::Symbol const* symbol : analysis.getSymbolTable()->getSymbols()) yield(*symbol);
    }
  };
  return std::make_unique<GetAllSymbols>();
}

std::unique_ptr<SelectMany<ca::Symbol const&, Identifier const&>> getSymbolOccurences() {
  class GetSymbolOccurences final
      : public StageOf<GetSymbolOccurences, SelectMany<ca::Symbol const&, Identifier const&>> {
   public:
    std::u16string description() const override { return u"GetSymbolOccurrences"; }
    void select(ca::Symbol const& symbol, ca::Analysis const&,
                std::function<void(Identifier const&)> const& yield) const override {
      for (Identifier const* occurrence : symbol.getOccurrences()) yield(*occurrence);
    }
  };
  return std::make_unique<GetSymbolOccurences>();
}

std::unique_ptr<Transform<ca::Symbol const&, Identifier const&>> getFirstSymbolOccurrence() {
  // Named, and printed, with the small letter of the factory.
  class getFirstSymbolOccurrence final
      : public StageOf<getFirstSymbolOccurrence, Transform<ca::Symbol const&, Identifier const&>> {
   public:
    std::u16string description() const override { return u"getFirstSymbolOccurrence"; }
    Identifier const& transform(ca::Symbol const& symbol, ca::Analysis const&) const override {
      auto const occurrences = symbol.getOccurrences();
      PLEXUS_INVARIANT(!occurrences.empty(), "getFirstSymbolOccurrence() was given a symbol without occurrences");
      return *occurrences.front();
    }
  };
  return std::make_unique<getFirstSymbolOccurrence>();
}

std::unique_ptr<Switchable<ca::Symbol const&, std::u16string>> isSymbolName(std::set<std::u16string> const& names) {
  // The key of the one switch that every name question behind a producer
  // shares.
  class GetSymbolName final : public StageOf<GetSymbolName, Transform<ca::Symbol const&, std::u16string>> {
   public:
    std::u16string description() const override { return u"GetSymbolName"; }
    std::u16string transform(ca::Symbol const& symbol, ca::Analysis const&) const override {
      ca::astapi::TextView const name = symbol.getName();
      return std::u16string(name.data(), name.size());
    }
  };
  class IsSymbolName final : public Switchable<ca::Symbol const&, std::u16string> {
   public:
    explicit IsSymbolName(std::set<std::u16string> names) : names_(std::move(names)) {}
    std::unique_ptr<Transform<ca::Symbol const&, std::u16string>> getTransform() const override {
      return std::make_unique<GetSymbolName>();
    }
    std::set<std::u16string> getKeys() const override { return names_; }

   private:
    std::set<std::u16string> names_;
  };
  return std::make_unique<IsSymbolName>(names);
}

std::unique_ptr<Switchable<ca::Symbol const&, std::u16string>> isSymbolName(std::u16string const& name) {
  return isSymbolName(std::set<std::u16string>{name});
}

}  // namespace ca::rulesystem
