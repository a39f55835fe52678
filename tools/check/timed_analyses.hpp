#pragma once

// The time each analysis takes in a profiled run of the checker.

#include <chrono>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "platform/analysis/analysis_impl.hpp"
#include "rulesystem/execution/profiler.hpp"

namespace plexus::check {

/// The time spent making each analysis, by the name a profile shows ("names",
/// "calls", "control flow", "use-def", "class objects"; another analysis
/// under its id), each its own time: without the analyses it asked for.
class AnalysisTimes {
 public:
  void add(std::string const& name, std::chrono::nanoseconds spent);
  void merge(AnalysisTimes const& other);
  /// The front end's analyses first, in the order above, each present even
  /// when it took no time; then any other, by name.
  std::vector<std::pair<std::string, std::chrono::nanoseconds>> byName() const;

 private:
  std::vector<std::pair<std::string, std::chrono::nanoseconds>> times_;
};

/// Makes the analyses of one file through another provider (the front end's
/// registry) and adds the time of each to `times`. An analysis made while a
/// vertex of the rule graph is being timed (a stage asked for it) is reported
/// to `profiler` as foreign time, so that it is not also counted as that
/// vertex's own.
///
/// The names (symbols and identifier uses, one resolution) are made first,
/// when any analysis is asked for: every other analysis of the front end but
/// control flow reads them, and the run's use-def pass asks for them in any
/// case, so this changes only when they are made, and keeps their time out
/// of the analysis that happened to ask first.
///
/// Invariants: serves one file on one thread.
class TimedAnalysisProvider final : public ca::clients::AnalysisProvider {
 public:
  TimedAnalysisProvider(std::shared_ptr<ca::clients::AnalysisProvider const> made, AnalysisTimes& times,
                        ca::rulesystem::Profiler* profiler)
      : made_(std::move(made)), times_(times), profiler_(profiler) {}

  std::shared_ptr<void> makeAnalysis(ca::astapi::StringId analysisId,
                                     ca::clients::AnalysisImpl const& analysis) const override;

 private:
  template <class Make>
  auto timed(std::string const& name, Make make) const;

  std::shared_ptr<ca::clients::AnalysisProvider const> made_;
  AnalysisTimes& times_;
  ca::rulesystem::Profiler* profiler_;
  mutable bool namesMade_ = false;
  // For each analysis being made, innermost last: the time of the analyses
  // it asked for so far.
  mutable std::vector<std::chrono::nanoseconds> below_;
};

}  // namespace plexus::check
