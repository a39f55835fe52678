#pragma once

// What `plexus check --profile` prints: the time of each rule, from the
// self times of the vertices of its pipeline, and of each phase of the run.

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include "rulesystem/execution/all_nodes.hpp"
#include "rulesystem/execution/profiler.hpp"

namespace plexus::check {

using Milliseconds = std::chrono::duration<double, std::milli>;

/// One rule's line of the profile.
struct RuleTimeRow {
  std::string rule;
  /// Items that reached the rule's report consumers.
  std::int64_t items = 0;
  /// The vertices of its pipeline that no other rule has.
  Milliseconds own{0};
  /// Its even part of each vertex it shares with other rules: a vertex of
  /// three rules gives each a third of its time.
  Milliseconds share{0};

  Milliseconds time() const { return own + share; }
};

/// The time of a run's rules.
struct RuleTimes {
  /// Most time first, then by rule.
  std::vector<RuleTimeRow> rows;
  /// The vertices of several rules, each counted once: the sum of the rows'
  /// shares.
  Milliseconds shared{0};
  /// The vertices that lie in no rule's pipeline.
  Milliseconds unowned{0};

  /// The self time of every vertex, each once.
  Milliseconds total() const;
};

/// A rule as the profile names it, with the consumers that report its
/// findings; its pipeline is every vertex they depend on.
struct ProfiledRule {
  std::string id;
  std::vector<ca::rulesystem::ConsumerBase const*> reports;
};

/// The time of each rule from the vertex times that `profiler` measured over
/// the graph `all`.
RuleTimes ruleTimes(ca::rulesystem::AllNodes const& all, std::vector<ProfiledRule> const& rules,
                    ca::rulesystem::Profiler const& profiler);

/// Everything a profiled run measured. The times of parsing, analyses and
/// rules are summed over the worker threads, so that with several threads
/// they add up to more than the wall clock.
struct RunProfile {
  RuleTimes rules;
  Milliseconds parse{0};
  /// By the names of `AnalysisTimes::byName`, in its order.
  std::vector<std::pair<std::string, Milliseconds>> analyses;
  /// The time the workers spent on files, summed over the workers.
  Milliseconds workers{0};
  /// From the start of the run to its end.
  Milliseconds wall{0};
  unsigned threads = 1;
  std::size_t files = 0;
};

/// The profile as a table for people, times in milliseconds.
std::string formatProfile(RunProfile const& profile);

}  // namespace plexus::check
