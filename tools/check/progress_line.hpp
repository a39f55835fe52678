#pragma once

// The progress line that `plexus check` keeps on a terminal while it runs.

#include <chrono>
#include <condition_variable>
#include <cstddef>
#include <cstdio>
#include <mutex>
#include <string>
#include <thread>

#include "tools/check/check_progress.hpp"

namespace plexus::check {

/// What the line says: "12/40 files, 3 findings, 1.2 s"; before the walk
/// has counted the files, "12 files".
std::string progressText(std::size_t filesDone, std::size_t files, std::size_t findings,
                         std::chrono::steady_clock::duration elapsed);

/// Redraws a progress line in place (a carriage return, no line feed) on a
/// ticker thread of its own, from counts that the run's workers keep; only
/// once the run has taken longer than `delay`, so that a quick run prints
/// nothing. Stopping clears the line it drew, so that what is printed next
/// starts at the beginning of a clean line.
///
/// Meant for a terminal: the caller decides (`isatty`) whether to make one.
class ProgressLine {
 public:
  ProgressLine(std::FILE* stream, CheckProgress const& progress,
               std::chrono::milliseconds delay = std::chrono::milliseconds(500),
               std::chrono::milliseconds interval = std::chrono::milliseconds(100));
  ~ProgressLine() { stop(); }
  ProgressLine(ProgressLine const&) = delete;
  ProgressLine& operator=(ProgressLine const&) = delete;

  /// Ends the ticker and clears the line; once, later calls do nothing.
  void stop();

 private:
  void run(std::stop_token stop);

  std::FILE* stream_;
  CheckProgress const& progress_;
  std::chrono::milliseconds delay_;
  std::chrono::milliseconds interval_;
  std::chrono::steady_clock::time_point started_;
  std::size_t drawnWidth_ = 0;  // of the line on screen, 0 when none
  std::mutex mutex_;
  std::condition_variable_any wake_;
  std::jthread ticker_;  // last: it starts once the rest is ready
};

}  // namespace plexus::check
