#include "platform/analysis/analysis_impl.hpp"

#include <stdexcept>
#include <string>
#include <utility>

#include "platform/callresolution/call.hpp"
#include "platform/codegeneration/code_generation_analysis.hpp"
#include "platform/context/context_analysis.hpp"
#include "platform/i18n/i18n.hpp"
#include "platform/nameresolution/symbol_table.hpp"
#include "platform/tosk/tosk_analysis.hpp"
#include "platform/typevalue/type_value_analysis.hpp"

namespace ca::clients {

std::shared_ptr<void> AnalysisProvider::makeAnalysis(astapi::StringId analysisId, AnalysisImpl const&) const {
  throw std::logic_error("this analysis provider computes no " + fl::i18n::to_utf8(analysisId.getString()));
}

AnalysisImpl::AnalysisImpl(std::shared_ptr<astapi::SyntaxTree const> tree,
                           std::shared_ptr<AnalysisProvider const> provider, AnalysisOptions options)
    : tree_(std::move(tree)), provider_(std::move(provider)), options_(std::move(options)) {
  if (!tree_ || !provider_) throw std::invalid_argument("AnalysisImpl needs a tree and a provider");
}

nameresolution::SymbolTable const* AnalysisImpl::getSymbolTable() const { return &get<nameresolution::SymbolTable>(); }

std::shared_ptr<nameresolution::SymbolTable const> AnalysisImpl::getSymbolTableImpl() const {
  return getHandle<nameresolution::SymbolTable>();
}
std::shared_ptr<nameresolution::IdUseAnalysis const> AnalysisImpl::getIdUseAnalysis() const {
  return getHandle<nameresolution::IdUseAnalysis>();
}
std::shared_ptr<callresolution::CallResolutionAnalysis const> AnalysisImpl::getCallResolutionAnalysis() const {
  return getHandle<callresolution::CallResolutionAnalysis>();
}
std::shared_ptr<typevalue::TypeValueAnalysis> AnalysisImpl::getTypeValueAnalysis() const {
  return getHandle<typevalue::TypeValueAnalysis>();
}
std::shared_ptr<tosk::ToskAnalysis> AnalysisImpl::getToskAnalysis() const { return getHandle<tosk::ToskAnalysis>(); }
std::shared_ptr<codegeneration::CodeGenerationAnalysis> AnalysisImpl::getCodeGenerationAnalysis() const {
  return getHandle<codegeneration::CodeGenerationAnalysis>();
}
std::shared_ptr<context::ContextAnalysis> AnalysisImpl::getContextAnalysis() const {
  return getHandle<context::ContextAnalysis>();
}

}  // namespace ca::clients
