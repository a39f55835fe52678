#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <map>
#include <vector>

namespace ca::rulesystem {

class ProducerBase;
class ConsumerBase;

/// Counts what passes through each vertex of a run: `numProduced[p]` is the
/// number of items that came out of producer p, `numConsumed[c]` the number of
/// items offered to consumer c. For a filter the difference is what it
/// rejected.
///
/// With timing on (`enableTiming`), it also measures each consumer call:
/// `timeOf[c].inclusive` is the time spent in c's calls together with the
/// calls they made further down, `timeOf[c].self` that time less the calls c
/// made (to its own consumers, or a switch to the consumers of its cases)
/// and less the foreign work reported during them (`addForeignTime`). The
/// self times of a run add up to at most the time its consumer calls took,
/// so that they can be summed by rule without counting anything twice.
///
/// Invariants: a vertex has an entry only once it was counted, and then a
/// count of at least one. Counts and times accumulate over every run the
/// profiler is passed to. A profiler belongs to one thread at a time; it has
/// no lock (profile a pool with one per worker and `merge` them after).
class Profiler {
 public:
  using Clock = std::chrono::steady_clock;

  /// The time of one consumer's calls.
  struct CallTime {
    std::chrono::nanoseconds inclusive{0};
    std::chrono::nanoseconds self{0};
    std::int64_t calls = 0;
  };

  void addNumProduced(ProducerBase const* producer) { ++numProduced[producer]; }
  void addNumConsumed(ConsumerBase const* consumer) { ++numConsumed[consumer]; }

  /// Measures consumer calls from now on; off by default, since reading the
  /// clock twice per call costs more than a cheap stage does.
  void enableTiming() noexcept { timing_ = true; }
  bool timing() const noexcept { return timing_; }

  /// Marks a consumer call as it starts; `endCall` closes it. Calls nest as
  /// the graph hands items down.
  void beginCall() { open_.push_back({Clock::now(), std::chrono::nanoseconds{0}}); }

  /// Closes the innermost open call as a call of `consumer`: its inclusive
  /// time goes to the consumer and is taken off the self time of the call
  /// that made it.
  void endCall(ConsumerBase const* consumer) {
    OpenCall const call = open_.back();
    open_.pop_back();
    auto const inclusive = std::chrono::duration_cast<std::chrono::nanoseconds>(Clock::now() - call.start);
    CallTime& time = timeOf[consumer];
    time.inclusive += inclusive;
    time.self += inclusive - call.below;
    ++time.calls;
    if (!open_.empty()) open_.back().below += inclusive;
  }

  /// Time spent within the open call on work that is not the vertex's own,
  /// such as an analysis that a stage's question made on demand: it is kept
  /// out of that call's self time. Outside any call it is not a vertex's
  /// time at all, and ignored.
  void addForeignTime(std::chrono::nanoseconds spent) {
    if (!open_.empty()) open_.back().below += spent;
  }

  /// The consumer calls begun and not yet ended: none between runs, also
  /// after a run that a consumer ended by throwing.
  std::size_t openCalls() const noexcept { return open_.size(); }

  /// Adds the counts and times of another profiler (of another worker).
  void merge(Profiler const& other) {
    for (auto const& [producer, count] : other.numProduced) numProduced[producer] += count;
    for (auto const& [consumer, count] : other.numConsumed) numConsumed[consumer] += count;
    for (auto const& [consumer, time] : other.timeOf) {
      CallTime& mine = timeOf[consumer];
      mine.inclusive += time.inclusive;
      mine.self += time.self;
      mine.calls += time.calls;
    }
  }

  std::map<ProducerBase const*, std::int32_t> numProduced;
  std::map<ConsumerBase const*, std::int32_t> numConsumed;
  std::map<ConsumerBase const*, CallTime> timeOf;

 private:
  struct OpenCall {
    Clock::time_point start;
    std::chrono::nanoseconds below;  // what the calls made from here took
  };

  bool timing_ = false;
  std::vector<OpenCall> open_;
};

}  // namespace ca::rulesystem
