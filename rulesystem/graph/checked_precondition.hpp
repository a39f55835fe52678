#pragma once

// Preconditions of the graph that only checked builds (debug and sanitizer
// builds, where PLEXUS_CHECKED is defined) test: each is a mistake in rule or
// library code that would otherwise read past a container or mix up two
// stages, and a release build does not pay for the test.

#include <cstdio>
#include <cstdlib>
#include <string>

namespace ca::rulesystem::detail {

/// Stops the process with `message`, which says what was wrong and where.
[[noreturn]] inline void failPrecondition(std::string const& message) noexcept {
  std::fprintf(stderr, "plexus: %s\n", message.c_str());
  std::abort();
}

}  // namespace ca::rulesystem::detail

#ifdef PLEXUS_CHECKED
#define PLEXUS_CHECK_PRECONDITION(condition, message) \
  ((condition) ? static_cast<void>(0) : ::ca::rulesystem::detail::failPrecondition(message))
#else
#define PLEXUS_CHECK_PRECONDITION(condition, message) static_cast<void>(0)
#endif
