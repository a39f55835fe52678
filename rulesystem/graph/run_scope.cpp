#include "rulesystem/graph/run_scope.hpp"

#include <algorithm>
#include <cstdio>
#include <cstdlib>

namespace ca::rulesystem {

namespace {
thread_local RunScope* innermost = nullptr;
}  // namespace

std::atomic<unsigned> RunScope::running_{0};

RunScope::RunScope(ca::Analysis const& analysis) : analysis_(&analysis), outer_(innermost) {
  innermost = this;
  running_.fetch_add(1, std::memory_order_relaxed);
}

RunScope::~RunScope() {
  for (RunState* state : noted_) state->forget(analysis_);
  running_.fetch_sub(1, std::memory_order_relaxed);
  innermost = outer_;
}

RunScope* RunScope::current() noexcept { return innermost; }

void RunScope::note(RunState* state) {
  // A run notes each part at most once, and a graph has few parts that keep
  // state: a linear search beats a set here.
  if (std::find(noted_.begin(), noted_.end(), state) == noted_.end()) noted_.push_back(state);
}

namespace detail {
void refuseDeclaringDuringRun(char const* what) noexcept {
  unsigned const runs = RunScope::runsInProgress();
  if (runs == 0) return;
  std::fprintf(stderr,
               "plexus: %s while %u run(s) of a rule graph are in progress; finish declaring rules before "
               "the first AllNodes::execute\n",
               what, runs);
  std::abort();
}
}  // namespace detail

}  // namespace ca::rulesystem
