#pragma once

// Which plexus.toml applies to each checked file: the nearest one in the
// file's folder or a folder above it, the one given with --config, or none
// with --isolated.

#include <cstddef>
#include <filesystem>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

#include "tools/check/configuration.hpp"
#include "tools/check/rule_selection.hpp"
#include "tools/rules/rule_table.hpp"

namespace plexus::check {

class ConfigurationDiscovery {
 public:
  /// Looks for each source file's nearest plexus.toml, walking up from its
  /// folder. What a folder holds is looked at once per discovery, so that
  /// the files of one folder (and of its subfolders, for the folders above)
  /// cost one look between them. `rules` must outlive the discovery.
  static ConfigurationDiscovery nearest(std::span<rules::RuleDefinition const> rules = rules::ruleTable());

  /// Uses the file at `path` for every source file. It is loaded here, so
  /// that its problems are told before any source file is looked at.
  static ConfigurationDiscovery given(std::string const& path,
                                      std::span<rules::RuleDefinition const> rules = rules::ruleTable());

  /// Uses no file.
  static ConfigurationDiscovery isolated();

  /// The configuration of the source file at `sourcePath`, or null when
  /// there is none; throws ConfigurationError when the file found cannot be
  /// used.
  Configuration const* configurationFor(std::string const& sourcePath);

  /// How many folders have been looked in for a plexus.toml so far.
  std::size_t foldersSearched() const { return foldersSearched_; }

 private:
  enum class Mode { Nearest, Given, Isolated };

  explicit ConfigurationDiscovery(Mode mode, std::span<rules::RuleDefinition const> rules);

  // The nearest configuration at or above `folder` (absolute and normal),
  // found for the source file at `sourcePath`.
  Configuration const* nearestTo(std::filesystem::path folder, std::string const& sourcePath);

  // How a configuration found at `file` (absolute) is named in messages:
  // relative to the working folder when it lies below it and the source
  // file was named relatively, as the user wrote it, else in full.
  std::string displayPath(std::filesystem::path const& file, std::string const& sourcePath) const;

  Mode mode_;
  std::span<rules::RuleDefinition const> rules_;
  std::filesystem::path workingFolder_;
  // Loaded configurations; a unique_ptr keeps each at its address.
  std::vector<std::unique_ptr<Configuration const>> loaded_;
  // Each folder looked at, with the nearest configuration at or above it.
  std::unordered_map<std::string, Configuration const*> nearestByFolder_;
  std::size_t foldersSearched_ = 0;
  // The folder of the last source file as it was spelled (up to its last
  // '/'), with what was found for it.
  std::optional<std::pair<std::string, Configuration const*>> lastFolder_;
};

/// The rules for the source file at `sourcePath`: every rule on with its
/// default options, then what `configuration` (when there is one) says, then
/// the command line's `enable` and `disable`; none when the configuration
/// leaves the file out.
std::optional<RuleSelection> selectionFor(Configuration const* configuration, std::string const& sourcePath,
                                          std::vector<std::string> const& enable,
                                          std::vector<std::string> const& disable);

}  // namespace plexus::check
