#pragma once

// How an analysis that the platform declares but does not compute is made:
// its class declares `GetAnalysisId` and a `Create` that calls
// `createByProvider`, and the provider of the file's `AnalysisImpl` (the front
// end's registry, or a test's) makes it when `Analysis::get<T>` first asks
// under that id. Adding an analysis is its header and one line in a registry
// (see analysis_registry.hpp).

#include <memory>
#include <stdexcept>

#include "platform/analysis/analysis_impl.hpp"
#include "platform/ast/string_id.hpp"
#include "platform/i18n/i18n.hpp"

namespace ca::clients {

/// Makes analysis T of `analysis`, which must be an `AnalysisImpl` (else
/// std::bad_cast), through its provider; std::logic_error when the provider
/// computes no T.
template <class T>
std::shared_ptr<T> createByProvider(Analysis const& analysis) {
  auto const& impl = dynamic_cast<AnalysisImpl const&>(analysis);
  std::shared_ptr<void> made = impl.getProvider().makeAnalysis(T::GetAnalysisId(), impl);
  if (!made) throw std::logic_error("AnalysisProvider made no " + fl::i18n::to_utf8(T::GetAnalysisId().getString()));
  // The provider hands out a handle to a T, converted to void.
  return std::static_pointer_cast<T>(std::move(made));
}

}  // namespace ca::clients
