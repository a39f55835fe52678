// The calls and syntax vocabulary against its table (vocabulary.def): the
// table lists every name the vocabulary's headers export, and every entry is
// used by an end-to-end test, so that no factory ships untried.

#include <gtest/gtest.h>

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

/// What the header code exports at namespace scope, outside `detail`: tags
/// (structs named in lower camel case), factories (functions so named) and
/// comparison operators with a tag among their parameters.
std::set<Entry> exportedBy(std::string const& code) {
  static std::regex const tag(R"(^struct\s+([a-z]\w*))");
  static std::regex const factory(
      R"(^(?!\s|template\b|namespace\b|using\b|struct\b|class\b|requires\b|inline constexpr\b)[^(]*?\b([a-z]\w*)\s*\()");
  static std::regex const comparison(R"(\boperator\s*(==|!=|<=|>=|<|>)\s*\(([^)]*)\))");
  static std::regex const lowerCamelType(R"(\b([a-z][A-Za-z0-9]*)\s+const\s*&)");
  std::set<Entry> found;
  std::istringstream lines(code);
  std::string line;
  bool inDetail = false;
  while (std::getline(lines, line)) {
    if (line.starts_with("namespace detail")) inDetail = true;
    if (inDetail) {
      if (line.starts_with("}")) inDetail = false;
      continue;
    }
    std::smatch match;
    if (std::regex_search(line, match, tag)) found.insert({match[1].str(), ""});
    if (std::regex_search(line, match, factory) && match[1].str() != "operator") found.insert({match[1].str(), ""});
    if (std::regex_search(line, match, comparison)) {
      std::string const parameters = match[2].str();
      std::smatch type;
      if (std::regex_search(parameters, type, lowerCamelType)) found.insert({type[1].str(), match[1].str()});
    }
  }
  return found;
}

fs::path const root(PLEXUS_SOURCE_DIR);

TEST(VocabularyCoverage, TheTableListsExactlyWhatTheHeadersExport) {
  std::set<Entry> exported;
  for (char const* folder : {"rulesystem/calls", "rulesystem/syntax"}) {
    for (fs::path const& header : filesUnder(root / folder, ".hpp")) {
      for (Entry const& entry : exportedBy(codeOf(header))) exported.insert(entry);
    }
  }
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
                             "template <template <class> class P>\nrequires isPipeHandle<P> P<Expression const&>\n"
                             "operator|(P<Call const&> producer, getArgument argument);\n"
                             "namespace detail {\nstd::set<int> helper();\n}  // namespace detail\n";
  EXPECT_EQ(exportedBy(header),
            (std::set<Entry>{{"getArgument", ""}, {"isDotSyntax", ""}, {"numArguments", ">="}}));
}

}  // namespace
