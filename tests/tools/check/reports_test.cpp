// The reports of plexus check, from hand-made findings: the text report with
// its caret lines, JSON, SARIF, the summary line, and the rules'
// documentation (plain text, Markdown, and docs/rules.md kept in step).

#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include <fstream>
#include <sstream>
#include <string>
#include <vector>

#include "tools/check/reports/caret_line.hpp"
#include "tools/check/reports/documentation_blocks.hpp"
#include "tools/check/reports/json_report.hpp"
#include "tools/check/reports/report_summary.hpp"
#include "tools/check/reports/rule_documentation.hpp"
#include "tools/check/reports/rule_list.hpp"
#include "tools/check/reports/sarif_report.hpp"
#include "tools/check/reports/streamed_json.hpp"
#include "tools/check/reports/text_report.hpp"
#include "tools/check/reports/uri_reference.hpp"
#include "tools/rules/rule_table.hpp"

namespace {

using namespace plexus::check;
using namespace plexus::check::reports;
using plexus::rules::FindingRange;
using plexus::rules::RuleDefinition;
using plexus::rules::Severity;

RuleDefinition const& globalDeclaration() { return *plexus::rules::findRule("global-declaration"); }

Finding finding(std::string path, FindingRange range, std::string message, std::string lineText = "",
                RuleDefinition const& rule = globalDeclaration()) {
  return {std::move(path), range, &rule, rule.severity, std::move(message), std::move(lineText)};
}

// The caret line as it is printed.
std::string caret(std::string_view lineText, FindingRange range) {
  CaretLine const line = caretLine(lineText, range);
  return line.padding + line.marks;
}

TEST(CaretLine, MarksTheSpanInCharactersKeepingTabsAndStoppingAtTheLineEnd) {
  // Columns: 1 tab, 7 'ü' and 8 '€' (two and three bytes), 12 "global", 19 "g".
  std::string const line = "\tx = '\xC3\xBC\xE2\x82\xAC'; global g";
  EXPECT_EQ(caret(line, {1, 19, 1, 20}), "\t                 ^");
  EXPECT_EQ(caret(line, {1, 12, 1, 20}), "\t          ^~~~~~~~");
  // Multi-byte characters inside the span take one mark each.
  EXPECT_EQ(caret(line, {1, 6, 1, 10}), "\t    ^~~~");
  // Past the line end, and onto later lines: marked to the line end.
  EXPECT_EQ(caret("abc", {1, 2, 1, 10}), " ^~");
  EXPECT_EQ(caret("abc", {1, 2, 3, 1}), " ^~");
  EXPECT_EQ(caret("abc", {1, 1, 2, 1}), "^~~");
  // An empty span, a place at the line end, and a column past it.
  EXPECT_EQ(caret("abc", {1, 2, 1, 2}), " ^");
  EXPECT_EQ(caret("abc", {1, 4, 1, 4}), "   ^");
  EXPECT_EQ(caret("ab", {1, 5, 1, 6}), "    ^");
  EXPECT_EQ(caret("", {1, 1, 1, 1}), "^");
}

TEST(TextReport, PrintsEachFindingWithItsLineAndCaretAndAPlacelessOneAlone) {
  std::vector<Finding> const findings{
      finding("a b/f.m", {2, 3, 2, 9}, "'counter' is declared global", "\t global counter"),
      finding("gone.m", {}, "cannot open: No such file or directory", "", plexus::rules::syntaxErrorRule()),
      finding("g.m", {1, 5, 3, 2}, "over three lines", "x = [1, ...")};
  std::ostringstream plain;
  writeTextReport(plain, findings, false);
  EXPECT_EQ(plain.str(),
            "a b/f.m:2:3: warning: 'counter' is declared global [global-declaration]\n"
            "\t global counter\n"
            "\t ^~~~~~\n"
            "gone.m: error: cannot open: No such file or directory [syntax-error]\n"
            "g.m:1:5: warning: over three lines [global-declaration]\n"
            "x = [1, ...\n"
            "    ^~~~~~~\n");

  std::ostringstream coloured;
  writeTextReport(coloured, findings, true);
  std::string const text = coloured.str();
  EXPECT_NE(text.find("\x1b[1;35mwarning:\x1b[0m"), std::string::npos) << text;
  EXPECT_NE(text.find("\x1b[1;31merror:\x1b[0m"), std::string::npos) << text;
  EXPECT_NE(text.find("\x1b[1;34m[global-declaration]\x1b[0m"), std::string::npos) << text;
  EXPECT_NE(text.find("\t \x1b[1;32m^~~~~~\x1b[0m\n"), std::string::npos) << text;
  EXPECT_EQ(plain.str().find('\x1b'), std::string::npos);
}

TEST(JsonReport, HasTheDocumentedShapeEscapesTextAndSurvivesBytesThatAreNotUtf8) {
  CheckReport report;
  report.files = 3;
  std::string const message = "say \"hi\" \\ then\na\ttab and \x01";
  report.findings = {finding("dir/f.m", {4, 2, 5, 7}, message),
                     finding("bad\xFF.m", {}, "cannot open", "", plexus::rules::syntaxErrorRule())};
  std::ostringstream out;
  writeJson(out, jsonReport(report));
  std::string const text = out.str();
  EXPECT_NE(text.find(R"("say \"hi\" \\ then\na\ttab and \u0001")"), std::string::npos) << text;
  EXPECT_EQ(text.back(), '\n');

  nlohmann::json const document = nlohmann::json::parse(text);
  EXPECT_EQ(document.size(), 3u);
  EXPECT_EQ(document["version"], 1);
  EXPECT_EQ(document["files"], 3);
  ASSERT_EQ(document["findings"].size(), 2u);
  nlohmann::json expected = nlohmann::json::parse(R"({"path": "dir/f.m", "line": 4, "column": 2, "endLine": 5,
                                                      "endColumn": 7, "rule": "global-declaration",
                                                      "severity": "warning"})");
  expected["message"] = message;
  EXPECT_EQ(document["findings"][0], expected);
  // The bad byte becomes U+FFFD; a finding without a place has no place.
  EXPECT_EQ(document["findings"][1]["path"], "bad\xEF\xBF\xBD.m");
  EXPECT_FALSE(document["findings"][1].contains("line"));
  EXPECT_FALSE(document["findings"][1].contains("endColumn"));
  EXPECT_EQ(document["findings"][1]["rule"], "syntax-error");
  EXPECT_EQ(document["findings"][1]["severity"], "error");
  // Members in the documented order.
  EXPECT_LT(text.find("\"version\""), text.find("\"findings\""));
  EXPECT_LT(text.find("\"findings\""), text.find("\"files\""));
}

TEST(UriReference, PercentEncodesWhatAPathSegmentCannotHoldAndNamesOutsideFilesAbsolutely) {
  EXPECT_EQ(percentEncodedPath("my dir/+pkg/@Class/a b.m"), "my%20dir/+pkg/@Class/a%20b.m");
  EXPECT_EQ(percentEncodedPath("\xC3\xBC%#?:\\[].m"), "%C3%BC%25%23%3F%3A%5C%5B%5D.m");
  EXPECT_EQ(percentEncodedPath("a-b_c.d~e!$&'()*,;=.m"), "a-b_c.d~e!$&'()*,;=.m");

  EXPECT_EQ(fileUri("/work/my project", true), "file:///work/my%20project/");
  EXPECT_EQ(fileUri("/", true), "file:///");
  EXPECT_EQ(fileUri("/x/a b.m"), "file:///x/a%20b.m");

  auto const uri = [](std::string const& path, std::string const& folder) {
    ArtifactUri const found = artifactUri(path, folder);
    return (found.relative ? "relative " : "absolute ") + found.uri;
  };
  EXPECT_EQ(uri("./my dir/+pkg/@Class/a b.m", "/work/p"), "relative my%20dir/+pkg/@Class/a%20b.m");
  EXPECT_EQ(uri("/work/p/sub/../f.m", "/work/p/"), "relative f.m");
  EXPECT_EQ(uri("../up.m", "/work/p"), "absolute file:///work/up.m");
  EXPECT_EQ(uri("/elsewhere/x y.m", "/work/p"), "absolute file:///elsewhere/x%20y.m");
  EXPECT_EQ(uri("/work/pp/f.m", "/work/p"), "absolute file:///work/pp/f.m");
  EXPECT_EQ(uri("a:b.m", "/work"), "relative a%3Ab.m");
}

TEST(SarifReport, DescribesEveryRuleAndPlacesEachResultRelativeToTheWorkingFolder) {
  CheckReport report;
  report.files = 2;
  report.findings = {finding("./my dir/+pkg/@Class/a b.m", {3, 5, 3, 12}, "'g' is declared global", "  global g"),
                     finding("/outside/z.m", {}, "cannot open", "", plexus::rules::syntaxErrorRule())};
  nlohmann::ordered_json const log = sarifReport(report, "/work/my project");
  EXPECT_EQ(log["version"], "2.1.0");
  EXPECT_TRUE(log["$schema"].get<std::string>().ends_with("sarif-schema-2.1.0.json"));
  ASSERT_EQ(log["runs"].size(), 1u);
  auto const& run = log["runs"][0];
  EXPECT_EQ(run["originalUriBaseIds"]["%SRCROOT%"]["uri"], "file:///work/my%20project/");
  EXPECT_EQ(run["columnKind"], "unicodeCodePoints");

  auto const& driver = run["tool"]["driver"];
  EXPECT_EQ(driver["name"], "plexus");
  EXPECT_FALSE(driver.contains("informationUri"));
  auto const table = plexus::rules::ruleTable();
  ASSERT_EQ(driver["rules"].size(), table.size());
  for (RuleDefinition const& rule : table) {
    auto const& descriptor = driver["rules"][rule.index];
    EXPECT_EQ(descriptor["id"], rule.id);
    EXPECT_EQ(descriptor["shortDescription"]["text"], rule.summary);
    EXPECT_EQ(descriptor["fullDescription"]["text"], rule.body->documentation.finds);
    EXPECT_EQ(descriptor["help"]["text"], ruleText(rule));
    EXPECT_EQ(descriptor["help"]["markdown"], ruleMarkdown(rule));
    EXPECT_EQ(descriptor["defaultConfiguration"]["level"], plexus::rules::severityName(rule.severity));
  }
  EXPECT_EQ(driver["rules"][globalDeclaration().index]["name"], "GlobalDeclaration");

  auto const& results = run["results"];
  ASSERT_EQ(results.size(), 2u);
  EXPECT_EQ(results[0]["ruleId"], "global-declaration");
  EXPECT_EQ(driver["rules"][results[0]["ruleIndex"].get<std::size_t>()]["id"], "global-declaration");
  EXPECT_EQ(results[0]["level"], "warning");
  EXPECT_EQ(results[0]["message"]["text"], "'g' is declared global");
  auto const& first = results[0]["locations"][0]["physicalLocation"];
  EXPECT_EQ(first["artifactLocation"]["uri"], "my%20dir/+pkg/@Class/a%20b.m");
  EXPECT_EQ(first["artifactLocation"]["uriBaseId"], "%SRCROOT%");
  EXPECT_EQ(first["region"], nlohmann::ordered_json::parse(
                                 R"({"startLine": 3, "startColumn": 5, "endLine": 3, "endColumn": 12})"));
  auto const& second = results[1]["locations"][0]["physicalLocation"];
  EXPECT_EQ(results[1]["level"], "error");
  EXPECT_EQ(second["artifactLocation"]["uri"], "file:///outside/z.m");
  EXPECT_FALSE(second["artifactLocation"].contains("uriBaseId"));
  EXPECT_FALSE(second.contains("region"));
}

TEST(StreamedJson, WritesTheSameBytesAsTheWholeDocumentWhateverTheNumberOfElements) {
  CheckReport report;
  report.files = 4;
  std::vector<Finding> const all{
      finding("a b/f.m", {2, 3, 2, 9}, "with \"quotes\" and \"findings\": [] in it", "\t global counter"),
      finding("bad\xFF.m", {}, "cannot open", "", plexus::rules::syntaxErrorRule()),
      finding("\"results\": [].m", {1, 1, 1, 2}, "a name like the member")};
  for (std::size_t count = 0; count <= all.size(); ++count) {
    report.findings.assign(all.begin(), all.begin() + static_cast<std::ptrdiff_t>(count));
    std::ostringstream whole, streamed;
    writeJson(whole, jsonReport(report));
    writeJsonReport(streamed, report);
    EXPECT_EQ(streamed.str(), whole.str()) << count << " findings";
    std::ostringstream wholeSarif, streamedSarif;
    writeJson(wholeSarif, sarifReport(report, "/work"));
    writeSarifReport(streamedSarif, report, "/work");
    EXPECT_EQ(streamedSarif.str(), wholeSarif.str()) << count << " findings";
  }
}

TEST(ReportSummary, CountsFindingsFilesWithFindingsAndFilesChecked) {
  CheckReport report;
  report.files = 12;
  report.findings = {finding("a.m", {1, 1, 1, 2}, "x"), finding("a.m", {2, 1, 2, 2}, "y"),
                     finding("b.m", {1, 1, 1, 2}, "z")};
  EXPECT_EQ(reportSummary(report), "3 findings in 2 files (12 files checked)");
  report.findings.resize(1);
  report.files = 1;
  EXPECT_EQ(reportSummary(report), "1 finding in 1 file (1 file checked)");
  report.findings.clear();
  report.files = 0;
  EXPECT_EQ(reportSummary(report), "0 findings in 0 files (0 files checked)");
}

TEST(DocumentationBlocks, SplitsProseFromCodeAndWrapsProseByCharacters) {
  std::vector<DocumentationBlock> const blocks =
      documentationBlocks("First line\ngoes on.\n\nThen:\n    a = 1;\n\n      b = 2;\nAfter.");
  ASSERT_EQ(blocks.size(), 4u);
  EXPECT_FALSE(blocks[0].code);
  EXPECT_EQ(blocks[0].lines, std::vector<std::string>{"First line goes on."});
  EXPECT_EQ(blocks[1].lines, std::vector<std::string>{"Then:"});
  EXPECT_TRUE(blocks[2].code);
  EXPECT_EQ(blocks[2].lines, (std::vector<std::string>{"a = 1;", "", "  b = 2;"}));
  EXPECT_FALSE(blocks[3].code);

  EXPECT_EQ(wrapped("aa bb cc dd", "  ", 8), "  aa bb\n  cc dd");
  // Two-byte characters count once: "üü üü" is five characters wide.
  EXPECT_EQ(wrapped("\xC3\xBC\xC3\xBC \xC3\xBC\xC3\xBC x", "", 5), "\xC3\xBC\xC3\xBC \xC3\xBC\xC3\xBC\nx");
  EXPECT_EQ(wrapped("averyveryverylongword b", "", 5), "averyveryverylongword\nb");
}

TEST(RuleDocumentation, GivesEveryPartUnderItsHeadingAndTheOptionsWithDefaultAndRange) {
  plexus::rules::RuleBody const body{
      .documentation = {.finds = "Names that are too long.",
                        .why = "Long names are hard to read.",
                        .example = "    a_very_long_name = 1;\n\n    b = 2;",
                        .instead = "A short name:\n\n    name = 1;",
                        .limits = "Only variables."},
      .options = {{"max-length", "The longest name | allowed", 40, 1, 200}},
      .declare = nullptr};
  RuleDefinition const rule{0, "long-name", Severity::Note, "A name that is too long", &body};
  EXPECT_EQ(ruleText(rule),
            "long-name (note)\n"
            "A name that is too long\n"
            "\n"
            "What it finds\n"
            "  Names that are too long.\n"
            "\n"
            "Why it matters\n"
            "  Long names are hard to read.\n"
            "\n"
            "Example\n"
            "      a_very_long_name = 1;\n"
            "\n"
            "      b = 2;\n"
            "\n"
            "What to write instead\n"
            "  A short name:\n"
            "\n"
            "      name = 1;\n"
            "\n"
            "Known limits\n"
            "  Only variables.\n"
            "\n"
            "Options\n"
            "  max-length = 40 (from 1 to 200)\n"
            "      The longest name | allowed\n");
  std::string const markdown = ruleMarkdown(rule);
  EXPECT_NE(markdown.find("### Example\n\n```\na_very_long_name = 1;\n\nb = 2;\n```\n"), std::string::npos)
      << markdown;
  EXPECT_NE(markdown.find("### What to write instead\n\nA short name:\n\n```\nname = 1;\n```\n"), std::string::npos)
      << markdown;
  EXPECT_NE(markdown.find("| `max-length` | 40 | 1 to 200 | The longest name \\| allowed |\n"), std::string::npos)
      << markdown;

  // The bundled rules: one line each in the list, a section each in the doc.
  std::string const list = ruleList();
  std::string const all = rulesMarkdown();
  for (RuleDefinition const& bundled : plexus::rules::ruleTable()) {
    EXPECT_NE(all.find("\n## " + std::string(bundled.id) + "\n"), std::string::npos) << bundled.id;
    std::istringstream lines(list);
    std::size_t mentions = 0;
    for (std::string line; std::getline(lines, line);) {
      if (!line.starts_with(std::string(bundled.id) + " ")) continue;
      ++mentions;
      EXPECT_NE(line.find(plexus::rules::severityName(bundled.severity)), std::string::npos) << line;
      EXPECT_TRUE(line.ends_with(bundled.summary)) << line;
    }
    EXPECT_EQ(mentions, 1u) << list;
  }
}

TEST(RulesMarkdown, TheCommittedDocumentationIsWhatTheRuleTableMakesNow) {
  std::string const path = std::string(PLEXUS_SOURCE_DIR) + "/docs/rules.md";
  std::ifstream in(path, std::ios::binary);
  ASSERT_TRUE(in) << "cannot read " << path;
  std::string const committed{std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
  EXPECT_TRUE(committed == rulesMarkdown())
      << "docs/rules.md is out of date with the rule table; make it again with\n    build/tools/" << rulesMarkdownCommand;
}

}  // namespace
