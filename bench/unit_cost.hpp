#pragma once

#include <benchmark/benchmark.h>

#include <chrono>
#include <cstddef>
#include <string>

namespace plexus::bench {

/// Wall time of a benchmark's timed loop, kept by the benchmark itself so that
/// a cost per unit (nanoseconds per node, milliseconds per megabyte) can be
/// reported as a plain number. The library's own inverted rates print with a
/// unit of seconds ("21.8s" for 21.8 ns), which reads as a time per iteration.
///
/// Start it right before `for (auto _ : state)`, pause and resume it together
/// with `state.PauseTiming()` and `state.ResumeTiming()`, and call `report`
/// after the loop; the first `report` stops the clock.
class UnitCost {
 public:
  UnitCost() : started_(Clock::now()) {}

  void pause() {
    if (!running_) return;
    elapsed_ += Clock::now() - started_;
    running_ = false;
  }
  void resume() {
    if (running_) return;
    started_ = Clock::now();
    running_ = true;
  }

  /// Sets `state.counters[name]` to the time per unit of work, in units of
  /// `scale` seconds (1e-9 for nanoseconds), where one iteration did
  /// `unitsPerIteration` units.
  void report(benchmark::State& state, std::string const& name, double unitsPerIteration, double scale) {
    pause();
    double const seconds = std::chrono::duration<double>(elapsed_).count();
    double const units = unitsPerIteration * static_cast<double>(state.iterations());
    state.counters[name] = benchmark::Counter(units > 0 ? seconds / scale / units : 0.0);
  }

  /// Sets `state.counters[name]` to the units of work done per second.
  void reportRate(benchmark::State& state, std::string const& name, double unitsPerIteration) {
    pause();
    double const seconds = std::chrono::duration<double>(elapsed_).count();
    double const units = unitsPerIteration * static_cast<double>(state.iterations());
    state.counters[name] = benchmark::Counter(seconds > 0 ? units / seconds : 0.0);
  }

 private:
  using Clock = std::chrono::steady_clock;
  Clock::time_point started_;
  Clock::duration elapsed_{};
  bool running_ = true;
};

}  // namespace plexus::bench
