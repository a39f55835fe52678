#include "platform/utils/invariant.hpp"

#include <cstdio>
#include <cstdlib>

namespace ca::utils::detail {

void invariantBroken(char const* what, char const* file, int line) noexcept {
  std::fprintf(stderr, "plexus: invariant broken at %s:%d: %s\n", file, line, what);
  std::abort();
}

}  // namespace ca::utils::detail
