// Golden tests of the front end: source cases and the tree dumps they must
// give, kept in tests/frontend/golden/*.golden.
//
// A golden file holds free text up to its first case, then cases:
//
//     ### case name [flags]
//     source line
//     source line
//     ---
//     (Program
//       ...)
//
// The source is the lines between the header and `---`, each ended by a line
// feed; no source line can be `---` or start with `### `. The expectation is
// the indented dump (`DumpLayout::Indented`) up to the next header; blank
// lines around it are ignored. Flags, comma-separated
// in brackets at the end of the header:
//
//     crlf   lines end with CR LF instead of LF
//     cr     lines end with CR
//     noeol  the last source line has no line end
//     bom    the source starts with a UTF-8 byte-order mark
//     error  the case must give an error diagnostic (otherwise it must give
//            no diagnostic at all, warnings included)
//
// With PLEXUS_UPDATE_GOLDEN=1 in the environment the runner rewrites every
// expectation with what the parser gives. Check each rewritten dump by hand
// against the language reference before keeping it.

#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <set>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

#include <unistd.h>

#include "frontend/parse.hpp"
#include "frontend/tree_dump.hpp"

#ifndef PLEXUS_GOLDEN_DIR
#error "PLEXUS_GOLDEN_DIR must name the folder of the golden files"
#endif

namespace {

namespace fs = std::filesystem;
using lf::astapi::NodeKind;

constexpr std::string_view headerMark = "### ";
constexpr std::string_view separator = "---";

struct GoldenCase {
  std::string name;
  std::size_t headerLine = 0;  // 1-based line of the header in the golden file
  std::string source;          // the bytes handed to the parser
  std::string expected;        // the expected dump, lines joined by '\n'
  bool expectError = false;
  std::size_t expectedBegin = 0;  // 0-based line range of the expectation,
  std::size_t expectedEnd = 0;    // blank lines around it included
};

struct GoldenFile {
  fs::path path;
  std::vector<std::string> lines;
  std::vector<GoldenCase> cases;
  std::vector<std::string> problems;  // malformed headers, missing separators, ...
};

std::vector<std::string> splitLines(std::string const& text) {
  std::vector<std::string> lines;
  std::size_t start = 0;
  while (start < text.size()) {
    std::size_t const end = text.find('\n', start);
    if (end == std::string::npos) {
      lines.push_back(text.substr(start));
      break;
    }
    lines.push_back(text.substr(start, end - start));
    start = end + 1;
  }
  return lines;
}

bool isBlank(std::string_view line) { return line.find_first_not_of(" \t") == std::string_view::npos; }

std::string trim(std::string_view text) {
  std::size_t const first = text.find_first_not_of(" \t");
  if (first == std::string_view::npos) return {};
  std::size_t const last = text.find_last_not_of(" \t");
  return std::string(text.substr(first, last - first + 1));
}

// Reads the cases of one golden file from its text. Problems with the format
// are collected, not thrown, so that the test can name them all.
GoldenFile readGolden(fs::path const& path, std::string const& text) {
  GoldenFile file;
  file.path = path;
  if (text.find('\r') != std::string::npos) {
    file.problems.push_back("the golden file holds a CR byte; golden files use LF only (use the crlf or cr flag)");
  }
  file.lines = splitLines(text);
  std::vector<std::string> const& lines = file.lines;
  std::set<std::string> names;

  std::size_t i = 0;
  while (i < lines.size() && !lines[i].starts_with(headerMark)) ++i;  // free text before the first case
  while (i < lines.size()) {
    GoldenCase c;
    c.headerLine = i + 1;
    std::string header = lines[i].substr(headerMark.size());
    std::string eol = "\n";
    bool noEol = false, bom = false;
    if (std::size_t const open = header.rfind('[');
        open != std::string::npos && !header.empty() && header.back() == ']') {
      std::stringstream flags(header.substr(open + 1, header.size() - open - 2));
      header.erase(open);
      for (std::string flag; std::getline(flags, flag, ',');) {
        flag = trim(flag);
        if (flag == "crlf") {
          eol = "\r\n";
        } else if (flag == "cr") {
          eol = "\r";
        } else if (flag == "noeol") {
          noEol = true;
        } else if (flag == "bom") {
          bom = true;
        } else if (flag == "error") {
          c.expectError = true;
        } else {
          file.problems.push_back("line " + std::to_string(c.headerLine) + ": unknown flag '" + flag + "'");
        }
      }
    }
    c.name = trim(header);
    if (c.name.empty()) file.problems.push_back("line " + std::to_string(c.headerLine) + ": a case without a name");
    if (!names.insert(c.name).second) {
      file.problems.push_back("line " + std::to_string(c.headerLine) + ": a second case named '" + c.name + "'");
    }
    ++i;

    std::size_t const sourceBegin = i;
    while (i < lines.size() && lines[i] != separator && !lines[i].starts_with(headerMark)) ++i;
    if (i == lines.size() || lines[i] != separator) {
      file.problems.push_back("case '" + c.name + "' (line " + std::to_string(c.headerLine) + ") has no '---' line");
      continue;
    }
    if (bom) c.source = "\xEF\xBB\xBF";
    for (std::size_t k = sourceBegin; k < i; ++k) {
      c.source += lines[k];
      if (k + 1 < i || !noEol) c.source += eol;
    }
    ++i;

    c.expectedBegin = i;
    while (i < lines.size() && !lines[i].starts_with(headerMark)) ++i;
    c.expectedEnd = i;
    std::size_t first = c.expectedBegin, last = c.expectedEnd;
    while (first < last && isBlank(lines[first])) ++first;
    while (last > first && isBlank(lines[last - 1])) --last;
    for (std::size_t k = first; k < last; ++k) {
      if (k > first) c.expected += '\n';
      c.expected += lines[k];
    }
    if (c.expected.empty()) {
      file.problems.push_back("case '" + c.name + "' (line " + std::to_string(c.headerLine) + ") has no expected dump");
    }
    file.cases.push_back(std::move(c));
  }
  return file;
}

std::string readText(fs::path const& path) {
  std::ifstream in(path, std::ios::binary);
  std::ostringstream text;
  text << in.rdbuf();
  return text.str();
}

std::vector<fs::path> goldenPaths() {
  std::vector<fs::path> paths;
  std::error_code ec;
  for (auto const& entry : fs::directory_iterator(fs::path(PLEXUS_GOLDEN_DIR), ec)) {
    if (entry.is_regular_file() && entry.path().extension() == ".golden") paths.push_back(entry.path());
  }
  std::sort(paths.begin(), paths.end());
  return paths;
}

std::string dumpOf(frontend::ParseResult const& result) {
  if (!result.tree) return "(no tree)";
  return frontend::dumpTree(*result.tree->getProgram(), frontend::DumpLayout::Indented);
}

std::string diagnosticsOf(frontend::ParseResult const& result) {
  std::string out;
  for (frontend::Diagnostic const& d : result.diagnostics) out += "  " + frontend::formatDiagnostic(d) + "\n";
  return out;
}

// Writes the file again with each expectation replaced by the parser's dump.
void rewriteGolden(GoldenFile const& file, std::vector<std::string> const& actual) {
  std::string out;
  std::size_t line = 0;
  for (std::size_t n = 0; n < file.cases.size(); ++n) {
    GoldenCase const& c = file.cases[n];
    for (; line < c.expectedBegin; ++line) out += file.lines[line] + "\n";
    out += actual[n] + "\n";
    if (c.expectedEnd < file.lines.size()) out += "\n";
    line = c.expectedEnd;
  }
  for (; line < file.lines.size(); ++line) out += file.lines[line] + "\n";
  std::ofstream(file.path, std::ios::binary) << out;
}

bool updateRequested() {
  char const* value = std::getenv("PLEXUS_UPDATE_GOLDEN");
  return value != nullptr && std::string_view(value) == "1";
}

// The names of the node kinds that a dump mentions: each word that follows an
// opening parenthesis and names a kind. The quoted text of char vectors and
// strings is skipped, so `'(Matrix'` names no kind.
std::set<std::string> kindsInDump(std::string_view dump) {
  std::set<std::string> kinds;
  std::size_t i = 0;
  while (i < dump.size()) {
    if (dump[i] != '(') {
      ++i;
      continue;
    }
    std::size_t const start = ++i;
    while (i < dump.size() && std::isalpha(static_cast<unsigned char>(dump[i]))) ++i;
    std::string const word(dump.substr(start, i - start));
    if (!word.empty()) kinds.insert(word);
    if ((word == "CharVectorLiteral" || word == "StringLiteral") && i + 1 < dump.size() && dump[i] == ' ') {
      char const quote = word == "CharVectorLiteral" ? '\'' : '"';
      if (dump[i + 1] == quote) {
        i += 2;
        while (i < dump.size()) {
          if (dump[i] == quote) {
            if (i + 1 < dump.size() && dump[i + 1] == quote) {
              i += 2;
              continue;
            }
            ++i;
            break;
          }
          ++i;
        }
      }
    }
  }
  return kinds;
}

// The kinds that the parser can produce (1 to 66 except the two opaque
// placeholders) and that are not in `seen`, as "Name (number)".
std::vector<std::string> missingKinds(std::set<std::string> const& seen) {
  std::vector<std::string> missing;
  for (NodeKind kind : lf::astapi::getAllNodeKinds()) {
    if (kind == NodeKind::OpaqueExpression || kind == NodeKind::OpaqueStatement) continue;
    std::string const name(lf::astapi::nodeKindName(kind));
    if (!seen.contains(name)) missing.push_back(name + " (" + std::to_string(static_cast<int>(kind)) + ")");
  }
  return missing;
}

// ---------------------------------------------------------------------------
// The reader, the rewriter and the kind scan themselves.

TEST(GoldenReader, SplitsCasesAndAppliesFlags) {
  std::string const text =
      "free text before the first case\n"
      "### plain\n"
      "x = 1\n"
      "y\n"
      "---\n"
      "\n"
      "(Program\n"
      "  (X))\n"
      "\n"
      "### ends [crlf, noeol, bom]\n"
      "a\n"
      "b\n"
      "---\n"
      "(P)\n"
      "### old mac [cr]\n"
      "a\n"
      "---\n"
      "(Q)\n"
      "### broken [error]\n"
      "z(\n"
      "---\n"
      "(R)";
  GoldenFile const file = readGolden("mem.golden", text);
  EXPECT_TRUE(file.problems.empty()) << ::testing::PrintToString(file.problems);
  ASSERT_EQ(file.cases.size(), 4u);
  EXPECT_EQ(file.cases[0].name, "plain");
  EXPECT_EQ(file.cases[0].headerLine, 2u);
  EXPECT_EQ(file.cases[0].source, "x = 1\ny\n");
  EXPECT_EQ(file.cases[0].expected, "(Program\n  (X))");
  EXPECT_FALSE(file.cases[0].expectError);
  EXPECT_EQ(file.cases[1].name, "ends");
  EXPECT_EQ(file.cases[1].source,
            "\xEF\xBB\xBF"
            "a\r\nb");
  EXPECT_EQ(file.cases[1].expected, "(P)");
  EXPECT_EQ(file.cases[2].source, "a\r");
  EXPECT_TRUE(file.cases[3].expectError);
  EXPECT_EQ(file.cases[3].expected, "(R)");
}

TEST(GoldenReader, ReportsMalformedCases) {
  GoldenFile const file = readGolden("mem.golden",
                                     "### twice\nx\n---\n(A)\n### twice\ny\n---\n(B)\n"
                                     "### no separator\nz\n### no dump\nw\n---\n\n### [odd]\nv\n---\n(C)\n");
  ASSERT_EQ(file.problems.size(), 5u) << ::testing::PrintToString(file.problems);
  EXPECT_NE(file.problems[0].find("a second case named 'twice'"), std::string::npos);
  EXPECT_NE(file.problems[1].find("'no separator'"), std::string::npos);
  EXPECT_NE(file.problems[2].find("'no dump'"), std::string::npos);
  EXPECT_NE(file.problems[3].find("unknown flag 'odd'"), std::string::npos);
  EXPECT_NE(file.problems[4].find("without a name"), std::string::npos);
}

TEST(GoldenReader, FindsKindsOutsideQuotedText) {
  std::set<std::string> const kinds = kindsInDump(
      "(Program\n  (PrintStatement (CharVectorLiteral '(Matrix '' (Row')) (StringLiteral \"(Cell\")\n"
      "  (ExpressionStatement (Identifier x)))");
  EXPECT_EQ(kinds, (std::set<std::string>{"Program", "PrintStatement", "CharVectorLiteral", "StringLiteral",
                                          "ExpressionStatement", "Identifier"}));
}

TEST(GoldenReader, MissingKindsNamesEachAbsentProducibleKind) {
  std::set<std::string> seen;
  for (NodeKind kind : lf::astapi::getAllNodeKinds()) seen.insert(std::string(lf::astapi::nodeKindName(kind)));
  EXPECT_TRUE(missingKinds(seen).empty());
  seen.erase("Row");
  seen.erase("AnySize");
  seen.erase("OpaqueExpression");  // never produced, so never missing
  seen.erase("OpaqueStatement");
  EXPECT_EQ(missingKinds(seen), (std::vector<std::string>{"AnySize (2)", "Row (59)"}));
}

TEST(GoldenReader, RewriteReplacesOnlyTheExpectations) {
  fs::path const path = fs::temp_directory_path() / ("plexus_golden_rewrite_" + std::to_string(::getpid()) + ".golden");
  std::string const text =
      "free text\n"
      "### first [noeol]\n"
      "a\n"
      "---\n"
      "(Old\n"
      "  (One))\n"
      "\n"
      "\n"
      "### second\n"
      "b\n"
      "\n"
      "---\n"
      "(Old Two)\n";
  GoldenFile const before = readGolden(path, text);
  ASSERT_TRUE(before.problems.empty());
  rewriteGolden(before, {"(New\n  (One))", "(New Two)"});
  std::string const written = readText(path);
  fs::remove(path);
  EXPECT_EQ(written,
            "free text\n"
            "### first [noeol]\n"
            "a\n"
            "---\n"
            "(New\n"
            "  (One))\n"
            "\n"
            "### second\n"
            "b\n"
            "\n"
            "---\n"
            "(New Two)\n");
  GoldenFile const after = readGolden(path, written);
  ASSERT_EQ(after.cases.size(), 2u);
  EXPECT_EQ(after.cases[0].source, "a");
  EXPECT_EQ(after.cases[1].source, "b\n\n");
  EXPECT_EQ(after.cases[1].expected, "(New Two)");
}

// ---------------------------------------------------------------------------
// The golden files.

TEST(GoldenFiles, FolderHoldsGoldenFiles) {
  EXPECT_FALSE(goldenPaths().empty()) << "no .golden files in " << PLEXUS_GOLDEN_DIR;
}

class GoldenTest : public ::testing::TestWithParam<fs::path> {};

TEST_P(GoldenTest, EveryCaseGivesItsDump) {
  fs::path const& path = GetParam();
  GoldenFile const file = readGolden(path, readText(path));
  for (std::string const& problem : file.problems) ADD_FAILURE() << path.string() << ": " << problem;
  ASSERT_FALSE(file.cases.empty()) << path.string() << " holds no case";

  bool const update = updateRequested();
  std::vector<std::string> actual;
  std::size_t failed = 0;
  for (GoldenCase const& c : file.cases) {
    frontend::ParseResult const result = frontend::parse(c.source, "case.m");
    actual.push_back(dumpOf(result));
    std::string const where = path.filename().string() + ":" + std::to_string(c.headerLine) + " case '" + c.name + "'";
    bool caseFailed = false;
    if (c.expectError && !result.hasErrors()) {
      ADD_FAILURE() << where << ": expected an error diagnostic, got none";
      caseFailed = true;
    } else if (!c.expectError && !result.diagnostics.empty()) {
      ADD_FAILURE() << where << ": expected no diagnostics, got\n" << diagnosticsOf(result);
      caseFailed = true;
    }
    if (!update && actual.back() != c.expected) {
      ADD_FAILURE() << where << ": the dump differs\n--- source\n"
                    << c.source << "\n--- expected\n"
                    << c.expected << "\n--- actual\n"
                    << actual.back() << "\n";
      caseFailed = true;
    }
    if (caseFailed) ++failed;
  }
  if (update && file.problems.empty()) {
    rewriteGolden(file, actual);
    std::cout << "[ rewrote  ] " << path.string() << ": " << file.cases.size()
              << " expectations; check each by hand before keeping them\n";
  }
  RecordProperty("cases", static_cast<int>(file.cases.size()));
  EXPECT_EQ(failed, 0u) << failed << " of " << file.cases.size() << " cases failed in " << path.string();
}

std::string goldenTestName(::testing::TestParamInfo<fs::path> const& info) {
  std::string name = info.param.stem().string();
  for (char& ch : name) {
    if (!std::isalnum(static_cast<unsigned char>(ch))) ch = '_';
  }
  return name;
}

INSTANTIATE_TEST_SUITE_P(Golden, GoldenTest, ::testing::ValuesIn(goldenPaths()), goldenTestName);

// Every kind that the parser can produce appears in some expected dump: kinds
// 1 to 66 except the two opaque placeholders, which the parser never makes.
TEST(GoldenCoverage, EveryProducibleKindAppearsInAnExpectedDump) {
  std::set<std::string> seen;
  std::size_t cases = 0;
  for (fs::path const& path : goldenPaths()) {
    GoldenFile const file = readGolden(path, readText(path));
    for (GoldenCase const& c : file.cases) {
      ++cases;
      std::set<std::string> const kinds = kindsInDump(c.expected);
      seen.insert(kinds.begin(), kinds.end());
    }
  }
  ASSERT_GT(cases, 0u);

  std::vector<std::string> const missing = missingKinds(seen);
  EXPECT_TRUE(missing.empty()) << "node kinds in no golden dump: " << ::testing::PrintToString(missing);

  // A word after '(' that names no kind is a typo in an expectation.
  std::set<std::string> known;
  for (NodeKind kind : lf::astapi::getAllNodeKinds()) known.insert(std::string(lf::astapi::nodeKindName(kind)));
  std::vector<std::string> unknown;
  for (std::string const& word : seen) {
    if (!known.contains(word)) unknown.push_back(word);
  }
  EXPECT_TRUE(unknown.empty()) << "words after '(' in golden dumps that name no node kind: "
                               << ::testing::PrintToString(unknown);
  EXPECT_FALSE(seen.contains("OpaqueExpression") || seen.contains("OpaqueStatement"))
      << "the parser never produces the opaque kinds; no golden dump may expect them";
}

}  // namespace
