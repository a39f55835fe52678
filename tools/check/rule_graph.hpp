#pragma once

// The rules of a run declared on one shared graph, as `plexus check` runs
// them and `plexus graph` shows them, with what belongs to which rule.

#include <cstddef>
#include <cstdint>
#include <map>
#include <vector>

#include "rulesystem/execution/all_nodes.hpp"
#include "tools/check/rule_selection.hpp"

namespace plexus::check {

/// The rules to declare, by index in the rule table, each with the option
/// values of each of its declarations; a declaration's position is the
/// variant its findings are reported under.
using RuleDeclarations = std::map<std::size_t, std::vector<std::vector<std::int64_t>>>;

/// One declaration of each rule that `selection` enables, with its options.
RuleDeclarations declarationsOf(RuleSelection const& selection);

/// Every declaration declared once on one graph, in the order of the rule
/// table, remembering which consumers report each rule's findings.
///
/// Invariants: the graph is finished when the constructor returns; `reports`
/// holds exactly the rules that declared a pipeline, each with the consumers
/// that its declarations' `report` made, in the order made.
class RuleGraph {
 public:
  explicit RuleGraph(RuleDeclarations const& declarations);
  RuleGraph(RuleGraph const&) = delete;
  RuleGraph& operator=(RuleGraph const&) = delete;

  ca::rulesystem::AllNodes const& all() const noexcept { return all_; }
  std::map<std::size_t, std::vector<ca::rulesystem::ConsumerBase const*>> const& reports() const noexcept {
    return reports_;
  }

 private:
  ca::rulesystem::AllNodes all_;
  std::map<std::size_t, std::vector<ca::rulesystem::ConsumerBase const*>> reports_;
};

/// Every vertex below the roots of `all` (the roots included), each once:
/// consumers and the cases of switches.
std::vector<ca::rulesystem::ProducerConsumerBase const*> verticesOf(ca::rulesystem::AllNodes const& all);

/// For each consumer vertex of `all`, the rules whose pipeline it lies in,
/// as positions in `reportsByRule`: those with a report consumer that
/// depends on it (through its producers, a switch's case, or a subrule's
/// watched branch). A vertex that no report depends on is left out.
std::map<ca::rulesystem::ConsumerBase const*, std::vector<std::size_t>> pipelineOwners(
    ca::rulesystem::AllNodes const& all, std::vector<std::vector<ca::rulesystem::ConsumerBase const*>> const& reportsByRule);

}  // namespace plexus::check
