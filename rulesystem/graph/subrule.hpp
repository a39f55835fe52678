#pragma once

#include <functional>
#include <memory>
#include <mutex>
#include <set>
#include <string>

#include "rulesystem/graph/producer.hpp"
#include "rulesystem/graph/run_scope.hpp"
#include "rulesystem/graph/stage_of.hpp"
#include "rulesystem/graph/uncompared.hpp"

namespace ca::rulesystem {

template <class T>
class SubruleSignals;

/// A predicate that asks another branch of the graph: true when the watched
/// producer has delivered something for this analysis since the predicate was
/// last tested. Testing uses the signal up.
///
/// Attach the testing stage to the producer the subrule's pipeline starts from,
/// after that pipeline: items are handed on depth first in order of
/// attachment, so for each item the subrule's branch runs to its end before
/// the test, which then answers about the item at hand.
///
///     auto literalArguments = all.parenOperation | std::make_unique<CallArguments>() | isa<NumberLiteral>();
///     all.parenOperation | subrule(literalArguments) | std::make_shared<Report<ParenOperation>>(u"literal argument");
///
/// Invariants: while it lives, its own consumer is attached to the watched
/// producer; the destructor detaches it. `matches` is the one state of the
/// graph that changes during runs; it is keyed by analysis and guarded by a
/// mutex, so that runs on several threads over different analyses share it.
/// A signal left untested when a run of `AllNodes::execute` ends is dropped
/// with the run (also when it ends by an exception): an analysis that is
/// freed and another made at its address must not inherit it.
///
/// Its identity is the watched producer alone. What else it holds, its own
/// consumer on that producer and the signals the consumer receives, it makes
/// for itself: every instance has its own, so they are no part of what tells
/// two subrules apart, and stand as an `Uncompared` parameter. Two subrules on
/// one producer are one stage; the one asked for second is dropped, and with
/// it its consumer.
template <class T>
class SubrulePredicate final : public StageOf<SubrulePredicate<T>, Predicate<Typeless>, Producer<T>,
                                              Uncompared<std::unique_ptr<SubruleSignals<T>>>> {
  using Base =
      StageOf<SubrulePredicate<T>, Predicate<Typeless>, Producer<T>, Uncompared<std::unique_ptr<SubruleSignals<T>>>>;

 public:
  explicit SubrulePredicate(Producer<T> watched)
      : Base(watched, Uncompared(std::make_unique<SubruleSignals<T>>(watched))) {}

  /// The producer whose deliveries this predicate asks about.
  Producer<T> const& producer() const noexcept { return this->template parameter<0>(); }
  /// The consumer on the watched producer and what it received.
  SubruleSignals<T>& signals() const noexcept { return *this->template parameter<1>().value; }

  std::u16string description() const override { return u"Subrule"; }
  /// A subrule relies on the branch it watches, through its own consumer.
  bool dependsOn(ConsumerBase const* other) const override { return signals().consumer->dependsOn(other); }
  bool test(Typeless, ca::Analysis const& analysis) override { return signals().take(&analysis); }
};

/// The working state of one subrule (see `SubrulePredicate` for its
/// invariants): its own consumer, attached to the watched producer from
/// construction to destruction, and the analyses for which that consumer
/// received an item not yet tested, which runs drop when they end.
template <class T>
class SubruleSignals final : public RunState {
 public:
  /// Records the analysis of each item it receives with its owner.
  class SubruleConsumer final : public Consumer<T> {
   public:
    explicit SubruleConsumer(SubruleSignals* signals) : owner(signals) {}
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
    SubruleSignals* const owner;
  };

  explicit SubruleSignals(Producer<T> watched)
      : producer(std::move(watched)), consumer(std::make_shared<SubruleConsumer>(this)) {
    producer.impl->attach(consumer);
  }

  ~SubruleSignals() {
    std::shared_ptr<SubruleConsumer> const held = consumer;
    producer.impl->detach(held.get());
  }

  SubruleSignals(SubruleSignals const&) = delete;
  SubruleSignals& operator=(SubruleSignals const&) = delete;

  /// Whether a signal for `analysis` is pending; uses it up.
  bool take(ca::Analysis const* analysis) {
    std::lock_guard lock(mutex);
    return matches.erase(analysis) > 0;
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
