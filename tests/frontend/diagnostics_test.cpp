// The table of diagnostics (frontend/diagnostics.def) against what the front
// end and the plexus command's walk report: one case for every kind, brought
// about from source text, a file or a folder as a user would, checking the
// kind, the message and the range; and a check that no kind of the table is
// left without its case.

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/mman.h>
#include <unistd.h>

#include <algorithm>
#include <cstddef>
#include <functional>
#include <ostream>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "frontend/diagnostic.hpp"
#include "frontend/limits.hpp"
#include "frontend/parse.hpp"
#include "frontend/parser.hpp"
#include "frontend/source_file_reader.hpp"
#include "tests/support/scratch_folder.hpp"
#include "tools/plexus/source_files.hpp"

namespace frontend {

// "2:5-2:6 (bytes 9-10)" in test failures.
void PrintTo(SourceSpan const& span, std::ostream* out) {
  *out << span.start.line << ":" << span.start.column << "-" << span.end.line << ":" << span.end.column << " (bytes "
       << span.start.fileOffset << "-" << span.end.fileOffset << ")";
}

}  // namespace frontend

namespace {

using frontend::Diagnostic;
using frontend::DiagnosticExtent;
using frontend::DiagnosticKind;
using frontend::SourcePosition;
using frontend::SourceSpan;
using plexus::testing::ScratchFolder;
using namespace std::string_literals;

using Diagnostics = std::vector<Diagnostic>;

Diagnostics parsed(std::string_view source) { return frontend::parse(source, "t.m").diagnostics; }

Diagnostics read(std::string const& path, std::size_t maxBytes = frontend::maxSourceBytes) {
  frontend::SourceFileReader::Result const result = frontend::SourceFileReader(maxBytes).read(path.c_str());
  if (result.ok()) return {};
  return {result.diagnostic(path)};
}

Diagnostics walked(std::string const& folder) {
  Diagnostics problems;
  plexus::cli::SourceVisitor visitor;
  visitor.file = [](std::string const&) {};
  visitor.problem = [&problems](Diagnostic const& problem) { problems.push_back(problem); };
  plexus::cli::walkSourceFiles({folder}, visitor);
  return problems;
}

std::string utf16(std::string_view ascii, bool littleEndian) {
  std::string out;
  for (char c : ascii) out += littleEndian ? std::string{c, '\0'} : std::string{'\0', c};
  return out;
}

std::string repeat(std::string_view text, std::uint32_t times) {
  std::string out;
  for (std::uint32_t i = 0; i < times; ++i) out += text;
  return out;
}

// A range on one line: `length` characters of as many bytes from `offset`
// (0-based) at `column` of `line`.
SourceSpan on(std::uint32_t line, std::uint32_t column, std::size_t offset, std::uint32_t length) {
  return {{offset, line, column}, {offset + length, line, column + length}};
}
SourceSpan pointAt(std::uint32_t line, std::uint32_t column, std::size_t offset) { return on(line, column, offset, 0); }
constexpr auto depthLimit = static_cast<std::uint32_t>(frontend::maxNestingDepth);
constexpr auto errorLimit = static_cast<std::uint32_t>(frontend::maxErrorsPerFile);
constexpr SourceSpan wholeFile{};                    // line 1, column 1, offset 0, empty
constexpr SourceSpan noPlace{{0, 0, 0}, {0, 0, 0}};  // a path that was not read

// Folders nested deeper than a path can name (more than PATH_MAX bytes), made
// and removed through descriptors, which never spell out the whole path.
class TooDeepFolders {
 public:
  explicit TooDeepFolders(std::string const& root) {
    std::string const name(200, 'd');
    int parent = ::open(root.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    for (int level = 0; parent >= 0 && level < 24; ++level) {
      descriptors_.push_back(parent);
      if (::mkdirat(parent, name.c_str(), 0700) != 0) return;
      parent = ::openat(parent, name.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    }
    if (parent >= 0) ::close(parent);
    made_ = true;
  }
  TooDeepFolders(TooDeepFolders const&) = delete;
  TooDeepFolders& operator=(TooDeepFolders const&) = delete;
  ~TooDeepFolders() {
    std::string const name(200, 'd');
    for (auto level = descriptors_.rbegin(); level != descriptors_.rend(); ++level) {
      ::unlinkat(*level, name.c_str(), AT_REMOVEDIR);
      ::close(*level);
    }
  }
  bool made() const { return made_; }

 private:
  std::vector<int> descriptors_;
  bool made_ = false;
};

// A view of more bytes than the front end reads, none of which may be
// touched: the memory is reserved, not readable.
class UntouchableBytes {
 public:
  explicit UntouchableBytes(std::size_t size)
      : size_(size), data_(::mmap(nullptr, size, PROT_NONE, MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE, -1, 0)) {}
  UntouchableBytes(UntouchableBytes const&) = delete;
  UntouchableBytes& operator=(UntouchableBytes const&) = delete;
  ~UntouchableBytes() {
    if (data_ != MAP_FAILED) ::munmap(data_, size_);
  }
  std::string_view view() const {
    return data_ == MAP_FAILED ? std::string_view() : std::string_view(static_cast<char const*>(data_), size_);
  }

 private:
  std::size_t size_;
  void* data_;
};

struct Case {
  DiagnosticKind kind;
  std::function<Diagnostics()> bringAbout;
  std::string message;
  SourceSpan span;
};

// What every diagnostic holds, whatever its kind: the severity of its kind,
// its line and column at the start of its range, a range that runs forward.
void expectWellFormed(Diagnostic const& d) {
  SCOPED_TRACE(frontend::formatDiagnostic(d));
  EXPECT_EQ(d.severity, frontend::definitionOf(d.kind).severity);
  EXPECT_EQ(d.line, d.span.start.line);
  EXPECT_EQ(d.column, d.span.start.column);
  EXPECT_LE(d.span.start.fileOffset, d.span.end.fileOffset);
  switch (frontend::definitionOf(d.kind).extent) {
    case DiagnosticExtent::Token:
      // A token never spans lines; a point only where a line or the file ends.
      EXPECT_EQ(d.span.start.line, d.span.end.line);
      EXPECT_EQ(d.span.end.column - d.span.start.column == 0, d.span.empty());
      break;
    case DiagnosticExtent::Point: EXPECT_TRUE(d.span.empty()); break;
    case DiagnosticExtent::File: EXPECT_EQ(d.span, wholeFile); break;
    case DiagnosticExtent::Path: EXPECT_EQ(d.span, noPlace); break;
  }
}

TEST(DiagnosticTable, EveryKindIsBroughtAboutWithItsMessageAndRange) {
  ScratchFolder const folder;
  ASSERT_TRUE(folder.made());
  std::string const eleven = folder.write("eleven.m", "0123456789A");
  TooDeepFolders const deep(folder / ".");
  ASSERT_TRUE(deep.made());
  UntouchableBytes const huge(frontend::maxSourceBytes + 1);
  ASSERT_EQ(huge.view().size(), frontend::maxSourceBytes + 1);

  std::vector<Case> const cases = {
      // Reading a path.
      {DiagnosticKind::CannotOpen, [&] { return read(folder / "missing.m"); }, "cannot open: No such file or directory",
       noPlace},
      // Reading the memory of a process from its start, which is never mapped.
      {DiagnosticKind::CannotRead, [] { return read("/proc/self/mem"); }, "cannot read: Input/output error", noPlace},
      {DiagnosticKind::IsAFolder, [&] { return read(folder / "."); }, "is a folder, not a file", noPlace},
      {DiagnosticKind::NotARegularFile, [] { return read("/dev/null"); },
       "is a character device, not a regular file; not read", noPlace},
      {DiagnosticKind::FileTooLarge, [&] { return read(eleven, 10); },
       "file is larger than 10 bytes (11 bytes); not read", noPlace},
      // A file whose size says nothing (zero), read past the limit.
      {DiagnosticKind::FileGrewTooLarge, [] { return read("/proc/self/status", 10); },
       "file grew larger than 10 bytes while read; not read", noPlace},
      {DiagnosticKind::CannotOpenFolder, [&] { return walked(folder / "."); }, "cannot open folder: File name too long",
       noPlace},

      // Decoding.
      {DiagnosticKind::SourceTooLarge, [&] { return parsed(huge.view()); }, "file is larger than 1 GiB; not parsed",
       wholeFile},
      {DiagnosticKind::ReadAsWindows1252, [] { return parsed("% caf\xE9\nx = 1;\n"); },
       "file is not valid UTF-8 (first bad byte at offset 5); read as Windows-1252", wholeFile},
      {DiagnosticKind::ReadAsMarkedUtf16, [] { return parsed("\xFF\xFE"s + utf16("x = 1;\n", true)); },
       "file starts with a byte-order mark of UTF-16LE; read as UTF-16LE", wholeFile},
      {DiagnosticKind::ReadAsUnmarkedUtf16, [] { return parsed(utf16("x = 1;\n", false)); },
       "file has no byte-order mark but every other byte is zero; read as UTF-16BE", wholeFile},
      {DiagnosticKind::NulInFile, [] { return parsed("a = 1;\nb\0 = 2;\n"s); },
       "file holds a NUL byte at offset 8; it is not source text", on(2, 2, 8, 1)},

      // The lexer.
      {DiagnosticKind::UnterminatedCharVector, [] { return parsed("s = 'abc\n"); },
       "unterminated char vector: expected a closing ' before the end of the line", on(1, 5, 4, 4)},
      {DiagnosticKind::UnterminatedString, [] { return parsed("t = \"x\r\n"); },
       "unterminated string: expected a closing \" before the end of the line", on(1, 5, 4, 2)},
      {DiagnosticKind::UnterminatedBlockComment, [] { return parsed("x = 1;\n%{\nnot closed\n"); },
       "unterminated block comment: no line holding only '%}' closes the '%{' here", on(2, 1, 7, 2)},
      {DiagnosticKind::MissingNumberDigits, [] { return parsed("n = 0x;\n"); },
       "expected digits after the number prefix", on(1, 5, 4, 2)},
      {DiagnosticKind::BadNumberSuffix, [] { return parsed("n = 0x1u7;\n"); },
       "number type suffix must be u8, u16, u32, u64, s8, s16, s32 or s64", on(1, 5, 4, 5)},
      // The decoder keeps a NUL from the parser; the parser alone still names it.
      {DiagnosticKind::UnexpectedNul,
       [] {
         std::string const source = "x = \0;\n"s;
         frontend::Parser parser(source, "t.m", frontend::FunctionStyle::Terminated);
         parser.parseFile();
         return parser.diagnostics();
       },
       "unexpected NUL byte", on(1, 5, 4, 1)},
      // A character of two bytes: the range ends one column but two bytes on.
      {DiagnosticKind::UnexpectedCharacter,
       [] { return parsed("y = 1 \u00a7;\n"); },
       "unexpected character '\u00a7'",
       {{6, 1, 7}, {8, 1, 8}}},

      // The parser.
      {DiagnosticKind::UnexpectedToken, [] { return parsed("w = @;\n"); },
       "expected a function name or '(' after '@' but found ';'", on(1, 6, 5, 1)},
      {DiagnosticKind::MissingStatementEnd, [] { return parsed("x = 1 yy\n"); },
       "expected ';', ',' or the end of the line after the statement but found identifier 'yy'", on(1, 7, 6, 2)},
      // What is missing at the end of a line: the point where the line ends.
      {DiagnosticKind::UnclosedParenthesis, [] { return parsed("x = (1 + 2\n"); },
       "expected ')' to close the '(' at line 1, column 5 but found end of line", pointAt(1, 11, 10)},
      {DiagnosticKind::UnclosedMatrix, [] { return parsed("y = [1 2;\nif x\n"); },
       "expected ']' to close the matrix that starts at line 1, column 5 but found 'if'", on(2, 1, 10, 2)},
      {DiagnosticKind::UnclosedArgumentList, [] { return parsed("f(1, 2\n"); },
       "expected ')' or ',' in the argument list that starts at line 1, column 2 but found end of line",
       pointAt(1, 7, 6)},
      {DiagnosticKind::UnexpectedInClass, [] { return parsed("classdef A\n    method\n    end\nend\n"); },
       "expected 'properties', 'methods', 'events', 'enumeration' or 'end' in the class but found identifier 'method'",
       on(2, 5, 15, 6)},
      // ... and at the end of the file, the point after its last line end.
      {DiagnosticKind::MissingEnd, [] { return parsed("if x\n  y = 1;\n"); },
       "expected 'end' to close the 'if' at line 1, column 1 but found end of file", pointAt(3, 1, 14)},
      {DiagnosticKind::StrayBlockCloser, [] { return parsed("x = 1;\nend\n"); }, "'end' without a matching block",
       on(2, 1, 7, 3)},
      {DiagnosticKind::ClassdefNotFirst, [] { return parsed("if x\n  classdef A\n  end\nend\n"); },
       "'classdef' must begin the file", on(2, 3, 7, 8)},
      {DiagnosticKind::BadAssignmentTarget, [] { return parsed("3 = x;\n"); },
       "the left side of '=' must be a variable, or an index or field of one", on(1, 3, 2, 1)},
      {DiagnosticKind::NumberTooLarge, [] { return parsed("n = 0x1FFu8;\n"); }, "number does not fit in 8 bits",
       on(1, 5, 4, 7)},
      // The statement and its expression take two levels, each parenthesis
      // two more (itself and the expression inside): the (limit / 2)th, at
      // column 4 + limit / 2, cannot open.
      {DiagnosticKind::NestingTooDeep,
       [] { return parsed("x = " + repeat("(", depthLimit) + "1" + repeat(")", depthLimit) + ";\n"); },
       "nesting is deeper than " + std::to_string(depthLimit) + " levels",
       on(1, 4 + depthLimit / 2, 3 + depthLimit / 2, 1)},
      // a.b.c...: the name is one level, each link one more, over the
      // statement's two: the (limit - 2)th dot, at column 6 + 2 * (limit - 3),
      // passes the limit.
      {DiagnosticKind::ChainTooDeep, [] { return parsed("x = a" + repeat(".b", depthLimit) + ";\n"); },
       "expression chain is nested deeper than " + std::to_string(depthLimit) + " levels",
       on(1, 6 + 2 * (depthLimit - 3), 5 + 2 * (depthLimit - 3), 1)},
      // One error a line of seven bytes: the first not reported is the one
      // after the limit, and the last diagnostic says so where it stands.
      {DiagnosticKind::TooManyErrors, [] { return parsed(repeat("x = );\n", errorLimit + 10)); },
       "too many errors (" + std::to_string(errorLimit) + "); the rest of the file is not checked",
       pointAt(errorLimit + 1, 5, 7 * errorLimit + 4)},
  };

  // Kinds that no test brings about, each for its reason. A case for one
  // must take it off this list.
  std::set<DiagnosticKind> const unprovoked = {
      // ICU holds its converters in its own library and, with substitution,
      // gives up on no input: only an ICU built without them, or failing
      // inside, reports these.
      DiagnosticKind::NoConverter,
      DiagnosticKind::ConversionFailed,
      // A folder that opened and then fails to list: a failing disk, or a
      // folder removed at the moment it is read.
      DiagnosticKind::CannotListFolder,
  };

  std::set<DiagnosticKind> covered;
  for (Case const& c : cases) {
    std::string_view const name = frontend::definitionOf(c.kind).name;
    SCOPED_TRACE(std::string(name));
    EXPECT_TRUE(covered.insert(c.kind).second) << "two cases for one kind";
    EXPECT_FALSE(unprovoked.contains(c.kind)) << "a kind with a case is still listed as brought about by none";
    Diagnostics const diagnostics = c.bringAbout();
    for (Diagnostic const& d : diagnostics) expectWellFormed(d);
    auto const found =
        std::find_if(diagnostics.begin(), diagnostics.end(), [&c](Diagnostic const& d) { return d.kind == c.kind; });
    ASSERT_NE(found, diagnostics.end()) << "not brought about; the first diagnostic: "
                                        << (diagnostics.empty() ? "none" : frontend::formatDiagnostic(diagnostics[0]));
    EXPECT_EQ(found->message, c.message);
    EXPECT_EQ(found->span, c.span);
  }

  for (std::size_t k = 0; k < frontend::diagnosticKindCount; ++k) {
    auto const kind = static_cast<DiagnosticKind>(k);
    EXPECT_TRUE(covered.contains(kind) || unprovoked.contains(kind))
        << frontend::definitionOf(kind).name << " of diagnostics.def has no case here";
  }
}

// Offsets count bytes of the file, as a tool that reads the file needs them,
// however the text was converted for the lexer; lines and columns count
// characters in both.
TEST(DiagnosticRanges, OffsetsAreThoseOfTheFileAfterAByteOrderMarkOrAConversion) {
  auto errorAt = [](std::string const& bytes) {
    Diagnostics const diagnostics = parsed(bytes);
    auto const error = std::find_if(diagnostics.begin(), diagnostics.end(),
                                    [](Diagnostic const& d) { return d.severity == frontend::Severity::Error; });
    return error == diagnostics.end() ? SourceSpan{} : error->span;
  };
  // UTF-8 after its byte-order mark: three bytes on.
  EXPECT_EQ(errorAt("\xEF\xBB\xBFx = $;\n"), on(1, 5, 7, 1));
  // Windows-1252: one byte a character, where the text has two for each é.
  EXPECT_EQ(errorAt("% \xE9\xE9\nx = $;\n"), on(2, 5, 9, 1));
  // UTF-16: two bytes a character, four for one beyond the first plane, and
  // the mark before them.
  std::string const wide = "\xFF\xFE"s + utf16("% ", true) + "\x3D\xD8\x00\xDE"s + utf16("\nx = $;\n", true);
  EXPECT_EQ(errorAt(wide), (SourceSpan{{2 + 2 * 2 + 4 + 2 + 2 * 4, 2, 5}, {2 + 2 * 2 + 4 + 2 + 2 * 5, 2, 6}}));
  // UTF-8 without a mark: the text's own offsets, where é takes two bytes.
  EXPECT_EQ(errorAt("s = '\u00e9'; $\n"), (SourceSpan{{10, 1, 10}, {11, 1, 11}}));
}

}  // namespace
