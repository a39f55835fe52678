#pragma once

#include <functional>
#include <memory>
#include <set>

#include "platform/analysis/analysis.hpp"
#include "rulesystem/graph/vertex.hpp"

namespace ca::rulesystem {

struct MessageHelper;
template <class T>
class ProducerImpl;

/// The consuming half of a vertex for items of type T (a const reference to a
/// tree class, `ca::Symbol const&`, a call, or a const pointer to a use-def
/// record).
///
/// Invariants: `producers` lists exactly the producers that have this consumer
/// in their consumer list. It does not own them: ownership runs downstream
/// only, so the graph holds no cycle of shared handles.
template <class T>
class Consumer : public ConsumerBase {
 public:
  using Item = T;

  Consumer() = default;

  /// Upstream walk: true for this very consumer, and otherwise when any
  /// producer that feeds it is a consumer that depends on `other`.
  bool dependsOn(ConsumerBase const* other) const override {
    if (static_cast<ConsumerBase const*>(this) == other) return true;
    for (ProducerImpl<T> const* producer : producers_) {
      if (producer == nullptr) continue;
      auto const* upstream = dynamic_cast<ConsumerDependent const*>(producer);
      if (upstream != nullptr && upstream->dependsOn(other)) return true;
    }
    return false;
  }

  /// Handles one item. Called only by a producer of T, once per item, in the
  /// producer's consumer order. Must not keep a reference item beyond the call.
  virtual void consume(T item, ca::Analysis const& analysis, MessageHelper const* helper) const = 0;

  /// The producers that feed this consumer, ordered by address.
  std::set<ProducerImpl<T> const*> const& getProducers() const noexcept { return producers_; }

 private:
  friend class ProducerImpl<T>;
  std::set<ProducerImpl<T> const*> producers_;
};

/// The order offered to code that holds the consumers of many rules together:
/// a consumer stands before every consumer that depends on it; unrelated
/// consumers stand in descending address order.
struct ConsumerCompare {
  bool operator()(std::shared_ptr<ConsumerBase> a, std::shared_ptr<ConsumerBase> b) const {
    if (a.get() == b.get()) return false;
    if (a->dependsOn(b.get())) return false;
    if (b->dependsOn(a.get())) return true;
    return std::less<ConsumerBase*>{}(b.get(), a.get());
  }
};

}  // namespace ca::rulesystem
