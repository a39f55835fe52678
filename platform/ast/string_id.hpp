#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <iosfwd>
#include <string>
#include <string_view>

#include "platform/ast/text.hpp"

namespace ca::astapi {

/// An interned 16-bit name, one word wide.
///
/// Invariants: two ids are equal exactly when their texts are equal, because
/// each distinct text is stored once for the life of the process and the id is
/// the address of that one copy. The word is the hash. Interning is
/// thread-safe; comparing, hashing and `getString` take no lock.
///
///     StringId a(u"plot"), b(u"plot");
///     assert(a == b && a.hash() == b.hash());
class StringId {
 public:
  /// The id of the empty name.
  StringId();
  explicit StringId(std::u16string_view text);
  explicit StringId(TextView text) : StringId(toStdView(text)) {}
  explicit StringId(char16_t const* text) : StringId(std::u16string_view(text)) {}
  explicit StringId(std::u16string const& text) : StringId(std::u16string_view(text)) {}

  /// The id of UTF-8 text; invalid sequences become U+FFFD.
  static StringId fromUtf8(std::string_view text);

  /// The interned text; it lives as long as the process.
  std::u16string const& getString() const noexcept { return *text_; }
  std::size_t hash() const noexcept { return reinterpret_cast<std::uintptr_t>(text_); }

  friend bool operator==(StringId a, StringId b) noexcept { return a.text_ == b.text_; }
  /// Orders by text (code units), so that ordered sets of ids list the same
  /// way in every run.
  friend bool operator<(StringId a, StringId b) noexcept { return a.text_ != b.text_ && *a.text_ < *b.text_; }

 private:
  std::u16string const* text_;
};

/// Writes the text as UTF-8.
std::ostream& operator<<(std::ostream& out, StringId id);

}  // namespace ca::astapi

template <>
struct std::hash<ca::astapi::StringId> {
  std::size_t operator()(ca::astapi::StringId id) const noexcept { return id.hash(); }
};
