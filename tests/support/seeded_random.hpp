#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

namespace plexus::testing {

/// splitmix64: small, fast and, unlike the standard distributions, gives the
/// same numbers with every standard library, so that a seed names the same
/// generated program or corpus everywhere. Shared by the test generators and
/// the benchmarks' corpus.
class SeededRandom {
 public:
  explicit SeededRandom(std::uint64_t seed) : state_(seed) {}

  std::uint64_t next() {
    std::uint64_t z = (state_ += 0x9e3779b97f4a7c15ULL);
    z = (z ^ (z >> 30)) * 0xbf58476d1ce4e5b9ULL;
    z = (z ^ (z >> 27)) * 0x94d049bb133111ebULL;
    return z ^ (z >> 31);
  }
  /// A number below `n`; the modulo bias is far below anything generated
  /// text could show.
  std::size_t below(std::size_t n) { return static_cast<std::size_t>(next() % n); }
  int between(int low, int high) { return low + static_cast<int>(below(static_cast<std::size_t>(high - low + 1))); }
  /// True with probability `p`.
  bool chance(double p) { return static_cast<double>(next() >> 11) * 0x1.0p-53 < p; }
  char const* pick(std::span<char const* const> pool) { return pool[below(pool.size())]; }

 private:
  std::uint64_t state_;
};

}  // namespace plexus::testing
