#pragma once

#include <cstddef>
#include <memory>
#include <set>
#include <string>

#include "rulesystem/graph/checked_precondition.hpp"
#include "rulesystem/graph/producer.hpp"

namespace ca::rulesystem {

/// One vertex with several inputs: the union of their streams. It keeps no
/// record of what passed, so an item that two inputs deliver reaches its
/// consumers twice; whoever combines sees that the inputs are disjoint.
///
///     auto assigned = all.assignment | std::make_unique<RightSide>() | isa<NumberLiteral>();
///     auto passed = all.parenOperation | std::make_unique<CallArguments>() | isa<NumberLiteral>();
///     auto either = combine(std::set{assigned, passed});
template <class T>
class CombineProducer final : public ProducerImpl<T>, public Consumer<T> {
 public:
  explicit CombineProducer(std::size_t inputs) : inputCount(inputs) {}

  std::u16string kindDescription() const override { return u"Combine"; }
  std::u16string detailsDescription() const override { return u""; }
  void consume(T item, ca::Analysis const& analysis, MessageHelper const* helper) const override {
    this->produce(item, analysis, helper);
  }

  /// The number of inputs it was made with.
  std::size_t const inputCount;
};

/// The combination of `inputs`, which must not be empty (checked builds stop
/// on an empty set): found under the input with the lowest address, where it
/// was entered, or made there. The new vertex runs after the consumers that
/// each input already had.
template <class T>
std::shared_ptr<ProducerImpl<T>> combine(std::set<ProducerImpl<T>*> const& inputs) {
  PLEXUS_CHECK_PRECONDITION(!inputs.empty(), "combine was given no inputs; a combination needs at least one");
  ProducerImpl<T>* const first = *inputs.begin();
  if (auto found = first->combinations_.find(inputs); found != first->combinations_.end()) return found->second;
  auto vertex = std::make_shared<CombineProducer<T>>(inputs.size());
  for (ProducerImpl<T>* input : inputs) input->attach(vertex);
  std::shared_ptr<ProducerImpl<T>> output = vertex;
  first->combinations_.emplace(inputs, output);
  return output;
}

/// The combination of the producers that rule code holds.
template <class T>
Producer<T> combine(std::set<Producer<T>> const& inputs) {
  std::set<ProducerImpl<T>*> vertices;
  for (Producer<T> const& input : inputs) vertices.insert(input.impl.get());
  return Producer<T>(combine(vertices));
}

}  // namespace ca::rulesystem
