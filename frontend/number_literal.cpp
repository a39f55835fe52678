#include "frontend/number_literal.hpp"

#include <charconv>
#include <limits>
#include <string>
#include <system_error>

namespace frontend {

using lf::astapi::NumericValue;

namespace {

bool isDigit(char c) { return c >= '0' && c <= '9'; }
bool isHexDigit(char c) { return isDigit(c) || (c >= 'a' && c <= 'f') || (c >= 'A' && c <= 'F'); }
bool isNameChar(char c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || isDigit(c) || c == '_'; }

bool isPrefixed(std::string_view spelled) {
  return spelled.size() >= 2 && spelled[0] == '0' &&
         (spelled[1] == 'x' || spelled[1] == 'X' || spelled[1] == 'b' || spelled[1] == 'B');
}

NumberValue evaluateInteger(std::string_view spelled) {
  int const base = (spelled[1] == 'x' || spelled[1] == 'X') ? 16 : 2;
  std::string_view digits = spelled.substr(2);
  std::string_view suffix;
  if (std::size_t const s = digits.find_first_of("us"); s != std::string_view::npos) {
    suffix = digits.substr(s);
    digits = digits.substr(0, s);
  }
  std::uint64_t raw = 0;
  if (std::from_chars(digits.data(), digits.data() + digits.size(), raw, base).ec == std::errc::result_out_of_range) {
    return {0.0, 64};
  }
  int bits = 0;
  if (!suffix.empty()) std::from_chars(suffix.data() + 1, suffix.data() + suffix.size(), bits);
  bool const isSigned = !suffix.empty() && suffix[0] == 's';
  int const width = bits != 0 ? bits : raw <= 0xFF ? 8 : raw <= 0xFFFF ? 16 : raw <= 0xFFFFFFFF ? 32 : 64;
  if (width < 64 && raw >> width != 0) return {0.0, width};
  switch (width) {
    case 8:
      return {isSigned ? NumericValue(static_cast<std::int8_t>(raw)) : NumericValue(static_cast<std::uint8_t>(raw))};
    case 16:
      return {isSigned ? NumericValue(static_cast<std::int16_t>(raw)) : NumericValue(static_cast<std::uint16_t>(raw))};
    case 32:
      return {isSigned ? NumericValue(static_cast<std::int32_t>(raw)) : NumericValue(static_cast<std::uint32_t>(raw))};
    default: return {isSigned ? NumericValue(static_cast<std::int64_t>(raw)) : NumericValue(raw)};
  }
}

NumberValue evaluateDouble(std::string_view spelled) {
  bool imaginary = false;
  char const lastChar = spelled.back();
  if (lastChar == 'i' || lastChar == 'j' || lastChar == 'I' || lastChar == 'J') {
    imaginary = true;
    spelled.remove_suffix(1);
  }
  // An exponent may be written with d or D; from_chars wants e.
  std::string normalized;
  if (spelled.find_first_of("dD") != std::string_view::npos) {
    normalized.assign(spelled);
    for (char& c : normalized) {
      if (c == 'd' || c == 'D') c = 'e';
    }
    spelled = normalized;
  }
  double parsed = 0.0;
  if (std::from_chars(spelled.data(), spelled.data() + spelled.size(), parsed).ec == std::errc::result_out_of_range) {
    parsed = std::numeric_limits<double>::infinity();
  }
  return {imaginary ? NumericValue(lf::astapi::ImaginaryDouble{parsed}) : NumericValue(parsed)};
}

}  // namespace

NumberExtent scanNumber(std::string_view source, std::uint32_t start) {
  std::uint32_t i = start;
  auto at = [source](std::uint32_t k) { return k < source.size() ? source[k] : '\0'; };
  if (isPrefixed(source.substr(start, 2))) {
    bool const hex = at(i + 1) == 'x' || at(i + 1) == 'X';
    i += 2;
    std::uint32_t const digits = i;
    while (hex ? isHexDigit(at(i)) : (at(i) == '0' || at(i) == '1')) ++i;
    if (i == digits) return {i, NumberFault::MissingDigits};
    // An optional type suffix: u8 u16 u32 u64 s8 s16 s32 s64.
    if ((at(i) == 'u' || at(i) == 's') && isDigit(at(i + 1))) {
      std::uint32_t j = i + 1;
      while (isDigit(at(j))) ++j;
      std::string_view const bits = source.substr(i + 1, j - i - 1);
      if (bits != "8" && bits != "16" && bits != "32" && bits != "64") return {j, NumberFault::BadSuffix};
      i = j;
    }
    return {i};
  }
  while (isDigit(at(i))) ++i;
  if (at(i) == '.') {
    char const after = at(i + 1);
    // In 1./a, 1.^2, 1.*b, 1.\c and 1.' the dot starts an operator.
    bool const operatorDot = after == '*' || after == '/' || after == '\\' || after == '^' || after == '\'';
    if (!operatorDot && source.substr(i, 3) != "...") {
      ++i;
      while (isDigit(at(i))) ++i;
    }
  }
  if (at(i) == 'e' || at(i) == 'E' || at(i) == 'd' || at(i) == 'D') {
    std::uint32_t j = i + 1;
    if (at(j) == '+' || at(j) == '-') ++j;
    if (isDigit(at(j))) {
      while (isDigit(at(j))) ++j;
      i = j;
    }
  }
  if ((at(i) == 'i' || at(i) == 'j' || at(i) == 'I' || at(i) == 'J') && !isNameChar(at(i + 1))) ++i;
  return {i};
}

NumberValue evaluateNumber(std::string_view spelled) {
  return isPrefixed(spelled) && spelled.size() > 2 ? evaluateInteger(spelled) : evaluateDouble(spelled);
}

}  // namespace frontend
