#include "tools/plexus/source_files.hpp"

#include <fmt/format.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <fstream>
#include <sstream>
#include <system_error>

namespace plexus::cli {

namespace fs = std::filesystem;

namespace {
bool isSource(fs::path const& path) { return path.extension() == ".m"; }
}  // namespace

SourceFiles collectSourceFiles(std::vector<std::string> const& paths) {
  SourceFiles found;
  for (std::string const& given : paths) {
    fs::path const path(given);
    std::error_code error;
    fs::file_status const status = fs::status(path, error);
    if (error || !fs::exists(status)) {
      found.problems.push_back(fmt::format("{}: no such file or folder", given));
      continue;
    }
    if (fs::is_directory(status)) {
      std::vector<fs::path> inFolder;
      fs::recursive_directory_iterator walk(path, fs::directory_options::skip_permission_denied, error);
      for (; !error && walk != fs::recursive_directory_iterator(); walk.increment(error)) {
        std::error_code typeError;
        if (walk->is_regular_file(typeError) && isSource(walk->path())) inFolder.push_back(walk->path());
      }
      if (error) found.problems.push_back(fmt::format("{}: cannot list folder: {}", given, error.message()));
      std::sort(inFolder.begin(), inFolder.end());
      found.files.insert(found.files.end(), inFolder.begin(), inFolder.end());
    } else {
      // A file given by name is read whatever its extension.
      found.files.push_back(path);
    }
  }
  return found;
}

FileContents readFile(fs::path const& path) {
  std::ifstream in(path, std::ios::binary);
  if (!in) return {{}, fmt::format("cannot open: {}", std::strerror(errno))};
  std::ostringstream bytes;
  bytes << in.rdbuf();
  if (in.bad()) return {{}, "read error"};
  return {bytes.str(), {}};
}

}  // namespace plexus::cli
