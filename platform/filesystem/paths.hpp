#pragma once

#include <string>

namespace fl::filesystem::detail {

/// The last component of a path: "a/b/c.m" gives "c.m", "a/b/" gives "".
std::u16string extract_filename(std::u16string const& path);

/// Everything before the last component, without the separator: "a/b/c.m"
/// gives "a/b", "c.m" gives "", "/c.m" gives "/".
std::u16string extract_parent_path(std::u16string const& path);

/// The path with separators in native form. With `flags` bit 0 set, both '/'
/// and '\' count as separators (paths written on another system), and runs of
/// separators fold into one; the native separator here is '/'.
std::u16string make_native_form(std::u16string const& path, int flags);

}  // namespace fl::filesystem::detail
