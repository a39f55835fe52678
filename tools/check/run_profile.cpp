#include "tools/check/run_profile.hpp"

#include <fmt/format.h>

#include <algorithm>
#include <tuple>

#include "tools/check/rule_graph.hpp"

namespace plexus::check {

Milliseconds RuleTimes::total() const {
  Milliseconds owned{0};
  for (RuleTimeRow const& row : rows) owned += row.own;
  return owned + shared + unowned;
}

RuleTimes ruleTimes(ca::rulesystem::AllNodes const& all, std::vector<ProfiledRule> const& rules,
                    ca::rulesystem::Profiler const& profiler) {
  std::vector<std::vector<ca::rulesystem::ConsumerBase const*>> reports;
  RuleTimes times;
  for (ProfiledRule const& rule : rules) {
    reports.push_back(rule.reports);
    RuleTimeRow row{rule.id, 0, Milliseconds{0}, Milliseconds{0}};
    for (auto const* report : rule.reports) {
      if (auto found = profiler.numConsumed.find(report); found != profiler.numConsumed.end()) {
        row.items += found->second;
      }
    }
    times.rows.push_back(std::move(row));
  }
  auto const owners = pipelineOwners(all, reports);
  for (auto const& [vertex, time] : profiler.timeOf) {
    Milliseconds const self = time.self;
    auto const owned = owners.find(vertex);
    if (owned == owners.end()) {
      times.unowned += self;
    } else if (owned->second.size() == 1) {
      times.rows[owned->second.front()].own += self;
    } else {
      times.shared += self;
      for (std::size_t rule : owned->second) times.rows[rule].share += self / static_cast<double>(owned->second.size());
    }
  }
  std::stable_sort(times.rows.begin(), times.rows.end(), [](RuleTimeRow const& a, RuleTimeRow const& b) {
    return std::make_tuple(-a.time().count(), a.rule) < std::make_tuple(-b.time().count(), b.rule);
  });
  return times;
}

std::string formatProfile(RunProfile const& profile) {
  std::string out = fmt::format("profile: {} {} on {} {}, times in ms\n", profile.files,
                                profile.files == 1 ? "file" : "files", profile.threads,
                                profile.threads == 1 ? "thread" : "threads");
  std::size_t width = 36;
  for (RuleTimeRow const& row : profile.rules.rows) width = std::max(width, row.rule.size() + 2);
  out += fmt::format("{:<{}}{:>10}{:>11}{:>11}{:>11}\n", "rule", width, "items", "time", "own", "shared");
  for (RuleTimeRow const& row : profile.rules.rows) {
    out += fmt::format("{:<{}}{:>10}{:>11.3f}{:>11.3f}{:>11.3f}\n", row.rule, width, row.items, row.time().count(),
                       row.own.count(), row.share.count());
  }
  auto line = [&](std::string const& what, Milliseconds time) {
    // Under the time column.
    out += fmt::format("{:<{}}{:>11.3f}\n", what, width + 10, time.count());
  };
  line("shared by rules (each vertex once)", profile.rules.shared);
  if (profile.rules.unowned.count() > 0) line("vertices of no rule", profile.rules.unowned);
  line("rules", profile.rules.total());
  line("parse", profile.parse);
  Milliseconds accounted = profile.rules.total() + profile.parse;
  for (auto const& [name, time] : profile.analyses) {
    line("analysis: " + name, time);
    accounted += time;
  }
  line("other (reading, tree walk, suppressions)", std::max(Milliseconds{0}, profile.workers - accounted));
  line("threads in all", profile.workers);
  line("total (wall clock)", profile.wall);
  return out;
}

}  // namespace plexus::check
