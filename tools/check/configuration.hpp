#pragma once

// One plexus.toml: what it says about the rules and the files to leave out,
// read and checked against the rule table as a whole before any file is
// analysed.
//
//     exclude = ["generated", "legacy/*.m"]
//
//     [rules]
//     enable = ["global-declaration"]
//     disable = ["syntax-error"]
//
//     [rules.long-identifier]
//     max-length = 40

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <map>
#include <optional>
#include <span>
#include <stdexcept>
#include <string>
#include <vector>

#include "tools/check/rule_selection.hpp"
#include "tools/rules/rule_table.hpp"

namespace plexus::check {

/// A configuration file that cannot be used: every problem found in it, each
/// a line `path:line:column: error: message` (without the line and column
/// when the file could not be read at all).
class ConfigurationError : public std::runtime_error {
 public:
  explicit ConfigurationError(std::vector<std::string> problems);

  std::vector<std::string> const& problems() const { return problems_; }

 private:
  std::vector<std::string> problems_;
};

/// What one configuration file asks for.
class Configuration {
 public:
  /// The name that discovery looks for in each folder.
  static constexpr char const* fileName = "plexus.toml";

  /// Reads and checks the file at `path` against `rules` (their ids and
  /// options); throws ConfigurationError naming every problem. `path` is
  /// kept as given, for messages.
  static Configuration load(std::string const& path,
                            std::span<rules::RuleDefinition const> rules = rules::ruleTable());

  /// The file's path as given to `load`.
  std::string const& path() const { return path_; }

  /// Turns on and off what the file names, and sets the options it gives;
  /// what it does not mention keeps its value. `selection` has one entry per
  /// rule of the table the file was loaded against.
  void applyTo(RuleSelection& selection) const;

  /// Whether the file's `exclude` globs leave out the source file at
  /// `sourcePath`; they are matched (as --exclude globs are) against the
  /// source file's path relative to the configuration file's folder.
  bool excludes(std::string const& sourcePath) const;

 private:
  std::string path_;
  std::filesystem::path folder_;  // absolute and normal
  std::vector<std::string> excludes_;
  std::vector<std::size_t> enabled_;   // indexes into the rule table
  std::vector<std::size_t> disabled_;  // likewise
  // Per rule, the options the file sets, by their index among the rule's options.
  std::map<std::size_t, std::map<std::size_t, std::int64_t>> options_;
};

}  // namespace plexus::check
