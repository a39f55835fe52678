// The examples of the doc comments and of the README must be the ones that
// doc_examples_test.cpp compiles and runs, so that none can rot unseen.
//
// An example in a doc comment is a block of `///` lines whose text starts
// after five blanks (the comment's own blank and an indent of four), after a
// line `///` alone; such a line also ends the block. (A line indented as
// much right after prose continues the prose, as in an indented list.)
// In the README an example is a ```cpp block. Each block must stand in
// doc_examples_test.cpp as it is, up to blanks and line breaks, or, for the
// stage classes that the examples declare, in doc_example_stages.hpp.

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <regex>
#include <sstream>
#include <string>
#include <vector>

#ifndef PLEXUS_SOURCE_DIR
#error "PLEXUS_SOURCE_DIR must name the source tree"
#endif

namespace {

namespace fs = std::filesystem;

struct Example {
  std::string where;  // file:line of its first line
  std::string text;
};

std::string readFile(fs::path const& path) {
  std::ifstream in(path, std::ios::binary);
  std::stringstream text;
  text << in.rdbuf();
  return text.str();
}

// Runs of blanks and line breaks become one blank; blanks at either end go.
std::string normalised(std::string const& text) {
  std::string out;
  bool blank = false;
  for (char c : text) {
    if (c == ' ' || c == '\t' || c == '\n' || c == '\r') {
      blank = !out.empty();
    } else {
      if (blank) out += ' ';
      blank = false;
      out += c;
    }
  }
  return out;
}

std::vector<Example> docCommentExamples(fs::path const& header, std::string const& shownAs) {
  static std::regex const codeLine(R"(^\s*/// {5}(.*)$)");
  static std::regex const bareLine(R"(^\s*///\s*$)");
  std::vector<Example> examples;
  std::ifstream in(header);
  std::string line;
  Example current;
  int number = 0;
  bool afterBareLine = false;
  auto finish = [&] {
    if (!current.text.empty()) examples.push_back(current);
    current = {};
  };
  while (std::getline(in, line)) {
    ++number;
    std::smatch match;
    if (std::regex_match(line, match, codeLine) && (afterBareLine || !current.text.empty())) {
      if (current.text.empty()) current.where = shownAs + ":" + std::to_string(number);
      current.text += match[1].str() + "\n";
    } else {
      finish();
      afterBareLine = std::regex_match(line, bareLine);
    }
  }
  finish();
  return examples;
}

std::vector<Example> readmeExamples(fs::path const& readme) {
  std::vector<Example> examples;
  std::ifstream in(readme);
  std::string line;
  Example current;
  bool inside = false;
  int number = 0;
  while (std::getline(in, line)) {
    ++number;
    if (!inside && line == "```cpp") {
      inside = true;
      current = {"README.md:" + std::to_string(number + 1), ""};
    } else if (inside && line == "```") {
      inside = false;
      examples.push_back(current);
    } else if (inside) {
      current.text += line + "\n";
    }
  }
  return examples;
}

std::vector<Example> allExamples() {
  fs::path const root(PLEXUS_SOURCE_DIR);
  std::vector<Example> examples = readmeExamples(root / "README.md");
  for (char const* folder : {"platform", "rulesystem", "frontend", "tools"}) {
    for (auto const& entry : fs::recursive_directory_iterator(root / folder)) {
      if (entry.path().extension() != ".hpp") continue;
      auto found = docCommentExamples(entry.path(), fs::relative(entry.path(), root).generic_string());
      examples.insert(examples.end(), found.begin(), found.end());
    }
  }
  return examples;
}

TEST(DocExamplesSync, EveryExampleShownIsCompiledAndRun) {
  fs::path const folder = fs::path(PLEXUS_SOURCE_DIR) / "tests" / "examples";
  std::string const compiled =
      normalised(readFile(folder / "doc_example_stages.hpp") + "\n" + readFile(folder / "doc_examples_test.cpp"));
  ASSERT_FALSE(compiled.empty());
  std::vector<Example> const examples = allExamples();
  // The headers hold a score of examples; finding few means the scan broke.
  EXPECT_GE(examples.size(), 20u);
  for (Example const& example : examples) {
    EXPECT_NE(compiled.find(normalised(example.text)), std::string::npos)
        << example.where << ": this example is not in tests/examples/doc_examples_test.cpp or doc_example_stages.hpp:\n"
        << example.text;
  }
}

/// The pipelines that the vocabulary's doc comments end with: a `///` line
/// whose text starts after three blanks, in the headers of `folder`.
std::vector<Example> vocabularyPipelines(fs::path const& root, std::string const& folder) {
  static std::regex const pipelineLine(R"(^\s*/// {3}(\S.*)$)");
  std::vector<Example> pipelines;
  for (auto const& entry : fs::recursive_directory_iterator(root / folder)) {
    if (entry.path().extension() != ".hpp") continue;
    std::ifstream in(entry.path());
    std::string line;
    int number = 0;
    while (std::getline(in, line)) {
      ++number;
      std::smatch match;
      if (std::regex_match(line, match, pipelineLine)) {
        pipelines.push_back({fs::relative(entry.path(), root).generic_string() + ":" + std::to_string(number),
                             match[1].str()});
      }
    }
  }
  return pipelines;
}

// Each factory of the vocabulary documents itself with a pipeline; that
// pipeline must be one of the reference table, which the reference test
// declares, runs and checks against the naive evaluator.
TEST(DocExamplesSync, EveryVocabularyPipelineShownIsInTheReferenceTable) {
  fs::path const root(PLEXUS_SOURCE_DIR);
  std::string table;
  for (auto const& entry : fs::directory_iterator(root / "tests" / "rulesystem" / "reference")) {
    if (entry.path().filename().string().starts_with("pipelines_")) table += readFile(entry.path()) + "\n";
  }
  // Blanks do not count: a long pipeline may be broken over lines there.
  auto const withoutBlanks = [](std::string text) {
    std::erase_if(text, [](char c) { return c == ' ' || c == '\t' || c == '\n' || c == '\r'; });
    return text;
  };
  table = withoutBlanks(table);
  std::size_t shown = 0;
  for (char const* folder : {"rulesystem/calls", "rulesystem/syntax"}) {
    for (Example const& pipeline : vocabularyPipelines(root, folder)) {
      ++shown;
      EXPECT_NE(table.find("PLEXUS_PIPELINE(" + withoutBlanks(pipeline.text) + ")"), std::string::npos)
          << pipeline.where << ": this pipeline is not in tests/rulesystem/reference/pipelines_*.cpp:\n"
          << pipeline.text;
    }
  }
  // Some seventy factories show one each; finding few means the scan broke.
  EXPECT_GE(shown, 50u);
}

// The scan itself: a block ends at a bare `///`, prose indented less than
// code is not code, and a README block is taken between its fences.
TEST(DocExamplesSync, BlocksAreFoundAsWritten) {
  fs::path const scratch = fs::temp_directory_path() / "plexus_doc_examples_sync";
  fs::create_directories(scratch);
  {
    std::ofstream header(scratch / "h.hpp");
    header << "/// Prose.\n///    more prose\n///\n///     int a = 1;\n///       a += 2;\n///\n///     int b;\n"
              "int code;\n///   - a list item\n///     that goes on\n";
    std::ofstream readme(scratch / "README.md");
    readme << "text\n```cpp\nint c = 3;\n```\n```sh\nls\n```\n";
  }
  auto const header = docCommentExamples(scratch / "h.hpp", "h.hpp");
  ASSERT_EQ(header.size(), 2u);
  EXPECT_EQ(header[0].where, "h.hpp:4");
  EXPECT_EQ(header[0].text, "int a = 1;\n  a += 2;\n");
  EXPECT_EQ(header[1].text, "int b;\n");
  auto const readme = readmeExamples(scratch / "README.md");
  ASSERT_EQ(readme.size(), 1u);
  EXPECT_EQ(readme[0].text, "int c = 3;\n");
  EXPECT_EQ(normalised("  a\n   b  c \n"), "a b c");
  fs::remove_all(scratch);
}

}  // namespace
