#pragma once

// Paths as URIs, for reports that name files by URI (SARIF).

#include <filesystem>
#include <string>
#include <string_view>

namespace plexus::check::reports {

/// The path's bytes as the path of a URI reference: every byte that RFC 3986
/// does not allow as itself in a path segment is percent-encoded (blanks,
/// `%`, `?`, `#`, `:`, `\`, control bytes and every byte of a non-ASCII
/// character), so that a viewer decodes exactly the bytes of the file name.
/// `/` stays the separator.
std::string percentEncodedPath(std::string_view path);

/// A `file://` URI of an absolute path; with `folder`, it ends in `/`, as a
/// base for relative references must.
std::string fileUri(std::filesystem::path const& absolute, bool folder = false);

/// Where a report names a file: a URI reference relative to the working
/// folder when the file lies inside it (`relative` true), else the file's
/// absolute `file://` URI.
struct ArtifactUri {
  std::string uri;
  bool relative;
};

/// The URI of `path` (as the walk found it, relative to the working folder or
/// absolute). Lexical only: symbolic links are named as given, not resolved.
ArtifactUri artifactUri(std::string const& path, std::filesystem::path const& workingFolder);

}  // namespace plexus::check::reports
