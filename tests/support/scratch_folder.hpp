#pragma once

// A temporary folder of its own for one test, removed with everything in it
// when the test ends.

#include <stdlib.h>

#include <filesystem>
#include <fstream>
#include <string>
#include <system_error>

namespace plexus::testing {

class ScratchFolder {
 public:
  ScratchFolder() {
    std::string pattern = (std::filesystem::temp_directory_path() / "plexus_test_XXXXXX").string();
    if (mkdtemp(pattern.data()) != nullptr) path_ = pattern;
  }
  ScratchFolder(ScratchFolder const&) = delete;
  ScratchFolder& operator=(ScratchFolder const&) = delete;
  ~ScratchFolder() {
    if (path_.empty()) return;
    std::error_code ignored;
    // Permissions a test took away must not keep its files.
    for (auto const& entry : std::filesystem::recursive_directory_iterator(
             path_, std::filesystem::directory_options::skip_permission_denied, ignored)) {
      if (!entry.is_symlink()) std::filesystem::permissions(entry.path(), std::filesystem::perms::owner_all,
                                                            std::filesystem::perm_options::add, ignored);
    }
    std::filesystem::remove_all(path_, ignored);
  }

  bool made() const { return !path_.empty(); }

  /// The path of `name` in the folder.
  std::string operator/(std::string const& name) const { return (path_ / name).string(); }

  /// Writes a file (its folders made as needed) and gives its path.
  std::string write(std::string const& name, std::string const& bytes) const {
    std::filesystem::path const path = path_ / name;
    std::filesystem::create_directories(path.parent_path());
    std::ofstream(path, std::ios::binary) << bytes;
    return path.string();
  }

 private:
  std::filesystem::path path_;
};

}  // namespace plexus::testing
