#include "frontend/analyze.hpp"

#include <algorithm>
#include <string>

#include "frontend/analysis/registered_analyses.hpp"
#include "frontend/parse.hpp"
#include "frontend/source_file_reader.hpp"

namespace frontend {

bool AnalysisResult::hasErrors() const {
  return std::any_of(diagnostics.begin(), diagnostics.end(),
                     [](Diagnostic const& d) { return d.severity == Severity::Error; });
}

AnalysisResult analyze(std::string_view source, std::string_view path) {
  ParseResult parsed = parse(source, path);
  AnalysisResult result;
  result.diagnostics = std::move(parsed.diagnostics);
  if (parsed.tree != nullptr && !result.hasErrors()) {
    result.analysis = std::make_shared<ca::clients::AnalysisImpl>(std::move(parsed.tree), registeredAnalyses());
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
    failed.diagnostics.push_back(read.diagnostic(std::string(path)));
    return failed;
  }
  return analyze(read.bytes, path);
}

}  // namespace frontend
