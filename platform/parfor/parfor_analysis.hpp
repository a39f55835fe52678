#pragma once

#include <memory>

#include "platform/analysis/provided_analysis.hpp"
#include "platform/ast/string_id.hpp"

namespace ca::parfor {

/// What is wrong with the parallel loops of a file.
/// Reached through `Analysis::get<ParforAnalysis>()` (and `AnalysisImpl`'s getter),
/// which makes it once per analysis through the analysis provider.
///
/// Its queries come with the rules that need them; a provider that does not
/// compute it raises std::logic_error when it is asked for.
class ParforAnalysis {
 public:
  virtual ~ParforAnalysis() = default;

  /// The key of this analysis in an analysis's cache.
  static astapi::StringId GetAnalysisId() {
    static astapi::StringId const id(u"ca::parfor::ParforAnalysis");
    return id;
  }
  /// Asks the provider of `analysis`, an `AnalysisImpl`, to make it.
  static std::shared_ptr<ParforAnalysis> Create(Analysis const& analysis) {
    return clients::createByProvider<ParforAnalysis>(analysis);
  }
};

}  // namespace ca::parfor
