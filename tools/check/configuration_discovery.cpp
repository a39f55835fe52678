#include "tools/check/configuration_discovery.hpp"

namespace plexus::check {

namespace fs = std::filesystem;

ConfigurationDiscovery::ConfigurationDiscovery(Mode mode, std::span<rules::RuleDefinition const> rules)
    : mode_(mode), rules_(rules) {
  std::error_code ignored;
  workingFolder_ = fs::current_path(ignored);
}

ConfigurationDiscovery ConfigurationDiscovery::nearest(std::span<rules::RuleDefinition const> rules) {
  return ConfigurationDiscovery(Mode::Nearest, rules);
}

ConfigurationDiscovery ConfigurationDiscovery::given(std::string const& path,
                                                     std::span<rules::RuleDefinition const> rules) {
  ConfigurationDiscovery discovery(Mode::Given, rules);
  discovery.loaded_.push_back(std::make_unique<Configuration const>(Configuration::load(path, rules)));
  return discovery;
}

ConfigurationDiscovery ConfigurationDiscovery::isolated() { return ConfigurationDiscovery(Mode::Isolated, {}); }

Configuration const* ConfigurationDiscovery::configurationFor(std::string const& sourcePath) {
  switch (mode_) {
    case Mode::Isolated:
      return nullptr;
    case Mode::Given:
      return loaded_.front().get();
    case Mode::Nearest:
      break;
  }
  // The walk hands out a folder's files one after another: those cost one
  // comparison, not a normalised path and a hash lookup each.
  std::string_view const spelledFolder = std::string_view(sourcePath).substr(0, sourcePath.rfind('/') + 1);
  if (lastFolder_ && spelledFolder == lastFolder_->first) return lastFolder_->second;
  Configuration const* const found = nearestTo((workingFolder_ / sourcePath).lexically_normal().parent_path(),
                                               sourcePath);
  lastFolder_.emplace(std::string(spelledFolder), found);
  return found;
}

Configuration const* ConfigurationDiscovery::nearestTo(fs::path folder, std::string const& sourcePath) {
  // The folders looked in on this walk, which all get what it finds.
  std::vector<std::string> walked;
  Configuration const* found = nullptr;
  for (;;) {
    auto const known = nearestByFolder_.find(folder.native());
    if (known != nearestByFolder_.end()) {
      found = known->second;
      break;
    }
    walked.push_back(folder.native());
    ++foldersSearched_;
    fs::path const candidate = folder / Configuration::fileName;
    std::error_code error;
    if (fs::exists(fs::status(candidate, error))) {
      loaded_.push_back(
          std::make_unique<Configuration const>(Configuration::load(displayPath(candidate, sourcePath), rules_)));
      found = loaded_.back().get();
      break;
    }
    fs::path parent = folder.parent_path();
    if (parent == folder) break;  // the root
    folder = std::move(parent);
  }
  for (std::string& each : walked) nearestByFolder_.emplace(std::move(each), found);
  return found;
}

std::string ConfigurationDiscovery::displayPath(fs::path const& file, std::string const& sourcePath) const {
  if (fs::path(sourcePath).is_absolute() || workingFolder_.empty()) return file.string();
  fs::path const relative = file.lexically_relative(workingFolder_);
  if (relative.empty() || *relative.begin() == "..") return file.string();
  return relative.string();
}

std::optional<RuleSelection> selectionFor(Configuration const* configuration, std::string const& sourcePath,
                                          std::vector<std::string> const& enable,
                                          std::vector<std::string> const& disable) {
  if (configuration != nullptr && configuration->excludes(sourcePath)) return std::nullopt;
  RuleSelection selection = RuleSelection::defaults();
  if (configuration != nullptr) configuration->applyTo(selection);
  applyCommandLine(selection, enable, disable);
  return selection;
}

}  // namespace plexus::check
