#pragma once

#include <string>
#include <vector>

#include "rulesystem/graph/consumer.hpp"

namespace plexus::bench {

/// The end of a pipeline that keeps the address of every tree node reaching
/// it, in order of arrival, in a list that the caller owns; the list must
/// outlive every run of the graph, the nodes the tree.
template <class Node>
class NodeCollector final : public ca::rulesystem::Consumer<Node const&> {
 public:
  explicit NodeCollector(std::vector<Node const*>& nodes) : nodes_(&nodes) {}
  std::u16string kindDescription() const override { return u"NodeCollector"; }
  std::u16string detailsDescription() const override { return u""; }
  void consume(Node const& node, ca::Analysis const&, ca::rulesystem::MessageHelper const*) const override {
    nodes_->push_back(&node);
  }

 private:
  std::vector<Node const*>* nodes_;
};

}  // namespace plexus::bench
