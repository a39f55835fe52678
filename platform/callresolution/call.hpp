#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <vector>

#include "platform/analysis/provided_analysis.hpp"
#include "platform/ast/ast.hpp"
#include "platform/ast/string_id.hpp"

namespace ca::callresolution {

/// What call resolution says of one node: whether it is a call, of what name,
/// and with which arguments.
///
/// The node of a call is a `ParenOperation` (`f(x)`, `pkg.f(x)`, `obj.m(x)`,
/// `obj@Base(x)`), an `Identifier` (`f` alone), a `DotOperation` (`pkg.f`
/// alone, `obj.m` alone), a `BinaryOperation` (`obj@Base` alone) or a
/// `CommandInvocation` (`hold on`).
///
/// Invariants: a small value, cheap to copy; the node is never null; the
/// arguments view the tree, which outlives the call.
class Call {
 public:
  enum Status : std::uint8_t {
    KnownCall = 0,      // the node is a call
    PotentialCall = 1,  // the node is a call unless earlier code made the name a variable
    NoCall = 2,
  };

  Call(ast::Node const* node, Status status, astapi::StringId name = {},
       std::span<ast::Expression const* const> arguments = {}) noexcept
      : node_(node), arguments_(arguments), name_(name), status_(status) {}

  /// 0 known call, 1 potential call, 2 no call.
  std::uint8_t isCall() const noexcept { return status_; }
  /// The called name; the whole dotted name for a package function.
  astapi::StringId getName() const noexcept { return name_; }
  ast::Node const* getNode() const noexcept { return node_; }
  /// The arguments, in source order.
  std::vector<ast::Expression const*> getArguments() const { return {arguments_.begin(), arguments_.end()}; }
  unsigned getNumArguments() const noexcept { return static_cast<unsigned>(arguments_.size()); }
  void yieldArguments(std::function<void(ast::Expression const&)> const& yield) const {
    for (ast::Expression const* argument : arguments_) yield(*argument);
  }

 private:
  ast::Node const* node_;
  std::span<ast::Expression const* const> arguments_;
  astapi::StringId name_;
  Status status_;
};

/// Which nodes of a file are calls. Reached through
/// `get<CallResolutionAnalysis>()` (and
/// `AnalysisImpl::getCallResolutionAnalysis`), made once per analysis through
/// the analysis provider.
class CallResolutionAnalysis {
 public:
  virtual ~CallResolutionAnalysis() = default;

  /// The key of this analysis in an analysis's cache.
  static astapi::StringId GetAnalysisId() {
    static astapi::StringId const id(u"ca::callresolution::CallResolutionAnalysis");
    return id;
  }
  /// Asks the provider of `analysis`, an `AnalysisImpl`, to make it.
  static std::shared_ptr<CallResolutionAnalysis> Create(Analysis const& analysis) {
    return clients::createByProvider<CallResolutionAnalysis>(analysis);
  }
  /// The call at `node`; `isCall` says whether there is one.
  virtual Call getCallInfo(ast::Node const& node) const = 0;
  /// The call whose syntax most closely encloses `node` (the node itself
  /// first), within its statement; absent when there is none.
  virtual std::optional<Call> getClosestCall(ast::Node const& node) const = 0;
};

}  // namespace ca::callresolution
