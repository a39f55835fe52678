#pragma once

// Invariants that headers state and code relies on without testing them
// again: checked builds (debug and sanitizer builds, which define
// PLEXUS_CHECKED) stop the program where one breaks, with what broke and
// where, instead of letting it corrupt memory or answer wrongly later.
// Other builds compile the check away.
//
//     PLEXUS_INVARIANT(entry.syntax == owner, "the entry of a control-flow graph stands for its owner");

namespace ca::utils::detail {
/// Writes "plexus: invariant broken at FILE:LINE: WHAT" to the standard error
/// and aborts.
[[noreturn]] void invariantBroken(char const* what, char const* file, int line) noexcept;
}  // namespace ca::utils::detail

#ifdef PLEXUS_CHECKED
#define PLEXUS_INVARIANT(condition, what) \
  ((condition) ? static_cast<void>(0) : ::ca::utils::detail::invariantBroken(what, __FILE__, __LINE__))
#else
// Unevaluated, so that what the condition names still counts as used.
#define PLEXUS_INVARIANT(condition, what) static_cast<void>(sizeof((condition) ? 1 : 0))
#endif
