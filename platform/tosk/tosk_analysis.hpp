#pragma once

#include <memory>

#include "platform/analysis/provided_analysis.hpp"
#include "platform/ast/string_id.hpp"

namespace ca::tosk {

/// The class-object model of a code base as one file sees it: classes, their
/// bases, methods and properties, and whether an object is a handle.
/// Reached through `Analysis::get<ToskAnalysis>()` (and `AnalysisImpl`'s getter),
/// which makes it once per analysis through the analysis provider.
///
/// Its queries come with the rules that need them; a provider that does not
/// compute it raises std::logic_error when it is asked for.
class ToskAnalysis {
 public:
  virtual ~ToskAnalysis() = default;

  /// The key of this analysis in an analysis's cache.
  static astapi::StringId GetAnalysisId() {
    static astapi::StringId const id(u"ca::tosk::ToskAnalysis");
    return id;
  }
  /// Asks the provider of `analysis`, an `AnalysisImpl`, to make it.
  static std::shared_ptr<ToskAnalysis> Create(Analysis const& analysis) {
    return clients::createByProvider<ToskAnalysis>(analysis);
  }
};

}  // namespace ca::tosk
