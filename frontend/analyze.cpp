#include "frontend/analyze.hpp"

#include <algorithm>
#include <string>

#include "frontend/analysis/call_resolution.hpp"
#include "frontend/analysis/control_flow.hpp"
#include "frontend/analysis/name_resolution.hpp"
#include "frontend/analysis/use_def.hpp"
#include "frontend/parse.hpp"
#include "frontend/source_file_reader.hpp"

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
  // A folder, a FIFO or a file too large is refused with the reason, not
  // read as an empty file.
  SourceFileReader reader;
  SourceFileReader::Result const read = reader.read(std::string(path).c_str());
  if (!read.ok()) {
    AnalysisResult failed;
    failed.diagnostics.push_back({std::string(path), 0, 0, Severity::Error, read.error});
    return failed;
  }
  return analyze(read.bytes, path);
}

}  // namespace frontend
