#pragma once

#include <algorithm>
#include <concepts>
#include <cstddef>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <vector>

#include "platform/utils/type_names.hpp"
#include "rulesystem/execution/message_helper.hpp"
#include "rulesystem/execution/profiler.hpp"
#include "rulesystem/graph/consumer.hpp"
#include "rulesystem/graph/parameter_order.hpp"
#include "rulesystem/graph/run_scope.hpp"
#include "rulesystem/graph/stage.hpp"
#include "rulesystem/graph/stage_of.hpp"

namespace ca::rulesystem {

template <class T>
class ProducerImpl;
template <class T, class Key>
class Switchable;
template <class In, class Out, class Key>
class Switch;
template <class T>
std::shared_ptr<ProducerImpl<T>> combine(std::set<ProducerImpl<T>*> const& inputs);

/// A producer vertex for items of type T: it hands each item to its consumers,
/// in order of attachment, each to the end of its branch before the next.
///
/// Invariants: a consumer is in `consumers` exactly when this producer is in
/// its producer set. The stage maps hold each stage attached here through
/// `where`, `transform` or `selectMany` under the address of the stage object
/// its vertex owns, so that an equal stage asked for again is found instead of
/// built. The maps serve declaration only; a run reads just `consumers`.
///
///     auto numbers = all.assignment | std::make_unique<RightSide>() | isa<NumberLiteral>();
///     assert(numbers == (all.assignment | std::make_unique<RightSide>() | isa<NumberLiteral>()));
template <class T>
class ProducerImpl : public ProducerBase {
 public:
  using Item = T;

  ProducerImpl() = default;

  std::vector<ConsumerBase const*> consumers() const override {
    std::vector<ConsumerBase const*> list;
    list.reserve(consumers_.size());
    for (auto const& consumer : consumers_) list.push_back(consumer.get());
    return list;
  }

  /// Hands `item` to every consumer, counting (and timing, when the profiler
  /// times) when the helper has a profiler.
  void produce(T item, ca::Analysis const& analysis, MessageHelper const* helper) const {
    Profiler* const profiler = helper != nullptr ? helper->profiler : nullptr;
    if (profiler != nullptr) {
      produceProfiled(item, analysis, helper, *profiler);
      return;
    }
    for (auto const& consumer : consumers_) consumer->consume(item, analysis, helper);
  }

  /// Links a consumer below this producer; it runs after those attached before.
  void attach(std::shared_ptr<Consumer<T>> consumer) {
    PLEXUS_CHECK_DECLARING("a consumer was attached to a producer");
    consumer->producers_.insert(this);
    consumers_.push_back(std::move(consumer));
  }

  /// Unlinks a consumer, keeping the order of the others.
  void detach(Consumer<T> const* consumer) {
    PLEXUS_CHECK_DECLARING("a consumer was detached from a producer");
    producersOf(consumer).erase(this);
    std::erase_if(consumers_, [consumer](auto const& held) { return held.get() == consumer; });
  }

  /// Adds a filter, or finds the equal one already here. U is T, a base of T,
  /// or `Typeless`.
  template <class U>
  std::shared_ptr<ProducerImpl<T>> where(std::unique_ptr<Predicate<U>> predicate);

  /// Adds a one-to-one stage, or finds the equal one already here.
  template <class Out>
  std::shared_ptr<ProducerImpl<Out>> transform(std::unique_ptr<Transform<T, Out>> stage);

  /// Adds a one-to-many stage, or finds the equal one already here.
  template <class Out>
  std::shared_ptr<ProducerImpl<Out>> selectMany(std::unique_ptr<SelectMany<T, Out>> stage);

  /// Adds the branch that a multi-answer question selects: one case of the
  /// switch on the question's key for a single key, or the combination of the
  /// cases for several. Defined with `Switch`.
  template <class Out, class Key>
  std::shared_ptr<ProducerImpl<Out>> where(std::unique_ptr<Switchable<T, Key>> switchable);

  /// The one switch below this producer on the key that `keyTransform`
  /// computes: found by the transform's identity, or made and attached.
  /// Empty when an equal transform already keys a consumer of another kind.
  template <class Out, class Key>
  std::shared_ptr<Switch<T, Out, Key>> getSwitch(std::unique_ptr<Transform<T, Key>> keyTransform);

  /// Hands items on as the base class U; all upcasts to U here are one vertex.
  template <class U>
  std::shared_ptr<ProducerImpl<U>> upcast();

  /// Hands items on as the derived class U, unchecked: only behind a stage that
  /// proved the class.
  template <class U>
  std::shared_ptr<ProducerImpl<U>> downcast();

 private:
  // Apart from `produce`, so that a run without a profiler pays one test per
  // item and nothing per consumer.
  void produceProfiled(T item, ca::Analysis const& analysis, MessageHelper const* helper, Profiler& profiler) const {
    profiler.addNumProduced(this);
    for (auto const& consumer : consumers_) {
      profiler.addNumConsumed(consumer.get());
      if (!profiler.timing()) {
        consumer->consume(item, analysis, helper);
        continue;
      }
      // Closes the call also when the consumer throws, so that the profiler's
      // open calls stay those of the frames still running.
      struct TimedCall {
        Profiler& profiler;
        ConsumerBase const* consumer;
        ~TimedCall() { profiler.endCall(consumer); }
      };
      profiler.beginCall();
      TimedCall const timed{profiler, consumer.get()};
      consumer->consume(item, analysis, helper);
    }
  }

  static std::set<ProducerImpl<T> const*>& producersOf(Consumer<T> const* consumer) {
    return const_cast<Consumer<T>*>(consumer)->producers_;
  }

  std::vector<std::shared_ptr<Consumer<T>>> consumers_;
  std::map<PredicateBase const*, std::shared_ptr<ProducerImpl<T>>, PredicateCompare> predicates_;
  std::map<TransformBase const*, std::shared_ptr<ProducerBase>, TransformCompare> transforms_;
  std::map<SelectManyBase const*, std::shared_ptr<ProducerBase>, SelectManyCompare> selectManys_;

  // One switch per key-extracting transform, under the transform it owns.
  std::map<TransformBase const*, std::shared_ptr<ConsumerBase>, TransformCompare> switches_;
  // Combinations of producers that have this one as their lowest address.
  std::map<std::set<ProducerImpl<T>*>, std::shared_ptr<ProducerImpl<T>>> combinations_;
  template <class U>
  friend std::shared_ptr<ProducerImpl<U>> combine(std::set<ProducerImpl<U>*> const& inputs);

  // Reserved for extensions keyed by an object's address; nothing fills it.
  std::map<void const*, std::shared_ptr<void>> reserved_;
};

template <class T>
template <class U>
std::shared_ptr<ProducerImpl<T>> ProducerImpl<T>::where(std::unique_ptr<Predicate<U>> predicate) {
  if (auto found = predicates_.find(predicate.get()); found != predicates_.end()) return found->second;

  class PredicateProducerConsumer final : public ProducerImpl<T>, public Consumer<T> {
   public:
    explicit PredicateProducerConsumer(std::unique_ptr<Predicate<U>> stage) : predicate(std::move(stage)) {}
    std::u16string kindDescription() const override { return u"Where"; }
    std::u16string detailsDescription() const override { return predicate->description(); }
    bool dependsOn(ConsumerBase const* other) const override {
      return predicate->dependsOn(other) || Consumer<T>::dependsOn(other);
    }
    void consume(T item, ca::Analysis const& analysis, MessageHelper const* helper) const override {
      if (predicate->test(ItemConversion<U, T>::convert(item), analysis)) this->produce(item, analysis, helper);
    }
    std::unique_ptr<Predicate<U>> const predicate;
  };

  // One allocation for the vertex and its control block.
  auto vertex = std::make_shared<PredicateProducerConsumer>(std::move(predicate));
  attach(vertex);
  std::shared_ptr<ProducerImpl<T>> output = vertex;
  predicates_.emplace(vertex->predicate.get(), output);
  return output;
}

template <class T>
template <class Out>
std::shared_ptr<ProducerImpl<Out>> ProducerImpl<T>::transform(std::unique_ptr<Transform<T, Out>> stage) {
  if (auto found = transforms_.find(stage.get()); found != transforms_.end()) {
    return std::dynamic_pointer_cast<ProducerImpl<Out>>(found->second);
  }

  class TransformProducerConsumer final : public ProducerImpl<Out>, public Consumer<T> {
   public:
    explicit TransformProducerConsumer(std::unique_ptr<Transform<T, Out>> owned) : transform(std::move(owned)) {}
    std::u16string kindDescription() const override { return u"Transform"; }
    std::u16string detailsDescription() const override { return transform->description(); }
    void consume(T item, ca::Analysis const& analysis, MessageHelper const* helper) const override {
      this->produce(transform->transform(item, analysis), analysis, helper);
    }
    std::unique_ptr<Transform<T, Out>> const transform;
  };

  auto vertex = std::make_shared<TransformProducerConsumer>(std::move(stage));
  attach(vertex);
  std::shared_ptr<ProducerImpl<Out>> output = vertex;
  transforms_.emplace(vertex->transform.get(), output);
  return output;
}

template <class T>
template <class Out>
std::shared_ptr<ProducerImpl<Out>> ProducerImpl<T>::selectMany(std::unique_ptr<SelectMany<T, Out>> stage) {
  if (auto found = selectManys_.find(stage.get()); found != selectManys_.end()) {
    return std::dynamic_pointer_cast<ProducerImpl<Out>>(found->second);
  }

  class SelectManyProducerConsumer final : public ProducerImpl<Out>, public Consumer<T> {
   public:
    explicit SelectManyProducerConsumer(std::unique_ptr<SelectMany<T, Out>> owned) : selectMany(std::move(owned)) {}
    std::u16string kindDescription() const override { return u"SelectMany"; }
    std::u16string detailsDescription() const override { return selectMany->description(); }
    void consume(T item, ca::Analysis const& analysis, MessageHelper const* helper) const override {
      // The callback captures one pointer to this frame, which keeps it within
      // std::function's inline buffer: no allocation per item.
      struct Frame {
        SelectManyProducerConsumer const* vertex;
        ca::Analysis const* analysis;
        MessageHelper const* helper;
      } const frame{this, &analysis, helper};
      std::function<void(Out)> const yield = [at = &frame](Out result) {
        at->vertex->produce(result, *at->analysis, at->helper);
      };
      selectMany->select(item, analysis, yield);
    }
    std::unique_ptr<SelectMany<T, Out>> const selectMany;
  };

  auto vertex = std::make_shared<SelectManyProducerConsumer>(std::move(stage));
  attach(vertex);
  std::shared_ptr<ProducerImpl<Out>> output = vertex;
  selectManys_.emplace(vertex->selectMany.get(), output);
  return output;
}

namespace detail {
/// Hands an item on as its base class Out; all upcasts to Out are one stage.
template <class In, class Out>
class UpcastTransform final : public StageOf<UpcastTransform<In, Out>, Transform<In, Out>> {
 public:
  std::u16string description() const override {
    std::u16string text = u"Upcast ";
    text += ca::utils::prettyTypeName<Out>();
    return text;
  }
  Out transform(In item, ca::Analysis const&) const override { return ItemConversion<Out, In>::convert(item); }
};

/// Hands an item on as the derived class Out, unchecked.
template <class In, class Out>
class DowncastTransform final : public StageOf<DowncastTransform<In, Out>, Transform<In, Out>> {
 public:
  std::u16string description() const override { return u"Downcast " + ca::utils::prettyTypeName<Out>(); }
  Out transform(In item, ca::Analysis const&) const override { return static_cast<Out>(item); }
};
}  // namespace detail

template <class T>
template <class U>
std::shared_ptr<ProducerImpl<U>> ProducerImpl<T>::upcast() {
  return transform<U>(std::make_unique<detail::UpcastTransform<T, U>>());
}

template <class T>
template <class U>
std::shared_ptr<ProducerImpl<U>> ProducerImpl<T>::downcast() {
  return transform<U>(std::make_unique<detail::DowncastTransform<T, U>>());
}

/// The handle that rule code holds and pipes: copying it shares the vertex,
/// which lives as long as any handle or upstream producer holds it.
template <class T>
struct Producer {
  using Item = T;

  Producer() = default;
  explicit Producer(std::shared_ptr<ProducerImpl<T>> vertex) : impl(std::move(vertex)) {}

  ProducerImpl<T>* operator->() const noexcept { return impl.get(); }
  ProducerImpl<T>& operator*() const noexcept { return *impl; }

  friend bool operator<(Producer const& a, Producer const& b) {
    return std::less<ProducerImpl<T>*>{}(a.impl.get(), b.impl.get());
  }
  friend bool operator==(Producer const& a, Producer const& b) { return a.impl == b.impl; }

  std::shared_ptr<ProducerImpl<T>> impl;
};

/// A producer as a stage parameter (a subrule's watched branch) is ordered by
/// the vertex it designates: a vertex is already the one place of every equal
/// pipeline, so two handles of it mean the same branch.
template <class T>
struct ParameterOrder<Producer<T>> {
  static bool less(Producer<T> const& a, Producer<T> const& b) { return a < b; }
};

// The pipe operators. The right side is a stage as a sole owner (of the typed
// stage class or of a class derived from it) or a consumer of the rule's own.

/// `producer | predicate`: a filter; the item type stays.
template <class T, class S>
requires std::derived_from<S, PredicateBase> Producer<T>
operator|(Producer<T> producer, std::unique_ptr<S> predicate) {
  using U = typename S::Item;
  return Producer<T>(producer.impl->template where<U>(std::unique_ptr<Predicate<U>>(std::move(predicate))));
}

/// `producer | transform`: one result per item.
template <class T, class S>
requires std::derived_from<S, TransformBase> Producer<typename S::Output>
operator|(Producer<T> producer, std::unique_ptr<S> stage) {
  using Out = typename S::Output;
  return Producer<Out>(producer.impl->template transform<Out>(std::unique_ptr<Transform<T, Out>>(std::move(stage))));
}

/// `producer | selectMany`: zero or more results per item.
template <class T, class S>
requires std::derived_from<S, SelectManyBase> Producer<typename S::Output>
operator|(Producer<T> producer, std::unique_ptr<S> stage) {
  using Out = typename S::Output;
  return Producer<Out>(producer.impl->template selectMany<Out>(std::unique_ptr<SelectMany<T, Out>>(std::move(stage))));
}

/// `producer | consumer`: ends a pipeline in a consumer of the rule's own.
template <class T, class C>
requires std::derived_from<C, Consumer<T>>
void operator|(Producer<T> producer, std::shared_ptr<C> consumer) { producer.impl->attach(std::move(consumer)); }

}  // namespace ca::rulesystem
