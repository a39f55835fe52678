#include "platform/analysis/analysis_impl.hpp"

#include <stdexcept>
#include <string>

#include "platform/callresolution/call.hpp"
#include "platform/codegeneration/code_generation_analysis.hpp"
#include "platform/context/context_analysis.hpp"
#include "platform/i18n/i18n.hpp"
#include "platform/tosk/tosk_analysis.hpp"
#include "platform/typevalue/type_value_analysis.hpp"
#include "platform/controlflow/control_flow.hpp"
#include "platform/nameresolution/symbol_table.hpp"
#include "platform/usedef/usedef_analysis.hpp"

namespace ca::clients {

namespace {
// Makes an analysis on first use and keeps it; a provider that makes none is
// a fault of the provider.
template <class T, class Make>
std::shared_ptr<T const> const& lazily(std::shared_ptr<T const>& slot, Make make, char const* what) {
  if (!slot) {
    slot = make();
    if (!slot) throw std::logic_error(std::string("AnalysisProvider made no ") + what);
  }
  return slot;
}
}  // namespace

namespace {
[[noreturn]] void notProvided(char const* what) {
  throw std::logic_error(std::string("this analysis provider computes no ") + what);
}
}  // namespace

std::shared_ptr<nameresolution::SymbolTable const> AnalysisProvider::makeSymbolTable(AnalysisImpl const&) const {
  notProvided("symbol table");
}
std::shared_ptr<usedef::UseDefAnalysis> AnalysisProvider::makeUseDefAnalysis(AnalysisImpl const&) const {
  notProvided("use-def analysis");
}
std::shared_ptr<controlflow::ControlFlowAnalysis> AnalysisProvider::makeControlFlowAnalysis(AnalysisImpl const&) const {
  notProvided("control-flow analysis");
}
std::shared_ptr<nameresolution::IdUseAnalysis const> AnalysisProvider::makeIdUseAnalysis(AnalysisImpl const&) const {
  notProvided("identifier-use analysis");
}
std::shared_ptr<callresolution::CallResolutionAnalysis const> AnalysisProvider::makeCallResolutionAnalysis(
    AnalysisImpl const&) const {
  notProvided("call-resolution analysis");
}

std::shared_ptr<void> AnalysisProvider::makeAnalysis(astapi::StringId analysisId, AnalysisImpl const&) const {
  throw std::logic_error("this analysis provider computes no " + fl::i18n::to_utf8(analysisId.getString()));
}

AnalysisImpl::AnalysisImpl(std::shared_ptr<astapi::SyntaxTree const> tree,
                           std::shared_ptr<AnalysisProvider const> provider, AnalysisOptions options)
    : tree_(std::move(tree)), provider_(std::move(provider)), options_(options) {
  if (!tree_ || !provider_) throw std::invalid_argument("AnalysisImpl needs a tree and a provider");
}

std::shared_ptr<nameresolution::SymbolTable const> const& AnalysisImpl::getSymbolTableImpl() const {
  return lazily(
      symbolTable_, [this] { return provider_->makeSymbolTable(*this); }, "symbol table");
}

std::shared_ptr<nameresolution::IdUseAnalysis const> const& AnalysisImpl::getIdUseAnalysis() const {
  return lazily(
      idUse_, [this] { return provider_->makeIdUseAnalysis(*this); }, "identifier-use analysis");
}

std::shared_ptr<callresolution::CallResolutionAnalysis const> const& AnalysisImpl::getCallResolutionAnalysis() const {
  return lazily(
      callResolution_, [this] { return provider_->makeCallResolutionAnalysis(*this); }, "call-resolution analysis");
}

std::shared_ptr<usedef::UseDefAnalysis> AnalysisImpl::makeUseDefAnalysis() const {
  return provider_->makeUseDefAnalysis(*this);
}

std::shared_ptr<controlflow::ControlFlowAnalysis> AnalysisImpl::makeControlFlowAnalysis() const {
  return provider_->makeControlFlowAnalysis(*this);
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
