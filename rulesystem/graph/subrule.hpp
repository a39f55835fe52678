#pragma once

#include <functional>
#include <memory>
#include <mutex>
#include <set>
#include <string>

#include "rulesystem/graph/producer.hpp"
#include "rulesystem/graph/run_scope.hpp"

namespace ca::rulesystem {

/// A predicate that asks another branch of the graph: true when the watched
/// producer has delivered something for this analysis since the predicate was
/// last tested. Testing uses the signal up.
///
/// Attach the testing stage to the producer the subrule's pipeline starts from,
/// after that pipeline: items are handed on depth first in order of
/// attachment, so for each item the subrule's branch runs to its end before
/// the test, which then answers about the item at hand.
///
///     auto literalArguments = all.parenOperation | std::make_unique<ArgumentsOf>() | isa<NumberLiteral>();
///     all.parenOperation | subrule(literalArguments) | std::make_shared<Report<ParenOperation>>(u"literal argument");
///
/// Invariants: while it lives, its own consumer is attached to the watched
/// producer; the destructor detaches it. `matches` is the one state of the
/// graph that changes during runs; it is keyed by analysis and guarded by a
/// mutex, so that runs on several threads over different analyses share it.
/// A signal left untested when a run of `AllNodes::execute` ends is dropped
/// with the run (also when it ends by an exception): an analysis that is
/// freed and another made at its address must not inherit it.
template <class T>
class SubrulePredicate final : public Predicate<Typeless>, public RunState {
 public:
  /// Delivers the analysis of each item it receives to its owner.
  class SubruleConsumer final : public Consumer<T> {
   public:
    explicit SubruleConsumer(SubrulePredicate* subrule) : owner(subrule) {}
    std::u16string kindDescription() const override { return u"SubruleConsumer"; }
    std::u16string detailsDescription() const override { return u"?"; }
    void consume(T, ca::Analysis const& analysis, MessageHelper const*) const override {
      bool inserted = false;
      {
        std::lock_guard lock(owner->mutex);
        inserted = owner->matches.insert(&analysis).second;
      }
      if (!inserted) return;
      if (RunScope* const run = RunScope::current()) run->note(owner);
    }
    SubrulePredicate* const owner;
  };

  explicit SubrulePredicate(Producer<T> watched)
      : producer(std::move(watched)), consumer(std::make_shared<SubruleConsumer>(this)) {
    producer.impl->attach(consumer);
  }

  ~SubrulePredicate() override {
    std::shared_ptr<SubruleConsumer> const held = consumer;
    producer.impl->detach(held.get());
  }

  SubrulePredicate(SubrulePredicate const&) = delete;
  SubrulePredicate& operator=(SubrulePredicate const&) = delete;

  std::u16string description() const override { return u"Subrule"; }
  bool dependsOn(ConsumerBase const* other) const override { return consumer->dependsOn(other); }
  bool lessThan(PredicateBase const* other) const override {
    return std::less<ProducerImpl<T>*>{}(producer.impl.get(),
                                         dynamic_cast<SubrulePredicate const*>(other)->producer.impl.get());
  }
  bool test(Typeless, ca::Analysis const& analysis) override {
    std::lock_guard lock(mutex);
    return matches.erase(&analysis) > 0;
  }

  void forget(ca::Analysis const* analysis) noexcept override {
    std::lock_guard lock(mutex);
    matches.erase(analysis);
  }

  Producer<T> const producer;
  std::shared_ptr<SubruleConsumer> const consumer;
  std::set<ca::Analysis const*> matches;
  std::mutex mutex;
};

/// A predicate that is true when `watched` delivered something for the item at
/// hand (see `SubrulePredicate`).
template <class T>
std::unique_ptr<Predicate<Typeless>> subrule(Producer<T> watched) {
  return std::make_unique<SubrulePredicate<T>>(std::move(watched));
}

}  // namespace ca::rulesystem
