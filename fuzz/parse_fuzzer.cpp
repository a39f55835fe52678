// libFuzzer target: no input may crash, hang or exhaust the stack of the
// front end. Whatever tree it builds must be walkable, and a file without
// syntax errors must go through every analysis.

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

#include "frontend/analyze.hpp"
#include "frontend/tree_dump.hpp"
#include "platform/callresolution/call.hpp"
#include "platform/controlflow/control_flow.hpp"
#include "platform/nameresolution/symbol_table.hpp"
#include "platform/usedef/usedef_analysis.hpp"

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
  std::string_view const source(reinterpret_cast<char const*>(data), size);
  frontend::AnalysisResult const result = frontend::analyze(source, "fuzz.m");
  if (result.analysis == nullptr) return 0;
  ca::clients::AnalysisImpl const& analysis = *result.analysis;
  std::string const dump = frontend::dumpTree(*analysis.getProgram());
  if (dump.empty() || dump.front() != '(') __builtin_trap();

  auto const* table = analysis.getSymbolTable();
  for (auto const* symbol : table->getSymbols()) {
    // Every occurrence of a symbol refers back to it.
    for (auto const* occurrence : symbol->getOccurrences()) {
      if (table->getSymbol(*occurrence) != symbol) __builtin_trap();
    }
  }
  auto const& calls = *analysis.getCallResolutionAnalysis();
  std::vector<ca::ast::Node const*> pending{analysis.getProgram()};
  while (!pending.empty()) {
    ca::ast::Node const* node = pending.back();
    pending.pop_back();
    if (calls.getCallInfo(*node).getNode() != node) __builtin_trap();
    calls.getClosestCall(*node);
    lf::astapi::forEachChild(*node, [&pending](ca::ast::Node const* child) { pending.push_back(child); });
  }
  analysis.get<ca::controlflow::ControlFlowAnalysis>();
  for (auto const* record : analysis.get<ca::usedef::UseDefAnalysis>().getAllUseDefs()) {
    if (record->getIdentifier() == nullptr) __builtin_trap();
  }
  return 0;
}
