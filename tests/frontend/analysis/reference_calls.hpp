#pragma once

#include <memory>
#include <optional>
#include <unordered_set>

#include "frontend/analysis/name_resolution.hpp"
#include "platform/callresolution/call.hpp"

namespace plexus::testing {

/// The answers that `frontend::FileCalls` must give, found the slow and
/// obvious way: every question climbs from the node asked about through its
/// ancestors. Quadratic on deep chains; for tests only.
class ReferenceCalls final : public ca::callresolution::CallResolutionAnalysis {
 public:
  explicit ReferenceCalls(std::shared_ptr<frontend::FileSymbols const> symbols);

  ca::callresolution::Call getCallInfo(ca::ast::Node const& node) const override;
  std::optional<ca::callresolution::Call> getClosestCall(ca::ast::Node const& node) const override;

 private:
  std::shared_ptr<frontend::FileSymbols const> symbols_;
  std::unordered_set<ca::astapi::StringId> methods_;
};

}  // namespace plexus::testing
