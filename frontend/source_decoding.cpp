#include "frontend/source_decoding.hpp"

#include <unicode/ucnv.h>
#include <unicode/utf8.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstring>
#include <limits>
#include <memory>

#include "frontend/diagnostic_message.hpp"
#include "frontend/size_text.hpp"

namespace frontend {

static_assert(maxSourceBytes <= static_cast<std::size_t>(std::numeric_limits<std::int32_t>::max()),
              "the UTF-8 check indexes the text with 32-bit integers");
static_assert(maxSourceBytes * 3 <= std::numeric_limits<std::uint32_t>::max(),
              "a converted file (at most three bytes of UTF-8 per byte) must fit the lexer's 32-bit offsets");

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

// UTF-16 without a byte-order mark, as some editors write it: of an even
// number of bytes, every other one is zero (the high bytes of ASCII text).
std::optional<SourceEncoding> unmarkedUtf16(std::string_view bytes) {
  if (bytes.size() < 2 || bytes.size() % 2 != 0) return std::nullopt;
  if (bytes[0] != '\0' && bytes[1] != '\0') return std::nullopt;  // the common case, at once
  bool evenZero = true, oddZero = true;
  for (std::size_t i = 0; i < bytes.size(); ++i) {
    if (bytes[i] == '\0') continue;
    (i % 2 == 0 ? evenZero : oddZero) = false;
    if (!evenZero && !oddZero) return std::nullopt;
  }
  if (oddZero && !evenZero) return SourceEncoding::Utf16LE;
  if (evenZero && !oddZero) return SourceEncoding::Utf16BE;
  return std::nullopt;  // nothing but zeros
}

char const* converterName(SourceEncoding encoding) {
  switch (encoding) {
    case SourceEncoding::Windows1252: return "windows-1252";
    case SourceEncoding::Utf16LE: return "UTF-16LE";
    case SourceEncoding::Utf16BE: return "UTF-16BE";
    case SourceEncoding::Utf8: break;
  }
  return "UTF-8";
}

using Converter = std::unique_ptr<UConverter, decltype(&ucnv_close)>;

Converter openConverter(char const* name, UErrorCode& status) { return {ucnv_open(name, &status), &ucnv_close}; }

// Converts `bytes` to UTF-8, or adds to `diagnostics` why it could not. ICU's streaming
// conversion works through pointers, not 32-bit lengths, so a file of any
// size up to `maxSourceBytes` converts; bytes that do not decode become
// U+FFFD.
std::optional<std::string> convertToUtf8(std::string_view bytes, SourceEncoding from, std::string const& file,
                                         std::vector<Diagnostic>& diagnostics) {
  UErrorCode status = U_ZERO_ERROR;
  Converter source = openConverter(converterName(from), status);
  Converter target = openConverter("UTF-8", status);
  if (U_FAILURE(status)) {
    diagnostics.push_back(
        makeFileDiagnostic<DiagnosticKind::NoConverter>(file, converterName(from), u_errorName(status)));
    return std::nullopt;
  }
  // Most text is ASCII: a byte of Windows-1252 is mostly one byte of UTF-8,
  // two bytes of UTF-16 mostly one. The buffer grows when that is too little.
  std::size_t const guess = from == SourceEncoding::Windows1252 ? bytes.size() : bytes.size() / 2;
  std::string out(guess + guess / 8 + 64, '\0');
  char* written = out.data();
  char const* read = bytes.data();
  std::array<UChar, 4096> pivot;
  UChar* pivotSource = pivot.data();
  UChar* pivotTarget = pivot.data();
  bool reset = true;
  for (;;) {
    status = U_ZERO_ERROR;
    ucnv_convertEx(target.get(), source.get(), &written, out.data() + out.size(), &read, bytes.data() + bytes.size(),
                   pivot.data(), &pivotSource, &pivotTarget, pivot.data() + pivot.size(), reset, true, &status);
    reset = false;
    if (status != U_BUFFER_OVERFLOW_ERROR) break;
    auto const used = static_cast<std::size_t>(written - out.data());
    out.resize(out.size() * 2);
    written = out.data() + used;
  }
  if (U_FAILURE(status)) {
    diagnostics.push_back(
        makeFileDiagnostic<DiagnosticKind::ConversionFailed>(file, converterName(from), u_errorName(status)));
    return std::nullopt;
  }
  out.resize(static_cast<std::size_t>(written - out.data()));
  return out;
}

Diagnostic encodingWarning(DecodedSource const& decoded, std::string const& file) {
  if (decoded.encoding == SourceEncoding::Windows1252) {
    return makeFileDiagnostic<DiagnosticKind::ReadAsWindows1252>(file, *decoded.legacyByteOffset);
  }
  char const* const name = converterName(decoded.encoding);
  return decoded.markBytes > 0 ? makeFileDiagnostic<DiagnosticKind::ReadAsMarkedUtf16>(file, name)
                               : makeFileDiagnostic<DiagnosticKind::ReadAsUnmarkedUtf16>(file, name);
}

}  // namespace

bool DecodedSource::readable() const {
  return std::none_of(diagnostics.begin(), diagnostics.end(),
                      [](Diagnostic const& d) { return d.severity == Severity::Error; });
}

std::size_t DecodedSource::fileOffsetOf(std::size_t textOffset, std::size_t characters, std::size_t beyondBmp) const {
  switch (encoding) {
    case SourceEncoding::Utf8: return markBytes + textOffset;
    case SourceEncoding::Windows1252: return markBytes + characters;
    case SourceEncoding::Utf16LE:
    case SourceEncoding::Utf16BE: break;
  }
  return markBytes + 2 * (characters + beyondBmp);
}

SourcePosition DecodedSource::positionOf(std::size_t textOffset) const {
  std::string_view const all = text();
  std::size_t const end = std::min(textOffset, all.size());
  SourcePosition position;
  std::size_t characters = 0;  // before the offset
  std::size_t beyondBmp = 0;   // characters of them that take two UTF-16 units
  for (std::size_t i = 0; i < end; ++i) {
    auto const byte = static_cast<unsigned char>(all[i]);
    if ((byte & 0xC0) == 0x80) continue;  // inside a character
    ++characters;
    if (byte >= 0xF0) ++beyondBmp;
    if (byte == '\n' || (byte == '\r' && (i + 1 == all.size() || all[i + 1] != '\n'))) {
      ++position.line;
      position.column = 1;
    } else if (byte != '\r') {
      ++position.column;
    }
  }
  position.fileOffset = fileOffsetOf(end, characters, beyondBmp);
  return position;
}

void DecodedSource::placeInFile(std::span<Diagnostic> parsed) const {
  if (encoding == SourceEncoding::Utf8) {
    for (Diagnostic& diagnostic : parsed) {
      diagnostic.span.start.fileOffset += markBytes;
      diagnostic.span.end.fileOffset += markBytes;
    }
    return;
  }
  // Converted text: the characters before each offset, counted in one pass
  // with the offsets in order.
  std::vector<std::size_t*> offsets;
  offsets.reserve(2 * parsed.size());
  for (Diagnostic& diagnostic : parsed) {
    offsets.push_back(&diagnostic.span.start.fileOffset);
    offsets.push_back(&diagnostic.span.end.fileOffset);
  }
  std::sort(offsets.begin(), offsets.end(), [](std::size_t const* a, std::size_t const* b) { return *a < *b; });
  std::string_view const all = text();
  std::size_t i = 0, characters = 0, beyondBmp = 0;
  for (std::size_t* offset : offsets) {
    std::size_t const end = std::min(*offset, all.size());
    for (; i < end; ++i) {
      auto const byte = static_cast<unsigned char>(all[i]);
      if ((byte & 0xC0) == 0x80) continue;  // inside a character
      ++characters;
      if (byte >= 0xF0) ++beyondBmp;
    }
    *offset = fileOffsetOf(end, characters, beyondBmp);
  }
}

DecodedSource decodeSource(std::string_view bytes, std::string_view path) {
  DecodedSource decoded;
  std::string const file(path);
  if (bytes.size() > maxSourceBytes) {
    decoded.diagnostics.push_back(makeFileDiagnostic<DiagnosticKind::SourceTooLarge>(file, sizeText(maxSourceBytes)));
    return decoded;
  }
  constexpr std::string_view utf8Mark = "\xEF\xBB\xBF";
  constexpr std::string_view utf16LeMark = "\xFF\xFE";
  constexpr std::string_view utf16BeMark = "\xFE\xFF";
  if (bytes.starts_with(utf16LeMark)) {
    decoded.encoding = SourceEncoding::Utf16LE;
    decoded.markBytes = utf16LeMark.size();
  } else if (bytes.starts_with(utf16BeMark)) {
    decoded.encoding = SourceEncoding::Utf16BE;
    decoded.markBytes = utf16BeMark.size();
  } else if (bytes.starts_with(utf8Mark)) {
    decoded.markBytes = utf8Mark.size();
  } else if (auto const utf16 = unmarkedUtf16(bytes)) {
    decoded.encoding = *utf16;
  }
  bytes.remove_prefix(decoded.markBytes);
  decoded.original = bytes;
  if (decoded.encoding == SourceEncoding::Utf8) {
    if (auto const bad = firstInvalidUtf8(bytes)) {
      decoded.encoding = SourceEncoding::Windows1252;
      decoded.legacyByteOffset = *bad + decoded.markBytes;
    }
  }
  if (decoded.encoding != SourceEncoding::Utf8) {
    auto converted = convertToUtf8(bytes, decoded.encoding, file, decoded.diagnostics);
    if (!converted) return decoded;
    decoded.converted = std::move(*converted);
    decoded.diagnostics.push_back(encodingWarning(decoded, file));
  }
  if (std::size_t const nul = decoded.text().find('\0'); nul != std::string_view::npos) {
    SourcePosition const at = decoded.positionOf(nul);
    // The NUL is one character, of one byte in the file or of two in UTF-16.
    std::size_t const bytesOfNul =
        decoded.encoding == SourceEncoding::Utf16LE || decoded.encoding == SourceEncoding::Utf16BE ? 2 : 1;
    SourcePosition const after{at.fileOffset + bytesOfNul, at.line, at.column + 1};
    decoded.diagnostics.push_back(makeDiagnostic<DiagnosticKind::NulInFile>(file, {at, after}, at.fileOffset));
  }
  return decoded;
}

}  // namespace frontend
