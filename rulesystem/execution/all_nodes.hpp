#pragma once

#include <cstddef>
#include <vector>

#include "platform/ast/ast.hpp"
#include "platform/usedef/usedef.hpp"
#include "rulesystem/execution/root_producer.hpp"
#include "rulesystem/graph/tree_types.hpp"

namespace ca::rulesystem {

/// The entry to the rule graph: one root producer for each tree class that a
/// rule can start from, and one each for definitions and uses. Rules pipe onto
/// these members; `execute` runs the graph over one analysed file.
///
///     AllNodes all;
///     all.parenOperation | std::make_unique<HasArgumentCount>(0) | std::make_shared<Report<ParenOperation>>(u"no arguments");
///     all.execute(analysis, &helper);
///
/// Invariants: the members are made once, in this order, and never replaced.
/// Declaring rules must be finished before the first `execute`; from then on
/// the graph is only read, so that one `AllNodes` serves any number of runs,
/// also at once on several threads with an analysis each.
class AllNodes {
 public:
  AllNodes();
  AllNodes(AllNodes const&) = delete;
  AllNodes& operator=(AllNodes const&) = delete;

  /// Methods, both declarations and definitions, before their own roots.
  Producer<Method const&> method;
#define PLEXUS_ROOT(member, TreeClass) Producer<TreeClass const&> member;
#include "rulesystem/execution/root_producers.def"
#undef PLEXUS_ROOT
  /// Use-def records that are definitions, after the tree pass.
  Producer<ca::usedef::Definition const*> definition;
  /// Use-def records that are uses, after the tree pass.
  Producer<ca::usedef::Use const*> use;

  /// The number of tree roots: `method` and one per line of
  /// root_producers.def.
  static constexpr std::size_t treeRootCount = 1
#define PLEXUS_ROOT(member, TreeClass) +1
#include "rulesystem/execution/root_producers.def"
#undef PLEXUS_ROOT
      ;

  /// The `treeRootCount` tree roots in member order, "Definition" and "Use"
  /// left out. Not owning; a null member gives a null entry.
  std::vector<ProducerConsumerBase const*> allProducers() const;

  /// Runs the graph over one file: the walk of its tree, then its use-def
  /// records. Catches nothing: an exception ends the run at that item.
  void execute(ca::Analysis const& analysis, MessageHelper const* helper) const;

  /// The root of tree class X, for generic code such as the walk.
  template <class X>
  Producer<X const&> const& rootOf() const;
};

template <>
inline Producer<Method const&> const& AllNodes::rootOf<Method>() const {
  return method;
}
#define PLEXUS_ROOT(member, TreeClass)                                           \
  template <>                                                                    \
  inline Producer<TreeClass const&> const& AllNodes::rootOf<TreeClass>() const { \
    return member;                                                               \
  }
#include "rulesystem/execution/root_producers.def"
#undef PLEXUS_ROOT

}  // namespace ca::rulesystem
