#pragma once

#include <cstddef>
#include <locale>
#include <sstream>
#include <string>
#include <string_view>

namespace fl::i18n {

/// UTF-8 to 16-bit text. Invalid sequences become U+FFFD.
std::u16string to_ustring(std::string const& text);

/// 16-bit text to UTF-8. Unpaired surrogates become U+FFFD.
std::string to_utf8(std::u16string_view text);

/// Tag that selects case-insensitive comparison.
struct case_insensitive {};

namespace detail {
/// Compares two texts under full Unicode case folding. Returns 0 when they are
/// equal, a negative number when `a` comes first, a positive one otherwise.
int compare(char16_t const* a, std::size_t aLength, char16_t const* b, std::size_t bLength, case_insensitive);
}  // namespace detail

namespace facet {
/// The locale with which the system's text streams are imbued: the classic
/// locale, so that numbers are written without grouping and with a '.' as
/// decimal point, whatever the environment says.
std::locale const& get_global_std_locale();
}  // namespace facet

/// A 16-bit text stream. Values are formatted by their `operator<<` for
/// narrow streams, under the global locale, and converted from UTF-8; 16-bit
/// text is appended as it is.
///
///     TextStream s;
///     s << u"isNthItemInList " << 3;
///     assert(s.str() == u"isNthItemInList 3");
class TextStream {
 public:
  TextStream() { narrow_.imbue(facet::get_global_std_locale()); }

  TextStream& operator<<(std::u16string_view text) {
    flushNarrow();
    text_ += text;
    return *this;
  }
  TextStream& operator<<(char16_t const* text) { return *this << std::u16string_view(text); }
  TextStream& operator<<(std::u16string const& text) { return *this << std::u16string_view(text); }

  template <class T>
  TextStream& operator<<(T const& value) {
    narrow_ << value;
    return *this;
  }

  std::u16string str() {
    flushNarrow();
    return text_;
  }

 private:
  void flushNarrow();

  std::ostringstream narrow_;
  std::u16string text_;
};

}  // namespace fl::i18n
