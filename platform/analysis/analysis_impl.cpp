#include "platform/analysis/analysis_impl.hpp"

#include <stdexcept>

#include "platform/nameresolution/symbol_table.hpp"
#include "platform/usedef/usedef_analysis.hpp"

namespace ca::clients {

AnalysisImpl::AnalysisImpl(std::shared_ptr<astapi::SyntaxTree const> tree,
                           std::shared_ptr<AnalysisProvider const> provider)
    : tree_(std::move(tree)), provider_(std::move(provider)) {
  if (!tree_ || !provider_) throw std::invalid_argument("AnalysisImpl needs a tree and a provider");
}

std::shared_ptr<nameresolution::SymbolTable const> const& AnalysisImpl::getSymbolTableImpl() const {
  if (!symbolTable_) {
    symbolTable_ = provider_->makeSymbolTable(*this);
    if (!symbolTable_) throw std::logic_error("AnalysisProvider made no symbol table");
  }
  return symbolTable_;
}

std::shared_ptr<usedef::UseDefAnalysis> AnalysisImpl::makeUseDefAnalysis() const {
  return provider_->makeUseDefAnalysis(*this);
}

}  // namespace ca::clients
