#pragma once

#include <memory>

#include "platform/analysis/provided_analysis.hpp"
#include "platform/ast/string_id.hpp"

namespace ca::typevalue {

/// The constant values that expressions of a file may take, and the setters of
/// variables.
/// Reached through `Analysis::get<TypeValueAnalysis>()` (and `AnalysisImpl`'s getter),
/// which makes it once per analysis through the analysis provider.
///
/// Its queries come with the rules that need them; a provider that does not
/// compute it raises std::logic_error when it is asked for.
class TypeValueAnalysis {
 public:
  virtual ~TypeValueAnalysis() = default;

  /// The key of this analysis in an analysis's cache.
  static astapi::StringId GetAnalysisId() {
    static astapi::StringId const id(u"ca::typevalue::TypeValueAnalysis");
    return id;
  }
  /// Asks the provider of `analysis`, an `AnalysisImpl`, to make it.
  static std::shared_ptr<TypeValueAnalysis> Create(Analysis const& analysis) {
    return clients::createByProvider<TypeValueAnalysis>(analysis);
  }
};

}  // namespace ca::typevalue
