#pragma once

#include "platform/analysis/analysis.hpp"
#include "rulesystem/execution/all_nodes.hpp"

namespace ca::rulesystem {

/// The walk of one syntax tree: depth first, preorder, each node handed to the
/// root producer of its class before its children are visited. One switch on
/// the kind per node; no recursion along the right side of dot chains and
/// name-value arguments.
///
/// Invariants: holds only its three fields and lives for one walk.
class AstDispatcher {
 public:
  AstDispatcher(AllNodes const* allNodes, ca::Analysis const* analysis, MessageHelper const* helper) noexcept
      : allNodes_(allNodes), analysis_(analysis), helper_(helper) {}

  /// Visits `node`, which must not be null, and everything below it.
  void dispatch(Node const* node) const;

 private:
  template <class X>
  Node const* visit(X const& node) const;

  AllNodes const* allNodes_;
  ca::Analysis const* analysis_;
  MessageHelper const* helper_;
};

}  // namespace ca::rulesystem
