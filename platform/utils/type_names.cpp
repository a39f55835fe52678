#include "platform/utils/type_names.hpp"

#include <string_view>

namespace ca::utils {

namespace {
bool isNameChar(char16_t c) {
  return (c >= u'a' && c <= u'z') || (c >= u'A' && c <= u'Z') || (c >= u'0' && c <= u'9') || c == u'_';
}
}  // namespace

std::u16string prettifyTypeName(std::u16string const& fullName) {
  constexpr std::u16string_view flavour = u"<ca::astapi::CA>";
  std::u16string out;
  out.reserve(fullName.size());
  std::size_t i = 0;
  while (i < fullName.size()) {
    if (std::u16string_view(fullName).substr(i, flavour.size()) == flavour) {
      i += flavour.size();
      continue;
    }
    if (fullName.compare(i, 3, u"::*") == 0) {
      // A member pointer: the class before it is what it points into, no
      // qualifier, and stays.
      out += u"::*";
      i += 3;
      continue;
    }
    if (fullName.compare(i, 2, u"::") == 0) {
      // Drop the qualifier just written: the name characters before "::".
      while (!out.empty() && isNameChar(out.back())) out.pop_back();
      i += 2;
      continue;
    }
    out.push_back(fullName[i]);
    ++i;
  }
  return out;
}

}  // namespace ca::utils
