// Reading the bytes of a file as source text: encodings, where a diagnostic of
// decoding stands in the file, and files too large.

#include <gtest/gtest.h>
#include <sys/mman.h>
#include <unistd.h>

#include <cstddef>
#include <string>
#include <string_view>

#include "frontend/parse.hpp"
#include "frontend/source_decoding.hpp"

namespace {

using frontend::decodeSource;
using frontend::DecodedSource;
using frontend::Severity;
using frontend::SourceEncoding;

using namespace std::string_literals;

// "x = 1;\n" in UTF-16, little- or big-endian.
std::string utf16(std::string_view ascii, bool littleEndian) {
  std::string out;
  for (char c : ascii) out += littleEndian ? std::string{c, '\0'} : std::string{'\0', c};
  return out;
}

TEST(SourceDecoding, Utf16WithAndWithoutAByteOrderMarkIsConvertedWithAWarning) {
  struct Case {
    std::string bytes;
    SourceEncoding encoding;
    std::string_view warning;
  };
  Case const cases[] = {
      {"\xFF\xFE"s + utf16("x = 1;\n", true), SourceEncoding::Utf16LE,
       "file starts with a byte-order mark of UTF-16LE; read as UTF-16LE"},
      {"\xFE\xFF"s + utf16("x = 1;\n", false), SourceEncoding::Utf16BE,
       "file starts with a byte-order mark of UTF-16BE; read as UTF-16BE"},
      {utf16("x = 1;\n", true), SourceEncoding::Utf16LE,
       "file has no byte-order mark but every other byte is zero; read as UTF-16LE"},
      {utf16("x = 1;\n", false), SourceEncoding::Utf16BE,
       "file has no byte-order mark but every other byte is zero; read as UTF-16BE"},
  };
  for (Case const& c : cases) {
    DecodedSource const decoded = decodeSource(c.bytes, "u.m");
    EXPECT_EQ(decoded.encoding, c.encoding) << c.warning;
    EXPECT_EQ(decoded.text(), "x = 1;\n") << c.warning;
    EXPECT_TRUE(decoded.readable()) << c.warning;
    ASSERT_EQ(decoded.diagnostics.size(), 1u) << c.warning;
    EXPECT_EQ(decoded.diagnostics[0].file, "u.m");
    EXPECT_EQ(decoded.diagnostics[0].severity, Severity::Warning);
    EXPECT_EQ(decoded.diagnostics[0].message, c.warning);
    // The parser reads the converted text, as it would the same text in UTF-8.
    frontend::ParseResult const parsed = frontend::parse(c.bytes, "u.m");
    EXPECT_FALSE(parsed.hasErrors()) << c.warning;
  }

  // Characters beyond the first plane and bad sequences: a lone surrogate
  // and a last odd byte become U+FFFD.
  DecodedSource const mixed = decodeSource("\xFF\xFE"
                                           "\xE9\x00"           // é
                                           "\x3D\xD8\x00\xDE"   // U+1F600, a surrogate pair
                                           "\x00\xD8"           // a lone high surrogate
                                           "a\x00"
                                           "b"s);               // half a unit
  EXPECT_EQ(mixed.text(), "\xC3\xA9\xF0\x9F\x98\x80\xEF\xBF\xBD"
                          "a\xEF\xBF\xBD");

  // Not UTF-16: zero bytes at no regular place, and zeros alone.
  EXPECT_EQ(decodeSource("x\0\0y"s).encoding, SourceEncoding::Utf8);
  EXPECT_EQ(decodeSource("\0\0\0\0"s).encoding, SourceEncoding::Utf8);
  EXPECT_EQ(decodeSource("a\0b"s).encoding, SourceEncoding::Utf8);  // odd length
}

TEST(SourceDecoding, Windows1252IsConvertedWhateverItGrowsTo) {
  // Each € (0x80) becomes three bytes of UTF-8: far more than a first guess
  // at the size of the text, which must grow.
  std::string const euros(100'000, '\x80');
  DecodedSource const decoded = decodeSource(euros);
  EXPECT_EQ(decoded.encoding, SourceEncoding::Windows1252);
  ASSERT_EQ(decoded.text().size(), 300'000u);
  EXPECT_EQ(decoded.text().substr(299'997), "\xE2\x82\xAC");
  EXPECT_EQ(decoded.legacyByteOffset, 0u);
  ASSERT_EQ(decoded.diagnostics.size(), 1u);
  EXPECT_EQ(decoded.diagnostics[0].message,
            "file is not valid UTF-8 (first bad byte at offset 0); read as Windows-1252");

  // A byte-order mark of UTF-8 before bad bytes counts in the offset.
  DecodedSource const marked = decodeSource("\xEF\xBB\xBFx = '\xE9';\n");
  EXPECT_EQ(marked.legacyByteOffset, 8u);
  EXPECT_EQ(marked.text(), "x = '\xC3\xA9';\n");
}

// A NUL byte leaves no source text, and its place is given in the file's own
// terms: lines as the lexer ends them (LF, CR LF or a lone CR), the column
// in characters, the offset in bytes of the file, whatever the text was
// converted to.
TEST(SourceDecoding, ANulByteIsPlacedInTheFilesOwnLinesColumnsAndOffsets) {
  struct Case {
    std::string bytes;
    std::uint32_t line, column;
    std::size_t offset;
  };
  Case const cases[] = {
      {"ab\0"s, 1, 3, 2},
      {"x\n\xC3\xA9\0"s, 2, 2, 4},          // UTF-8: é is one character of two bytes
      {"x = 'caf\xE9';\0"s, 1, 12, 11},     // Windows-1252: é is one byte
      {"% caf\xE9\r\xE9\xE9\0"s, 2, 3, 9},  // ... with a lone CR for a line end
      {"a\rb\rc\0"s, 3, 2, 5},              // lone CRs
      {"a\r\nb\r\n\0"s, 3, 1, 6},           // CR LF is one line end
      {"a\n\rb\0"s, 3, 2, 4},               // LF then CR: two
      {"\xEF\xBB\xBF" "a\0"s, 1, 2, 4},     // after a byte-order mark of UTF-8
      {"\xFF\xFE" "a\0\n\0\0\0"s, 2, 1, 6}, // UTF-16: two bytes a character
      {"\xFF\xFE" "\x3D\xD8\x00\xDE" "\0\0"s, 1, 2, 6},  // a surrogate pair: four bytes
  };
  for (Case const& c : cases) {
    DecodedSource const decoded = decodeSource(c.bytes, "n.m");
    std::string const name = testing::PrintToString(c.bytes);
    EXPECT_FALSE(decoded.readable()) << name;
    ASSERT_FALSE(decoded.diagnostics.empty()) << name;
    frontend::Diagnostic const& nul = decoded.diagnostics.back();
    EXPECT_EQ(nul.severity, Severity::Error) << name;
    EXPECT_EQ(nul.line, c.line) << name;
    EXPECT_EQ(nul.column, c.column) << name;
    EXPECT_EQ(nul.message, "file holds a NUL byte at offset " + std::to_string(c.offset) + "; it is not source text")
        << name;
  }
}

// A view of many bytes that costs the memory of one block: the same block of
// shared memory mapped again and again, end to end. A byte written to the
// block shows in every copy.
class RepeatedBlock {
 public:
  explicit RepeatedBlock(std::size_t size) : size_(size), mapped_((size + block - 1) / block * block) {
    int const memory = memfd_create("plexus_test_block", MFD_CLOEXEC);
    if (memory < 0) return;
    bool made = ftruncate(memory, block) == 0;
    void* const reserved =
        made ? mmap(nullptr, mapped_, PROT_NONE, MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE, -1, 0) : MAP_FAILED;
    if (reserved != MAP_FAILED) {
      data_ = static_cast<char*>(reserved);
      for (std::size_t offset = 0; made && offset < mapped_; offset += block) {
        made = mmap(data_ + offset, block, PROT_READ | PROT_WRITE, MAP_SHARED | MAP_FIXED, memory, 0) != MAP_FAILED;
      }
      if (!made) {
        munmap(data_, mapped_);
        data_ = nullptr;
      }
    }
    close(memory);
  }
  RepeatedBlock(RepeatedBlock const&) = delete;
  RepeatedBlock& operator=(RepeatedBlock const&) = delete;
  ~RepeatedBlock() {
    if (data_ != nullptr) munmap(data_, mapped_);
  }
  char* data() const { return data_; }
  std::string_view view() const { return {data_, size_}; }

 private:
  static constexpr std::size_t block = std::size_t{2} << 20;
  std::size_t size_, mapped_;
  char* data_ = nullptr;
};

TEST(SourceDecoding, LargeFilesGiveADiagnosticNotAnException) {
#if defined(__SANITIZE_THREAD__)
  GTEST_SKIP() << "half a gibibyte read costs gibibytes of shadow memory under ThreadSanitizer";
#endif
  // Past 512 MiB: decoded as any other file (here "x=" and zeros, over and
  // over), the size alone is no reason to fail.
  RepeatedBlock const large(std::size_t{512} << 20 | 1);
  ASSERT_NE(large.data(), nullptr);
  large.data()[0] = 'x';
  large.data()[1] = '=';
  DecodedSource decoded;
  ASSERT_NO_THROW(decoded = decodeSource(large.view(), "large.m"));
  ASSERT_EQ(decoded.diagnostics.size(), 1u);
  EXPECT_EQ(decoded.diagnostics[0].message, "file holds a NUL byte at offset 2; it is not source text");

  // Past the limit: refused without a look at the bytes.
  RepeatedBlock const tooLarge(frontend::maxSourceBytes + 1);
  ASSERT_NE(tooLarge.data(), nullptr);
  ASSERT_NO_THROW(decoded = decodeSource(tooLarge.view(), "huge.m"));
  EXPECT_FALSE(decoded.readable());
  EXPECT_TRUE(decoded.text().empty());
  ASSERT_EQ(decoded.diagnostics.size(), 1u);
  EXPECT_EQ(decoded.diagnostics[0].file, "huge.m");
  EXPECT_EQ(decoded.diagnostics[0].message, "file is larger than 1 GiB; not parsed");
}

}  // namespace
