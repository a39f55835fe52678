#include "frontend/analyze.hpp"

#include <fmt/format.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <fstream>
#include <sstream>
#include <string>

#include "frontend/analysis/call_resolution.hpp"
#include "frontend/analysis/control_flow.hpp"
#include "frontend/analysis/name_resolution.hpp"
#include "frontend/analysis/use_def.hpp"
#include "frontend/parse.hpp"

namespace frontend {

namespace {

// The analyses of one file, made by the front end. Symbols and identifier
// uses come from one resolution of names, made once.
class FrontendAnalyses final : public ca::clients::AnalysisProvider {
 public:
  std::shared_ptr<ca::nameresolution::SymbolTable const> makeSymbolTable(
      ca::clients::AnalysisImpl const& analysis) const override {
    return symbols(analysis);
  }
  std::shared_ptr<ca::nameresolution::IdUseAnalysis const> makeIdUseAnalysis(
      ca::clients::AnalysisImpl const& analysis) const override {
    return symbols(analysis);
  }
  std::shared_ptr<ca::callresolution::CallResolutionAnalysis const> makeCallResolutionAnalysis(
      ca::clients::AnalysisImpl const& analysis) const override {
    return std::make_shared<FileCalls>(symbols(analysis));
  }
  std::shared_ptr<ca::controlflow::ControlFlowAnalysis> makeControlFlowAnalysis(
      ca::clients::AnalysisImpl const& analysis) const override {
    return buildControlFlow(*analysis.getProgram());
  }
  std::shared_ptr<ca::usedef::UseDefAnalysis> makeUseDefAnalysis(
      ca::clients::AnalysisImpl const& analysis) const override {
    return buildUseDefs(*analysis.getProgram(), *symbols(analysis),
                        analysis.get<ca::controlflow::ControlFlowAnalysis>());
  }

 private:
  std::shared_ptr<FileSymbols const> const& symbols(ca::clients::AnalysisImpl const& analysis) const {
    if (!symbols_) symbols_ = FileSymbols::build(*analysis.getProgram(), analysis.getFileType());
    return symbols_;
  }

  mutable std::shared_ptr<FileSymbols const> symbols_;
};

}  // namespace

bool AnalysisResult::hasErrors() const {
  return std::any_of(diagnostics.begin(), diagnostics.end(),
                     [](Diagnostic const& d) { return d.severity == Severity::Error; });
}

AnalysisResult analyze(std::string_view source, std::string_view path) {
  ParseResult parsed = parse(source, path);
  AnalysisResult result;
  result.diagnostics = std::move(parsed.diagnostics);
  if (parsed.tree != nullptr && !result.hasErrors()) {
    result.analysis =
        std::make_shared<ca::clients::AnalysisImpl>(std::move(parsed.tree), std::make_shared<FrontendAnalyses>());
  }
  return result;
}

AnalysisResult analyzeFile(std::string_view path) {
  std::ifstream in{std::string(path), std::ios::binary};
  if (!in) {
    AnalysisResult failed;
    failed.diagnostics.push_back(
        {std::string(path), 0, 0, Severity::Error, fmt::format("cannot open file: {}", std::strerror(errno))});
    return failed;
  }
  std::ostringstream bytes;
  bytes << in.rdbuf();
  return analyze(bytes.str(), path);
}

}  // namespace frontend
