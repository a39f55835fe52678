#pragma once

// What the graph knows of the runs in progress: the signals that subrules
// recorded during a run, so that they are forgotten when the run ends, and,
// in checked builds, whether any run is in progress, so that declaring during
// a run is caught where it happens instead of corrupting a consumer list that
// a producer is looping over.

#include <atomic>
#include <vector>

namespace ca {
class Analysis;
}

namespace ca::rulesystem {

/// A part of the graph that keeps state for an analysis while it runs (a
/// subrule's pending signals) and must drop it when the run ends.
class RunState {
 public:
  /// Drops whatever this part keeps for `analysis`.
  virtual void forget(ca::Analysis const* analysis) noexcept = 0;

 protected:
  ~RunState() = default;
};

/// One run of the graph over one analysis, on this thread, from construction
/// to destruction (also when the run ends by an exception). `AllNodes::execute`
/// makes one on its stack; runs may nest.
///
/// Invariants: at most one scope per thread is current, the innermost; the
/// parts noted in a scope outlive it (the graph does not change during a run).
class RunScope {
 public:
  explicit RunScope(ca::Analysis const& analysis);
  ~RunScope();
  RunScope(RunScope const&) = delete;
  RunScope& operator=(RunScope const&) = delete;

  /// The innermost run on this thread, or null outside any run.
  static RunScope* current() noexcept;

  /// Notes a part that now keeps state for this run's analysis; it is told to
  /// forget it when the run ends. Noting a part twice is harmless.
  void note(RunState* state);

  /// The number of runs in progress in the process, on all threads.
  static unsigned runsInProgress() noexcept { return running_.load(std::memory_order_relaxed); }

 private:
  ca::Analysis const* analysis_;
  RunScope* outer_;
  std::vector<RunState*> noted_;
  static std::atomic<unsigned> running_;
};

namespace detail {
/// Stops the process when the graph is changed while a run is in progress.
/// Only checked builds (debug and sanitizer) test this; it costs an atomic
/// load per declared stage.
void refuseDeclaringDuringRun(char const* what) noexcept;
}  // namespace detail

}  // namespace ca::rulesystem

#ifdef PLEXUS_CHECKED
#define PLEXUS_CHECK_DECLARING(what) ::ca::rulesystem::detail::refuseDeclaringDuringRun(what)
#else
#define PLEXUS_CHECK_DECLARING(what) static_cast<void>(0)
#endif
