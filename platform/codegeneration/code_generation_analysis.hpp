#pragma once

#include <memory>

#include "platform/analysis/provided_analysis.hpp"
#include "platform/ast/string_id.hpp"

namespace ca::codegeneration {

/// Which code of a file is compiled by code generation, and which names it
/// declares extrinsic.
/// Reached through `Analysis::get<CodeGenerationAnalysis>()` (and `AnalysisImpl`'s getter),
/// which makes it once per analysis through the analysis provider.
///
/// Its queries come with the rules that need them; a provider that does not
/// compute it raises std::logic_error when it is asked for.
class CodeGenerationAnalysis {
 public:
  virtual ~CodeGenerationAnalysis() = default;

  /// The key of this analysis in an analysis's cache.
  static astapi::StringId GetAnalysisId() {
    static astapi::StringId const id(u"ca::codegeneration::CodeGenerationAnalysis");
    return id;
  }
  /// Asks the provider of `analysis`, an `AnalysisImpl`, to make it.
  static std::shared_ptr<CodeGenerationAnalysis> Create(Analysis const& analysis) {
    return clients::createByProvider<CodeGenerationAnalysis>(analysis);
  }
};

}  // namespace ca::codegeneration
