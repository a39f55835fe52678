#include "tools/check/reports/uri_reference.hpp"

#include <fmt/format.h>

namespace plexus::check::reports {

namespace fs = std::filesystem;

namespace {

// RFC 3986 pchar without ':' (a colon in the first segment of a relative
// reference would read as a scheme) and without '%' (always an escape).
bool standsForItself(unsigned char byte) {
  if ((byte >= 'a' && byte <= 'z') || (byte >= 'A' && byte <= 'Z') || (byte >= '0' && byte <= '9')) return true;
  return std::string_view("-._~!$&'()*+,;=@/").find(static_cast<char>(byte)) != std::string_view::npos;
}

}  // namespace

std::string percentEncodedPath(std::string_view path) {
  std::string encoded;
  encoded.reserve(path.size());
  for (char const c : path) {
    auto const byte = static_cast<unsigned char>(c);
    if (standsForItself(byte)) {
      encoded += c;
    } else {
      encoded += fmt::format("%{:02X}", byte);
    }
  }
  return encoded;
}

std::string fileUri(fs::path const& absolute, bool folder) {
  std::string uri = "file://" + percentEncodedPath(absolute.generic_string());
  if (folder && !uri.ends_with('/')) uri += '/';
  return uri;
}

ArtifactUri artifactUri(std::string const& path, fs::path const& workingFolder) {
  fs::path base = workingFolder.lexically_normal();
  // "/work/" would compare as "/work" plus an empty name.
  if (!base.has_filename() && base.has_relative_path()) base = base.parent_path();
  fs::path const absolute = (base / fs::path(path)).lexically_normal();
  fs::path const relative = absolute.lexically_relative(base);
  bool const inside = !relative.empty() && *relative.begin() != ".." && relative != ".";
  if (!inside) return {fileUri(absolute), false};
  return {percentEncodedPath(relative.generic_string()), true};
}

}  // namespace plexus::check::reports
