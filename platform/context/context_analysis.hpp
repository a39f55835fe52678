#pragma once

#include <memory>

#include "platform/analysis/provided_analysis.hpp"
#include "platform/ast/string_id.hpp"

namespace ca::context {

/// The contexts a node of a file stands in: a loop, a parallel loop, a nested
/// function, a method, a script, a try or catch block.
/// Reached through `Analysis::get<ContextAnalysis>()` (and `AnalysisImpl`'s getter),
/// which makes it once per analysis through the analysis provider.
///
/// Its queries come with the rules that need them; a provider that does not
/// compute it raises std::logic_error when it is asked for.
class ContextAnalysis {
 public:
  virtual ~ContextAnalysis() = default;

  /// The key of this analysis in an analysis's cache.
  static astapi::StringId GetAnalysisId() {
    static astapi::StringId const id(u"ca::context::ContextAnalysis");
    return id;
  }
  /// Asks the provider of `analysis`, an `AnalysisImpl`, to make it.
  static std::shared_ptr<ContextAnalysis> Create(Analysis const& analysis) {
    return clients::createByProvider<ContextAnalysis>(analysis);
  }
};

}  // namespace ca::context
