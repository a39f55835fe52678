#pragma once

#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "tools/check/check_progress.hpp"
#include "tools/check/finding.hpp"
#include "tools/check/rule_selection.hpp"
#include "tools/check/run_profile.hpp"

namespace ca::clients {
class AnalysisImpl;
}

namespace plexus::check {

struct CheckOptions {
  /// Files and folders; folders are searched recursively for `.m` files.
  std::vector<std::string> paths{"."};
  /// Globs of paths to leave out (see isExcluded).
  std::vector<std::string> excludes;
  /// Worker threads; 0 for the number of cores.
  unsigned jobs = 0;
  /// The rules for every file, unless `selectionFor` is set.
  RuleSelection selection = RuleSelection::defaults();
  /// When set, the rules for one file, or none to leave the file out
  /// (called once per file in walk order, before any file is analysed, on
  /// the calling thread; what it throws ends the run before any analysis).
  std::function<std::optional<RuleSelection>(std::string const& path)> selectionFor;
  /// When set, called with the analysis of each file that parses, on the
  /// worker thread that checks it, before its rules run. The analyses are
  /// made when a rule first asks for them, so a measurement of a run
  /// without rules uses this to make them as the rules would.
  std::function<void(ca::clients::AnalysisImpl const& analysis)> beforeRules;
  /// Measure the time of parsing, of each analysis and of each rule's
  /// vertices (see CheckReport::profile); it slows the run a little.
  bool profile = false;
  /// When set, counted up as the run goes, for a display on another thread.
  CheckProgress* progress = nullptr;
};

/// What a run found.
struct CheckReport {
  /// Sorted (see Finding::operator<).
  std::vector<Finding> findings;
  /// The number of files checked, excluded ones not counted.
  std::size_t files = 0;
  /// Problems with the input itself, each a line for standard error: a path
  /// given that does not exist. They make the exit code 2.
  std::vector<std::string> inputErrors;
  /// What the run measured, when CheckOptions::profile asked for it.
  std::optional<RunProfile> profile;
};

/// Whether `path` matches one of the globs: a glob with a `/` is matched
/// against the whole path (a leading "./" of either ignored), one without
/// against each of the path's names, so that `build` leaves out a folder
/// and `*_test.m` such files anywhere.
bool isExcluded(std::string const& path, std::vector<std::string> const& globs);

/// Declares every enabled rule once on one graph and checks each file on a
/// pool of threads, all sharing that graph, each file with its own analysis.
CheckReport runCheck(CheckOptions const& options);

}  // namespace plexus::check
