#pragma once

// Analyses with answers chosen by the test, over trees made with TreeBuilder.

#include <functional>
#include <memory>
#include <vector>

#include "platform/analysis/analysis_impl.hpp"
#include "platform/nameresolution/symbol_table.hpp"
#include "platform/usedef/usedef_analysis.hpp"

namespace plexus::testing {

using UseDefRecords = std::vector<std::unique_ptr<ca::usedef::UseDefBase>>;

/// A symbol table without symbols.
class EmptySymbolTable final : public ca::nameresolution::SymbolTable {
 public:
  ca::nameresolution::SymbolTableEntry const* getSymbol(ca::ast::Identifier const&) const override {
    return nullptr;
  }
  std::vector<ca::nameresolution::SymbolTableEntry const*> getSymbols() const override { return {}; }
};

/// A provider whose use-def records come from a function of the test, and
/// which counts how often each analysis was made.
class TestProvider final : public ca::clients::AnalysisProvider {
 public:
  explicit TestProvider(std::function<UseDefRecords()> makeRecords = [] { return UseDefRecords(); })
      : makeRecords_(std::move(makeRecords)) {}

  std::shared_ptr<void> makeAnalysis(ca::astapi::StringId id,
                                     ca::clients::AnalysisImpl const& analysis) const override {
    if (id == ca::nameresolution::SymbolTable::GetAnalysisId()) {
      ++symbolTablesMade;
      return std::shared_ptr<ca::nameresolution::SymbolTable>(std::make_shared<EmptySymbolTable>());
    }
    if (id == ca::usedef::UseDefAnalysis::GetAnalysisId()) {
      ++useDefAnalysesMade;
      return std::make_shared<ca::usedef::UseDefAnalysis>(makeRecords_());
    }
    return AnalysisProvider::makeAnalysis(id, analysis);
  }

  mutable int symbolTablesMade = 0;
  mutable int useDefAnalysesMade = 0;

 private:
  std::function<UseDefRecords()> makeRecords_;
};

/// An analysis of `tree` with a provider of the test's choosing.
inline std::unique_ptr<ca::clients::AnalysisImpl> makeAnalysis(
    std::shared_ptr<ca::astapi::SyntaxTree const> tree,
    std::shared_ptr<TestProvider> provider = std::make_shared<TestProvider>()) {
  return std::make_unique<ca::clients::AnalysisImpl>(std::move(tree), std::move(provider));
}

}  // namespace plexus::testing
