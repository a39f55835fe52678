#include "tools/check/rule_graph.hpp"

#include <algorithm>
#include <set>
#include <unordered_set>

#include "tools/rules/rule_table.hpp"

namespace plexus::check {

namespace {

using ca::rulesystem::ConsumerBase;
using ca::rulesystem::ProducerBase;
using ca::rulesystem::ProducerConsumerBase;

// The report consumers of the graph: the terminal vertices that
// `RuleDeclaration::report` makes, which call themselves "Report".
std::set<ConsumerBase const*> reportConsumers(ca::rulesystem::AllNodes const& all) {
  std::set<ConsumerBase const*> reports;
  for (ProducerConsumerBase const* vertex : verticesOf(all)) {
    if (vertex->kindDescription() != u"Report") continue;
    if (auto const* consumer = dynamic_cast<ConsumerBase const*>(vertex)) reports.insert(consumer);
  }
  return reports;
}

}  // namespace

RuleDeclarations declarationsOf(RuleSelection const& selection) {
  RuleDeclarations declarations;
  for (std::size_t rule = 0; rule < selection.enabled.size(); ++rule) {
    if (selection.enabled[rule]) declarations[rule].push_back(selection.options[rule]);
  }
  return declarations;
}

RuleGraph::RuleGraph(RuleDeclarations const& declarations) {
  // A rule's report consumers are those that appear while it is declared:
  // `report` always makes a new one, whereas the stages before it may be
  // found already there.
  std::set<ConsumerBase const*> known;
  for (auto const& [rule, optionSets] : declarations) {
    rules::RuleDefinition const& definition = rules::ruleTable()[rule];
    if (definition.body->declare == nullptr) continue;
    for (std::size_t variant = 0; variant < optionSets.size(); ++variant) {
      definition.body->declare(rules::RuleDeclaration(all_, definition, variant, optionSets[variant]));
    }
    std::vector<ConsumerBase const*>& mine = reports_[rule];
    for (ConsumerBase const* report : reportConsumers(all_)) {
      if (known.insert(report).second) mine.push_back(report);
    }
  }
}

std::vector<ProducerConsumerBase const*> verticesOf(ca::rulesystem::AllNodes const& all) {
  std::vector<ProducerConsumerBase const*> vertices;
  std::unordered_set<ProducerConsumerBase const*> seen;
  std::vector<ProducerConsumerBase const*> pending = all.allProducers();
  pending.push_back(all.definition.impl.get());
  pending.push_back(all.use.impl.get());
  // Depth first, without recursion: a long pipeline must not run the stack out.
  std::reverse(pending.begin(), pending.end());
  while (!pending.empty()) {
    ProducerConsumerBase const* vertex = pending.back();
    pending.pop_back();
    if (vertex == nullptr || !seen.insert(vertex).second) continue;
    vertices.push_back(vertex);
    std::vector<ProducerConsumerBase const*> children;
    if (auto const* producer = dynamic_cast<ProducerBase const*>(vertex)) {
      for (ConsumerBase const* consumer : producer->consumers()) children.push_back(consumer);
    }
    for (auto const* extra : vertex->extraChildren()) children.push_back(extra);
    pending.insert(pending.end(), children.rbegin(), children.rend());
  }
  return vertices;
}

std::map<ConsumerBase const*, std::vector<std::size_t>> pipelineOwners(
    ca::rulesystem::AllNodes const& all, std::vector<std::vector<ConsumerBase const*>> const& reportsByRule) {
  std::map<ConsumerBase const*, std::vector<std::size_t>> owners;
  for (ProducerConsumerBase const* vertex : verticesOf(all)) {
    auto const* consumer = dynamic_cast<ConsumerBase const*>(vertex);
    if (consumer == nullptr) continue;
    for (std::size_t rule = 0; rule < reportsByRule.size(); ++rule) {
      for (ConsumerBase const* report : reportsByRule[rule]) {
        if (!report->dependsOn(consumer)) continue;
        owners[consumer].push_back(rule);
        break;
      }
    }
  }
  return owners;
}

}  // namespace plexus::check
