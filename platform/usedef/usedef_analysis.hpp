#pragma once

#include <memory>
#include <vector>

#include "platform/ast/string_id.hpp"
#include "platform/usedef/usedef.hpp"

namespace ca {
class Analysis;
}

namespace ca::usedef {

/// The definitions and uses of every variable of one file, in source order.
/// Reached through `Analysis::get<UseDefAnalysis>()`, which makes it once per
/// analysis through the analysis provider.
///
/// Invariants: owns its records; the pointers it hands out live as long as it.
class UseDefAnalysis {
 public:
  explicit UseDefAnalysis(std::vector<std::unique_ptr<UseDefBase>> records) noexcept : records_(std::move(records)) {}

  /// The key of this analysis in an analysis's cache.
  static astapi::StringId GetAnalysisId();
  /// Asks the provider of `analysis`, an `AnalysisImpl`, to make it.
  static std::shared_ptr<UseDefAnalysis> Create(Analysis const& analysis);

  /// Every record, in the analysis's order.
  std::vector<UseDefBase const*> getAllUseDefs() const;

 private:
  std::vector<std::unique_ptr<UseDefBase>> records_;
};

}  // namespace ca::usedef
