#include "frontend/analysis/registered_analyses.hpp"

#include "frontend/analysis/call_resolution.hpp"
#include "frontend/analysis/class_objects.hpp"
#include "frontend/analysis/control_flow.hpp"
#include "frontend/analysis/name_resolution.hpp"
#include "frontend/analysis/use_def.hpp"
#include "platform/callresolution/call.hpp"
#include "platform/controlflow/control_flow.hpp"
#include "platform/nameresolution/symbol_table.hpp"
#include "platform/usedef/usedef_analysis.hpp"

namespace frontend {

namespace {

using ca::clients::AnalysisImpl;

// The table: one line per analysis. Symbols and identifier uses are one
// resolution of names, `FileSymbols`, itself made once through `get`.
ca::clients::AnalysisRegistry makeRegistry() {
  ca::clients::AnalysisRegistry registry;
  registry.add<ca::nameresolution::SymbolTable>([](AnalysisImpl const& a) { return a.getHandle<FileSymbols>(); })
      .add<ca::nameresolution::IdUseAnalysis>([](AnalysisImpl const& a) { return a.getHandle<FileSymbols>(); })
      .add<ca::callresolution::CallResolutionAnalysis>(
          [](AnalysisImpl const& a) { return std::make_shared<FileCalls>(a.getHandle<FileSymbols>()); })
      .add<ca::controlflow::ControlFlowAnalysis>(
          [](AnalysisImpl const& a) { return buildControlFlow(*a.getProgram()); })
      .add<ca::usedef::UseDefAnalysis>([](AnalysisImpl const& a) {
        return buildUseDefs(*a.getProgram(), a.get<FileSymbols>(), a.get<ca::controlflow::ControlFlowAnalysis>());
      })
      .add<ca::tosk::ToskAnalysis>([](AnalysisImpl const& a) {
        return std::make_shared<ClassObjects>(*a.getProgram(), a.getFileType(), a.getSymbolTableImpl(),
                                              a.getAnalysisOptions().customAttributes);
      });
  return registry;
}

}  // namespace

std::shared_ptr<ca::clients::AnalysisRegistry const> registeredAnalyses() {
  static std::shared_ptr<ca::clients::AnalysisRegistry const> const registry =
      std::make_shared<ca::clients::AnalysisRegistry const>(makeRegistry());
  return registry;
}

}  // namespace frontend
