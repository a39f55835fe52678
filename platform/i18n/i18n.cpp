#include "platform/i18n/i18n.hpp"

#include <unicode/uchar.h>
#include <unicode/unistr.h>
#include <unicode/ustring.h>

#include <climits>
#include <stdexcept>

namespace fl::i18n {

std::u16string to_ustring(std::string const& text) {
  if (text.size() > static_cast<std::size_t>(INT32_MAX)) {
    throw std::length_error("to_ustring: text longer than 2 GiB");
  }
  icu::UnicodeString converted =
      icu::UnicodeString::fromUTF8(icu::StringPiece(text.data(), static_cast<int32_t>(text.size())));
  return std::u16string(converted.getBuffer(), static_cast<std::size_t>(converted.length()));
}

std::string to_utf8(std::u16string_view text) {
  if (text.size() > static_cast<std::size_t>(INT32_MAX)) {
    throw std::length_error("to_utf8: text longer than 2 GiB");
  }
  std::string out;
  icu::UnicodeString(false, text.data(), static_cast<int32_t>(text.size())).toUTF8String(out);
  return out;
}

namespace detail {
int compare(char16_t const* a, std::size_t aLength, char16_t const* b, std::size_t bLength, case_insensitive) {
  UErrorCode status = U_ZERO_ERROR;
  int result = u_strCaseCompare(a, static_cast<int32_t>(aLength), b, static_cast<int32_t>(bLength), U_FOLD_CASE_DEFAULT,
                                &status);
  if (U_FAILURE(status)) {
    throw std::runtime_error(std::string("case-insensitive comparison failed: ") + u_errorName(status));
  }
  return result;
}
}  // namespace detail

namespace facet {
std::locale const& get_global_std_locale() {
  static std::locale const locale = std::locale::classic();
  return locale;
}
}  // namespace facet

void TextStream::flushNarrow() {
  std::string pending = narrow_.str();
  if (pending.empty()) return;
  text_ += to_ustring(pending);
  narrow_.str(std::string());
}

}  // namespace fl::i18n
