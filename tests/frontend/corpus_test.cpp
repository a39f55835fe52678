// Parses every file of the hand-written corpus under tests/frontend/corpus:
// valid programs of the analysed language in the styles of real projects (a
// numerical toolbox, a class hierarchy in packages, a GUI, book-style scripts,
// parallel code, odd formatting). Each file must parse without a single
// diagnostic; a failure prints every diagnostic of the file.

#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

#include "frontend/diagnostic.hpp"
#include "frontend/parse.hpp"
#include "platform/analysis/file_type.hpp"

#ifndef PLEXUS_CORPUS_DIR
#error "PLEXUS_CORPUS_DIR must name the folder of the corpus"
#endif

namespace {

namespace fs = std::filesystem;

fs::path corpusRoot() { return fs::path(PLEXUS_CORPUS_DIR); }

// Fewer files than this means the corpus is missing or was cut down, and the
// parse tests below would pass on next to nothing.
constexpr std::size_t kMinimumFiles = 50;

/// The `.m` files under the corpus, relative to it, sorted; empty when the
/// folder cannot be read (the count test then says so).
std::vector<std::string> const& corpusFiles() {
  static std::vector<std::string> const files = [] {
    std::vector<std::string> found;
    std::error_code error;
    fs::recursive_directory_iterator it(corpusRoot(), error);
    if (error) return found;
    for (fs::recursive_directory_iterator end; it != end; it.increment(error)) {
      if (error) break;
      if (it->is_regular_file(error) && it->path().extension() == ".m") {
        found.push_back(fs::relative(it->path(), corpusRoot()).generic_string());
      }
    }
    std::sort(found.begin(), found.end());
    return found;
  }();
  return files;
}

std::string readBytes(fs::path const& path) {
  std::ifstream in(path, std::ios::binary);
  return std::string(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
}

/// The file type from the first word that is not in a comment, found by a
/// scan of lines independent of the front end's lexer: a byte-order mark is
/// skipped, `%` lines and (nested) `%{ ... %}` blocks are comments.
ca::FileType expectedFileType(std::string_view source) {
  if (source.starts_with("\xEF\xBB\xBF")) source.remove_prefix(3);
  int blockDepth = 0;
  while (!source.empty()) {
    std::size_t const lineEnd = source.find_first_of("\r\n");
    std::string_view line = source.substr(0, lineEnd);
    source.remove_prefix(lineEnd == std::string_view::npos ? source.size() : lineEnd + 1);
    std::size_t const first = line.find_first_not_of(" \t");
    if (first == std::string_view::npos) continue;
    line.remove_prefix(first);
    line = line.substr(0, line.find_last_not_of(" \t") + 1);
    if (line == "%{") {
      ++blockDepth;
      continue;
    }
    if (blockDepth > 0) {
      if (line == "%}") --blockDepth;
      continue;
    }
    if (line.front() == '%') continue;
    std::size_t length = 0;
    while (length < line.size() && (std::isalnum(static_cast<unsigned char>(line[length])) || line[length] == '_')) {
      ++length;
    }
    std::string_view const word = line.substr(0, length);
    if (word == "function") return ca::FileType::Function;
    if (word == "classdef") return ca::FileType::Class;
    return ca::FileType::Script;
  }
  return ca::FileType::Script;
}

TEST(CorpusFiles, AreThere) {
  auto const& files = corpusFiles();
  ASSERT_GE(files.size(), kMinimumFiles) << "corpus folder " << corpusRoot() << " holds too few .m files";

  // Every part of the corpus is present, not only some of it.
  std::map<std::string, std::size_t> perFolder;
  for (auto const& file : files) perFolder[file.substr(0, file.find('/'))] += 1;
  for (char const* folder : {"book", "geometry", "gui", "numerics", "odd", "parallel"}) {
    EXPECT_GE(perFolder[folder], 3u) << "corpus folder " << folder;
  }

  // The folder conventions of the language are used: a class folder, a
  // private folder and nested packages.
  auto holds = [&](std::string_view part) {
    return std::any_of(files.begin(), files.end(), [&](std::string const& f) { return f.find(part) != std::string::npos; });
  };
  EXPECT_TRUE(holds("/@Polynomial/"));
  EXPECT_TRUE(holds("/private/"));
  EXPECT_TRUE(holds("/+geometry/+shapes/"));
}

// The odd formats must survive checkout: line-end normalisation or an editor
// would quietly turn these files into ordinary ones.
TEST(CorpusFiles, KeepTheirOddFormats) {
  std::string const crlf = readBytes(corpusRoot() / "odd/crlfLineEnds.m");
  ASSERT_FALSE(crlf.empty());
  std::size_t lineFeeds = std::count(crlf.begin(), crlf.end(), '\n');
  std::size_t crlfPairs = 0;
  for (std::size_t at = crlf.find("\r\n"); at != std::string::npos; at = crlf.find("\r\n", at + 2)) ++crlfPairs;
  EXPECT_GT(lineFeeds, 5u);
  EXPECT_EQ(crlfPairs, lineFeeds) << "every line of crlfLineEnds.m ends in CR LF";

  std::string const classic = readBytes(corpusRoot() / "odd/classicMacLineEnds.m");
  ASSERT_FALSE(classic.empty());
  EXPECT_EQ(classic.find('\n'), std::string::npos);
  EXPECT_GT(std::count(classic.begin(), classic.end(), '\r'), 5);

  std::string const mixed = readBytes(corpusRoot() / "odd/mixedLineEnds.m");
  EXPECT_NE(mixed.find("\r\n"), std::string::npos);
  EXPECT_NE(mixed.find(";\r"), std::string::npos);
  EXPECT_NE(mixed.find(",\n"), std::string::npos);

  std::string const bom = readBytes(corpusRoot() / "odd/byteOrderMark.m");
  EXPECT_TRUE(bom.starts_with("\xEF\xBB\xBF" "function"));

  for (char const* name : {"odd/noFinalNewline.m", "odd/noFinalNewlineCommand.m"}) {
    std::string const text = readBytes(corpusRoot() / name);
    ASSERT_FALSE(text.empty()) << name;
    EXPECT_NE(text.back(), '\n') << name;
    EXPECT_NE(text.back(), '\r') << name;
  }

  std::string const tabs = readBytes(corpusRoot() / "odd/tabsEverywhere.m");
  EXPECT_GT(std::count(tabs.begin(), tabs.end(), '\t'), 20);
}

/// One test per file, named after its path.
class CorpusFile : public testing::TestWithParam<std::string> {};

TEST_P(CorpusFile, ParsesWithoutDiagnostics) {
  fs::path const path = corpusRoot() / GetParam();
  std::string const source = readBytes(path);
  ASSERT_FALSE(source.empty()) << path;

  frontend::ParseResult const result = frontend::parse(source, path.generic_string());

  std::ostringstream report;
  for (auto const& diagnostic : result.diagnostics) report << "  " << frontend::formatDiagnostic(diagnostic) << '\n';
  EXPECT_TRUE(result.diagnostics.empty()) << result.diagnostics.size() << " diagnostics for " << GetParam()
                                          << ":\n"
                                          << report.str();
  EXPECT_FALSE(result.hasErrors());

  ASSERT_NE(result.tree, nullptr);
  ASSERT_NE(result.tree->getProgram(), nullptr);
  // Every corpus file holds code, so the tree cannot be empty.
  EXPECT_FALSE(result.tree->getProgram()->getBody().empty()) << GetParam();
  EXPECT_EQ(result.tree->getFileType(), expectedFileType(source)) << GetParam();
}

std::string sanitized(std::string const& path) {
  std::string name;
  for (char c : path) name += std::isalnum(static_cast<unsigned char>(c)) ? c : '_';
  return name;
}

std::string testName(testing::TestParamInfo<std::string> const& info) {
  std::string name = sanitized(info.param);
  // Distinct paths can map to one name (`+a` and `@a`); a later file that
  // would repeat an earlier name gets its index appended.
  auto const& files = corpusFiles();
  for (std::size_t earlier = 0; earlier < info.index && earlier < files.size(); ++earlier) {
    if (sanitized(files[earlier]) == name) return name + "_" + std::to_string(info.index);
  }
  return name;
}

INSTANTIATE_TEST_SUITE_P(Corpus, CorpusFile, testing::ValuesIn(corpusFiles()), testName);

}  // namespace
