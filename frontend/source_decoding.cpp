#include "frontend/source_decoding.hpp"

#include <unicode/ucnv.h>
#include <unicode/utf8.h>

#include <cstdint>
#include <cstring>
#include <memory>
#include <stdexcept>

namespace frontend {

namespace {

// The offset of the first byte that is not part of a well-formed UTF-8
// sequence, if any.
std::optional<std::size_t> firstInvalidUtf8(std::string_view text) {
  auto const* bytes = reinterpret_cast<std::uint8_t const*>(text.data());
  auto const length = static_cast<std::int32_t>(text.size());
  std::int32_t i = 0;
  while (i < length) {
    // Eight ASCII bytes at a time, the common case.
    if (i + 8 <= length) {
      std::uint64_t word;
      std::memcpy(&word, bytes + i, sizeof word);
      if ((word & 0x8080808080808080ULL) == 0) {
        i += 8;
        continue;
      }
    }
    if (bytes[i] < 0x80) {
      ++i;
      continue;
    }
    std::int32_t const start = i;
    UChar32 c = 0;
    U8_NEXT(bytes, i, length, c);
    if (c < 0) return static_cast<std::size_t>(start);
  }
  return std::nullopt;
}

std::string windows1252ToUtf8(std::string_view text) {
  UErrorCode status = U_ZERO_ERROR;
  std::unique_ptr<UConverter, decltype(&ucnv_close)> converter(ucnv_open("windows-1252", &status), &ucnv_close);
  if (U_FAILURE(status)) throw std::runtime_error("no Windows-1252 converter available");
  // Each byte becomes at most three bytes of UTF-8.
  std::string out(text.size() * 3 + 1, '\0');
  std::int32_t const written =
      ucnv_toAlgorithmic(UCNV_UTF8, converter.get(), out.data(), static_cast<std::int32_t>(out.size()), text.data(),
                         static_cast<std::int32_t>(text.size()), &status);
  if (U_FAILURE(status)) throw std::runtime_error("Windows-1252 conversion failed");
  out.resize(static_cast<std::size_t>(written));
  return out;
}

}  // namespace

DecodedSource decodeSource(std::string_view bytes) {
  if (bytes.size() > static_cast<std::size_t>(INT32_MAX) / 4)
    throw std::length_error("source file larger than 512 MiB");
  constexpr std::string_view bom = "\xEF\xBB\xBF";
  std::size_t skipped = 0;
  if (bytes.substr(0, bom.size()) == bom) {
    bytes.remove_prefix(bom.size());
    skipped = bom.size();
  }
  DecodedSource decoded;
  if (auto bad = firstInvalidUtf8(bytes)) {
    decoded.legacyByteOffset = *bad + skipped;
    decoded.converted = windows1252ToUtf8(bytes);
  }
  decoded.original = bytes;
  return decoded;
}

}  // namespace frontend
