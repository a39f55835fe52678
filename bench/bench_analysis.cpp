#include "bench/bench_analysis.hpp"

#include <utility>

#include "bench/use_def_records.hpp"
#include "platform/nameresolution/symbol_table.hpp"
#include "platform/usedef/usedef_analysis.hpp"

namespace plexus::bench {

namespace {

class EmptySymbolTable final : public ca::nameresolution::SymbolTable {
 public:
  ca::nameresolution::SymbolTableEntry const* getSymbol(ca::ast::Identifier const&) const override { return nullptr; }
  std::vector<ca::nameresolution::SymbolTableEntry const*> getSymbols() const override { return {}; }
};

class BenchAnalysisProvider final : public ca::clients::AnalysisProvider {
 public:
  std::shared_ptr<void> makeAnalysis(ca::astapi::StringId id,
                                     ca::clients::AnalysisImpl const& analysis) const override {
    if (id == ca::nameresolution::SymbolTable::GetAnalysisId()) {
      return std::shared_ptr<ca::nameresolution::SymbolTable>(std::make_shared<EmptySymbolTable>());
    }
    if (id == ca::usedef::UseDefAnalysis::GetAnalysisId()) {
      return std::make_shared<ca::usedef::UseDefAnalysis>(collectUseDefs(*analysis.getProgram()));
    }
    return AnalysisProvider::makeAnalysis(id, analysis);
  }
};

}  // namespace

std::unique_ptr<ca::clients::AnalysisImpl> makeBenchAnalysis(std::shared_ptr<ca::astapi::SyntaxTree const> tree) {
  return std::make_unique<ca::clients::AnalysisImpl>(std::move(tree), std::make_shared<BenchAnalysisProvider>());
}

}  // namespace plexus::bench
