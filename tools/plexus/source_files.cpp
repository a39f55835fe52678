#include "tools/plexus/source_files.hpp"

#include <algorithm>
#include <cstddef>
#include <filesystem>
#include <string_view>
#include <system_error>
#include <utility>

#include "frontend/diagnostic_message.hpp"

namespace plexus::cli {

namespace fs = std::filesystem;

namespace {

struct Entry {
  std::string name;
  bool isFolder;
};

// A folder being walked: its entries in sorted order, the next one at `next`.
struct OpenFolder {
  fs::path path;
  std::vector<Entry> entries;
  std::size_t next = 0;
};

bool isSourceName(std::string_view name) { return name.size() > 2 && name.ends_with(".m"); }

// The entries of one folder that the walk goes on with: its subfolders (not
// links to folders) and its `.m` entries, sorted by name. A folder that
// cannot be listed whole is reported, and what was listed is kept.
std::vector<Entry> listFolder(fs::path const& folder, SourceVisitor const& visitor) {
  std::vector<Entry> entries;
  std::error_code error;
  fs::directory_iterator listing(folder, error);
  if (error) {
    visitor.problem(
        frontend::makeFileDiagnostic<frontend::DiagnosticKind::CannotOpenFolder>(folder.string(), error.message()));
    return entries;
  }
  for (; listing != fs::directory_iterator(); listing.increment(error)) {
    std::string name = listing->path().filename().string();
    std::error_code typeError;
    // Both answered from the listing itself, without a system call per entry.
    bool const isFolder = !listing->is_symlink(typeError) && listing->is_directory(typeError);
    if (isFolder || isSourceName(name)) entries.push_back({std::move(name), isFolder});
  }
  if (error) {
    visitor.problem(
        frontend::makeFileDiagnostic<frontend::DiagnosticKind::CannotListFolder>(folder.string(), error.message()));
  }
  std::sort(entries.begin(), entries.end(), [](Entry const& a, Entry const& b) { return a.name < b.name; });
  return entries;
}

// Depth first with an explicit stack: nesting of folders is the input's to
// choose, not the call stack's.
void walkFolder(fs::path const& root, SourceVisitor const& visitor) {
  std::vector<OpenFolder> stack;
  stack.push_back({root, listFolder(root, visitor)});
  while (!stack.empty()) {
    OpenFolder& folder = stack.back();
    if (folder.next == folder.entries.size()) {
      stack.pop_back();
      continue;
    }
    Entry const& entry = folder.entries[folder.next++];
    fs::path path = folder.path / entry.name;
    if (entry.isFolder) {
      std::vector<Entry> entries = listFolder(path, visitor);
      stack.push_back({std::move(path), std::move(entries)});  // `folder` is not used after this
    } else {
      visitor.file(path.string());
    }
  }
}

}  // namespace

void walkSourceFiles(std::vector<std::string> const& paths, SourceVisitor const& visitor) {
  for (std::string const& given : paths) {
    std::error_code error;
    // A path that does not exist or cannot be looked at goes to the reader,
    // which says why in the system's words.
    if (fs::is_directory(given, error)) {
      walkFolder(given, visitor);
    } else {
      visitor.file(given);
    }
  }
}

}  // namespace plexus::cli
