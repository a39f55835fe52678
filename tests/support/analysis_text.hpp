#pragma once

// Analyses of source text, written out as text for tests to compare.

#include <string>
#include <vector>

#include "frontend/analyze.hpp"
#include "platform/callresolution/call.hpp"
#include "platform/i18n/i18n.hpp"
#include "platform/nameresolution/symbol_table.hpp"

namespace plexus::testing {

/// Analyses source text that must be free of syntax errors.
inline frontend::AnalysisResult analyzed(std::string const& source, std::string const& path = "t.m") {
  frontend::AnalysisResult result = frontend::analyze(source, path);
  if (result.analysis == nullptr) throw std::runtime_error("source did not parse: " + source);
  return result;
}

inline std::string text(ca::astapi::TextView view) { return fl::i18n::to_utf8(ca::astapi::toStdView(view)); }

/// "name: Flag Flag ... (n)" with the number of occurrences.
inline std::string describe(ca::nameresolution::SymbolTableEntry const& symbol) {
  using E = ca::nameresolution::SymbolTableEntry;
  static constexpr std::pair<std::uint32_t, char const*> names[] = {{E::Variable, "Variable"},
                                                                    {E::InputVariable, "Input"},
                                                                    {E::OutputVariable, "Output"},
                                                                    {E::GlobalVariable, "Global"},
                                                                    {E::PersistentVariable, "Persistent"},
                                                                    {E::SharedVariable, "Shared"},
                                                                    {E::VariableUse, "Undefined"},
                                                                    {E::Function, "Function"},
                                                                    {E::MainFunction, "Main"},
                                                                    {E::LocalFunction, "Local"},
                                                                    {E::NestedFunction, "Nested"},
                                                                    {E::Method, "Method"},
                                                                    {E::Constructor, "Constructor"},
                                                                    {E::Class, "Class"},
                                                                    {E::External, "External"}};
  std::string out = text(symbol.getName()) + ":";
  for (auto const& [flag, name] : names) {
    if ((symbol.getFlags() & flag) != 0) out += std::string(" ") + name;
  }
  return out + " (" + std::to_string(symbol.getOccurrences().size()) + ")";
}

/// Every symbol of a file, described, in the table's order.
inline std::vector<std::string> symbolsOf(std::string const& source) {
  auto result = analyzed(source);
  std::vector<std::string> out;
  for (auto const* symbol : result.analysis->getSymbolTable()->getSymbols()) out.push_back(describe(*symbol));
  return out;
}

}  // namespace plexus::testing
