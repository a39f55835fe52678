#pragma once

#include <fstream>
#include <ostream>
#include <string>

namespace plexus::check::reports {

/// Where a report goes: standard output, or the file of `--output`, opened
/// (and emptied) when this is made, before the run, so that a file that
/// cannot be written stops the command before any work is done.
class ReportOutput {
 public:
  /// Standard output when `path` is empty.
  explicit ReportOutput(std::string path);

  /// Empty when the report can be written, else a line for standard error
  /// that names the file and the reason.
  std::string const& error() const { return error_; }

  std::ostream& stream();

  /// Whether to colour the report: never in a file; on standard output, see
  /// wantsColour.
  bool colour() const;

  /// Flushes what was written; false, with error() set, when writing failed
  /// (a full disk).
  bool finish();

 private:
  std::string path_;
  std::ofstream file_;
  std::string error_;
};

}  // namespace plexus::check::reports
