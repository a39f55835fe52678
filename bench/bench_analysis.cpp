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
  std::shared_ptr<ca::nameresolution::SymbolTable const> makeSymbolTable(
      ca::clients::AnalysisImpl const&) const override {
    return std::make_shared<EmptySymbolTable>();
  }
  std::shared_ptr<ca::usedef::UseDefAnalysis> makeUseDefAnalysis(
      ca::clients::AnalysisImpl const& analysis) const override {
    return std::make_shared<ca::usedef::UseDefAnalysis>(collectUseDefs(*analysis.getProgram()));
  }
};

}  // namespace

std::unique_ptr<ca::clients::AnalysisImpl> makeBenchAnalysis(std::shared_ptr<ca::astapi::SyntaxTree const> tree) {
  return std::make_unique<ca::clients::AnalysisImpl>(std::move(tree), std::make_shared<BenchAnalysisProvider>());
}

}  // namespace plexus::bench
