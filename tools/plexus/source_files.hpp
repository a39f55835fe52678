#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace plexus::cli {

/// What a list of paths names: the `.m` files, each folder searched
/// recursively in a stable (sorted) order, and the paths that could not be
/// used, with the reason.
struct SourceFiles {
  std::vector<std::filesystem::path> files;
  std::vector<std::string> problems;  // "path: reason"
};

SourceFiles collectSourceFiles(std::vector<std::string> const& paths);

/// The bytes of a file, or an error message saying why it could not be read.
struct FileContents {
  std::string bytes;
  std::string error;
};

FileContents readFile(std::filesystem::path const& path);

}  // namespace plexus::cli
