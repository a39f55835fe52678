#pragma once

#include <cstdint>
#include <map>

namespace ca::rulesystem {

class ProducerBase;
class ConsumerBase;

/// Counts what passes through each vertex of a run: `numProduced[p]` is the
/// number of items that came out of producer p, `numConsumed[c]` the number of
/// items offered to consumer c. For a filter the difference is what it
/// rejected.
///
/// Invariants: a vertex has an entry only once it was counted, and then a
/// count of at least one. Counts accumulate over every run the profiler is
/// passed to. A profiler belongs to one run at a time; it has no lock.
class Profiler {
 public:
  void addNumProduced(ProducerBase const* producer) { ++numProduced[producer]; }
  void addNumConsumed(ConsumerBase const* consumer) { ++numConsumed[consumer]; }

  std::map<ProducerBase const*, std::int32_t> numProduced;
  std::map<ConsumerBase const*, std::int32_t> numConsumed;
};

}  // namespace ca::rulesystem
