#include "platform/analysis/analysis_registry.hpp"

#include <stdexcept>

#include "platform/i18n/i18n.hpp"

namespace ca::clients {

void AnalysisRegistry::insert(astapi::StringId analysisId, Factory factory) {
  if (!factories_.emplace(analysisId, std::move(factory)).second) {
    throw std::logic_error("two factories registered for " + fl::i18n::to_utf8(analysisId.getString()));
  }
}

std::shared_ptr<void> AnalysisRegistry::makeAnalysis(astapi::StringId analysisId, AnalysisImpl const& analysis) const {
  auto const found = factories_.find(analysisId);
  if (found == factories_.end()) return AnalysisProvider::makeAnalysis(analysisId, analysis);
  return found->second(analysis);
}

}  // namespace ca::clients
