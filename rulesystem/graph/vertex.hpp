#pragma once

#include <string>
#include <vector>

#include <boost/noncopyable.hpp>

namespace ca::rulesystem {

class ConsumerBase;
class ConsumerDependent;

/// The one base that every vertex of the rule graph has exactly once: the
/// operations through which outside tools list the finished graph.
class ProducerConsumerBase {
 public:
  virtual ~ProducerConsumerBase() = default;
  /// One word for the class of vertex: "Root", "Where", "Transform", ...
  virtual std::u16string kindDescription() const = 0;
  /// What this one vertex does, usually the description of its stage.
  virtual std::u16string detailsDescription() const = 0;
  /// Downstream vertices that are not in a consumer list; empty but for a
  /// switch, whose cases hang here.
  virtual std::vector<ConsumerDependent const*> extraChildren() const { return {}; }
};

/// The producing half of a vertex.
class ProducerBase : private boost::noncopyable, public virtual ProducerConsumerBase {
 public:
  /// The consumers, in the order in which items reach them. Not owning.
  virtual std::vector<ConsumerBase const*> consumers() const = 0;
};

/// What the upstream walk asks: is this vertex behind another one? A root
/// producer is not a `ConsumerDependent`, which is where such walks end.
class ConsumerDependent : public virtual ProducerConsumerBase {
 public:
  /// Whether an item reaches this consumer only after, or through, `other`.
  /// A consumer depends on itself.
  virtual bool dependsOn(ConsumerBase const* other) const = 0;
};

/// The consuming half of a vertex, without its item type.
class ConsumerBase : private boost::noncopyable, public ConsumerDependent {};

}  // namespace ca::rulesystem
