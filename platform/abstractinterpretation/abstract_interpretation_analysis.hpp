#pragma once

#include <memory>

#include "platform/analysis/provided_analysis.hpp"
#include "platform/ast/string_id.hpp"

namespace ca::abstractinterpretation {

/// What the abstract interpretation of a file knows of the values of its
/// expressions, and which code it finds unreachable.
/// Reached through `Analysis::get<AbstractInterpretationAnalysis>()` (and `AnalysisImpl`'s getter),
/// which makes it once per analysis through the analysis provider.
///
/// Its queries come with the rules that need them; a provider that does not
/// compute it raises std::logic_error when it is asked for.
class AbstractInterpretationAnalysis {
 public:
  virtual ~AbstractInterpretationAnalysis() = default;

  /// The key of this analysis in an analysis's cache.
  static astapi::StringId GetAnalysisId() {
    static astapi::StringId const id(u"ca::abstractinterpretation::AbstractInterpretationAnalysis");
    return id;
  }
  /// Asks the provider of `analysis`, an `AnalysisImpl`, to make it.
  static std::shared_ptr<AbstractInterpretationAnalysis> Create(Analysis const& analysis) {
    return clients::createByProvider<AbstractInterpretationAnalysis>(analysis);
  }
};

}  // namespace ca::abstractinterpretation
