// The calls and syntax vocabulary against its table (vocabulary.def): the
// table lists every name the vocabulary's headers export, and every entry is
// used by an end-to-end test, so that no factory ships untried.

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <regex>
#include <set>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include "tests/support/source_scan.hpp"

#ifndef PLEXUS_SOURCE_DIR
#error "PLEXUS_SOURCE_DIR must name the source tree"
#endif

namespace {

namespace fs = std::filesystem;

/// A factory or tag (no operator), or a comparison written with a tag.
using Entry = std::pair<std::string, std::string>;

std::set<Entry> tableEntries() {
  return {
#define PLEXUS_FACTORY(name) {#name, ""},
#define PLEXUS_OPERATOR(tag, op) {#tag, #op},
#include "tests/rulesystem/vocabulary.def"
#undef PLEXUS_FACTORY
#undef PLEXUS_OPERATOR
  };
}

std::string codeOf(fs::path const& file) {
  std::ifstream in(file, std::ios::binary);
  return plexus::testing::codeOnly({std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()});
}

std::vector<fs::path> filesUnder(fs::path const& folder, std::string const& extension) {
  std::vector<fs::path> files;
  if (!fs::exists(folder)) return files;
  for (auto const& entry : fs::recursive_directory_iterator(folder)) {
    if (entry.is_regular_file() && entry.path().extension() == extension) files.push_back(entry.path());
  }
  return files;
}

/// The lines of header code outside `namespace detail { ... }`, whose end is
/// found by counting braces (the code has no comments or literals left).
std::vector<std::string> exportedLines(std::string const& code) {
  std::vector<std::string> kept;
  std::istringstream lines(code);
  std::string line;
  long depth = 0;  // of braces within `detail`, 0 outside it
  while (std::getline(lines, line)) {
    if (depth == 0 && line.starts_with("namespace detail")) {
      depth = std::count(line.begin(), line.end(), '{') - std::count(line.begin(), line.end(), '}');
      continue;
    }
    if (depth > 0) {
      depth += std::count(line.begin(), line.end(), '{') - std::count(line.begin(), line.end(), '}');
      continue;
    }
    kept.push_back(line);
  }
  return kept;
}

/// What the header code exports at namespace scope, outside `detail`: tags
/// (structs named in lower camel case), factories (functions so named) and
/// comparison operators with one of `tags` among their parameters.
std::set<Entry> exportedBy(std::string const& code, std::set<std::string> const& tags) {
  static std::regex const tag(R"(^struct\s+([a-z]\w*))");
  static std::regex const factory(
      R"(^(?!\s|template\b|namespace\b|using\b|struct\b|class\b|requires\b|inline constexpr\b)[^(]*?\b([a-z]\w*)\s*\()");
  static std::regex const comparison(R"(\boperator\s*(==|!=|<=|>=|<|>)\s*\(([^)]*)\))");
  static std::regex const word(R"(\b[a-z]\w*\b)");
  std::set<Entry> found;
  for (std::string const& line : exportedLines(code)) {
    std::smatch match;
    if (std::regex_search(line, match, tag)) found.insert({match[1].str(), ""});
    if (std::regex_search(line, match, factory) && match[1].str() != "operator") found.insert({match[1].str(), ""});
    if (std::regex_search(line, match, comparison)) {
      std::string const parameters = match[2].str();
      for (auto w = std::sregex_iterator(parameters.begin(), parameters.end(), word); w != std::sregex_iterator(); ++w) {
        if (tags.contains(w->str())) found.insert({w->str(), match[1].str()});
      }
    }
  }
  return found;
}

/// The tags that `code` declares.
std::set<std::string> tagsIn(std::string const& code) {
  std::set<std::string> tags;
  for (Entry const& entry : exportedBy(code, {})) tags.insert(entry.first);
  return tags;
}

fs::path const root(PLEXUS_SOURCE_DIR);

TEST(VocabularyCoverage, TheTableListsExactlyWhatTheHeadersExport) {
  std::string headers;
  for (char const* folder : {"rulesystem/calls", "rulesystem/syntax"}) {
    for (fs::path const& header : filesUnder(root / folder, ".hpp")) headers += codeOf(header) + "\n";
  }
  std::set<Entry> const exported = exportedBy(headers, tagsIn(headers));
  std::set<Entry> const table = tableEntries();
  for (Entry const& entry : exported) {
    EXPECT_TRUE(table.contains(entry)) << entry.first << " " << entry.second
                                       << " is exported but not listed in tests/rulesystem/vocabulary.def";
  }
  for (Entry const& entry : table) {
    EXPECT_TRUE(exported.contains(entry)) << entry.first << " " << entry.second
                                          << " is listed in vocabulary.def but no header exports it";
  }
}

std::string escaped(std::string const& text) {
  static std::regex const special(R"([.^$|()\[\]{}*+?\\])");
  return std::regex_replace(text, special, R"(\$&)");
}

/// Whether `code` uses the entry: a factory called, braced or instantiated; a
/// comparison with the tag on either side.
bool uses(std::string const& code, Entry const& entry) {
  std::string const name = escaped(entry.first);
  if (entry.second.empty()) return std::regex_search(code, std::regex(R"(\b)" + name + R"(\s*[({<])"));
  std::string const op = escaped(entry.second);
  // `<` and `>` must not be the start of `<=` and `>=`, nor the end of them.
  std::string const notLonger = entry.second.size() == 1 ? "(?!=)" : "";
  std::string const tagValue = R"(\b)" + name + R"(\s*(?:\{\}|\(\)))";
  return std::regex_search(code, std::regex(tagValue + R"(\s*)" + op + notLonger)) ||
         std::regex_search(code, std::regex(R"((?:^|[^=<>!]))" + op + notLonger + R"(\s*)" + tagValue));
}

TEST(VocabularyCoverage, EveryEntryIsUsedByAnEndToEndTest) {
  std::string tests;
  for (char const* folder : {"tests/rulesystem/calls", "tests/rulesystem/syntax"}) {
    for (fs::path const& file : filesUnder(root / folder, ".cpp")) tests += codeOf(file) + "\n";
  }
  for (fs::path const& file : filesUnder(root / "tests/rulesystem/reference", ".cpp")) {
    if (file.filename().string().starts_with("pipelines_")) tests += codeOf(file) + "\n";
  }
  std::set<Entry> const table = tableEntries();
  EXPECT_GE(table.size(), 80u) << "the table lost its entries";
  for (Entry const& entry : table) {
    EXPECT_TRUE(uses(tests, entry)) << entry.first << " " << entry.second << " is used by no end-to-end test";
  }
}

// The matching itself, on made-up code.
TEST(VocabularyCoverage, UsesAndExportsAreReadAsWritten) {
  std::string const code = "auto a = all.parenOperation | getCalls{} | (numArguments{} >= 2);\n"
                           "auto b = 3 < identifierLength{};\n";
  EXPECT_TRUE(uses(code, {"getCalls", ""}));
  EXPECT_TRUE(uses(code, {"numArguments", ">="}));
  EXPECT_FALSE(uses(code, {"numArguments", ">"}));
  EXPECT_TRUE(uses(code, {"identifierLength", "<"}));
  EXPECT_FALSE(uses(code, {"identifierLength", "<="}));
  EXPECT_FALSE(uses(code, {"getArgument", ""}));

  std::string const header = "struct getArgument {\n  unsigned long index;\n};\n"
                             "std::unique_ptr<Predicate<Call const&>> isDotSyntax();\n"
                             "std::unique_ptr<Predicate<Call const&>> operator>=(numArguments const&, unsigned long count);\n"
                             "std::unique_ptr<Predicate<Call const&>> operator<(unsigned long count, numArguments);\n"
                             "template <template <class> class P>\nrequires isPipeHandle<P> P<Expression const&>\n"
                             "operator|(P<Call const&> producer, getArgument argument);\n"
                             "namespace detail {\ninline int helper() {\n  return 1;\n}\nint other();\n}  // namespace detail\n";
  EXPECT_EQ(exportedBy(header, {"getArgument", "numArguments"}),
            (std::set<Entry>{{"getArgument", ""}, {"isDotSyntax", ""}, {"numArguments", ">="}, {"numArguments", "<"}}));
}

}  // namespace
