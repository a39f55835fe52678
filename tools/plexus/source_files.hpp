#pragma once

#include <functional>
#include <string>
#include <vector>

#include "frontend/diagnostic.hpp"

namespace plexus::cli {

/// What a walk over the paths of a command line meets, as it meets it.
struct SourceVisitor {
  /// A file to read: a path given that is not a folder, whatever its
  /// extension (reading it says whether it exists and is a file), or a
  /// `.m` entry of a folder.
  std::function<void(std::string const& path)> file;
  /// A folder that could not be opened or listed whole: a diagnostic that
  /// names it and the reason.
  std::function<void(frontend::Diagnostic const& problem)> problem;
};

/// Walks the paths in the order given, handing each file to the visitor as
/// soon as it is found, so that the first file is read before the last folder
/// is listed and no list of every file is ever held. A folder is searched for
/// `.m` files one folder at a time: its entries in sorted order, each
/// subfolder walked where its name sorts, so the order is stable from run to
/// run. Symbolic links to folders inside a folder are not followed (a link
/// can close a loop); a `.m` link is handed on like a file.
void walkSourceFiles(std::vector<std::string> const& paths, SourceVisitor const& visitor);

}  // namespace plexus::cli
