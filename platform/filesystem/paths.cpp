#include "platform/filesystem/paths.hpp"

namespace fl::filesystem::detail {

std::u16string extract_filename(std::u16string const& path) {
  std::size_t slash = path.find_last_of(u'/');
  return slash == std::u16string::npos ? path : path.substr(slash + 1);
}

std::u16string extract_parent_path(std::u16string const& path) {
  std::size_t slash = path.find_last_of(u'/');
  if (slash == std::u16string::npos) return {};
  if (slash == 0) return u"/";
  return path.substr(0, slash);
}

std::u16string make_native_form(std::u16string const& path, int flags) {
  bool const anySeparator = (flags & 1) != 0;
  std::u16string out;
  out.reserve(path.size());
  for (char16_t c : path) {
    bool const separator = c == u'/' || (anySeparator && c == u'\\');
    if (separator) {
      if (anySeparator && !out.empty() && out.back() == u'/') continue;
      out.push_back(u'/');
    } else {
      out.push_back(c);
    }
  }
  return out;
}

}  // namespace fl::filesystem::detail
