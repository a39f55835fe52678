#pragma once

#include <atomic>
#include <cstddef>

namespace plexus::check {

/// How far a run has come, for a progress display on another thread: the
/// workers count as they finish each file, with relaxed atomics and no lock,
/// and a reader may see one count a file ahead of another.
struct CheckProgress {
  /// The files to check; zero until the walk over the paths has found them.
  std::atomic<std::size_t> files{0};
  std::atomic<std::size_t> filesDone{0};
  /// Findings so far, after suppression comments.
  std::atomic<std::size_t> findings{0};
};

}  // namespace plexus::check
