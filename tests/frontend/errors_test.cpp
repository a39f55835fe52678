// Malformed input: what the front end reports, where, and that it goes on.

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "frontend/parse.hpp"
#include "frontend/tree_dump.hpp"

namespace {

using frontend::Diagnostic;
using frontend::Severity;

// The diagnostics as "line:column: message", errors only unless asked.
std::vector<std::string> report(std::string const& source, bool warningsToo = false) {
  std::vector<std::string> lines;
  for (Diagnostic const& d : frontend::parse(source, "t.m").diagnostics) {
    if (d.severity == Severity::Warning && !warningsToo) continue;
    lines.push_back(std::to_string(d.line) + ":" + std::to_string(d.column) + ": " + d.message);
  }
  return lines;
}

std::string dump(std::string const& source) {
  auto result = frontend::parse(source, "t.m");
  return frontend::dumpTree(*result.tree->getProgram());
}

TEST(SyntaxErrors, SayWhatWasExpectedAndWhatWasFoundWithPosition) {
  EXPECT_EQ(report("x = (1 + 2\n"),
            std::vector<std::string>{"1:11: expected ')' to close the '(' at line 1, column 5 but found end of line"});
  EXPECT_EQ(report("y = [1 2;\nif x\n"),
            std::vector<std::string>{
                "2:1: expected ']' to close the matrix that starts at line 1, column 5 but found 'if'"});
  EXPECT_EQ(report("w = @;\n"), std::vector<std::string>{"1:6: expected a function name or '(' after '@' but found ';'"});
  EXPECT_EQ(report("f(1, 2\n"),
            std::vector<std::string>{
                "1:7: expected ')' or ',' in the argument list that starts at line 1, column 2 but found end of line"});
  EXPECT_EQ(report("x = 1 y\n"),
            std::vector<std::string>{
                "1:7: expected ';', ',' or the end of the line after the statement but found identifier 'y'"});
  EXPECT_EQ(report("3 = x;\n"),
            std::vector<std::string>{"1:3: the left side of '=' must be a variable, or an index or field of one"});
}

TEST(SyntaxErrors, MissingAndStrayEndAreNamed) {
  EXPECT_EQ(report("if x\n  y = 1;\n"),
            std::vector<std::string>{"3:1: expected 'end' to close the 'if' at line 1, column 1 but found end of file"});
  EXPECT_EQ(report("x = 1;\nend\n"), std::vector<std::string>{"2:1: 'end' without a matching block"});
  EXPECT_EQ(report("for k = 1:3\n  while true\n    break\n  end\n"),
            std::vector<std::string>{"5:1: expected 'end' to close the 'for' at line 1, column 1 but found end of file"});
}

TEST(SyntaxErrors, ParsingGoesOnAtTheNextStatementAndKeepsWhatItCould) {
  std::string const source = "a = 1;\nb = (2;\nc = 3;\nd = * 4;\ne = 5;\n";
  EXPECT_EQ(report(source).size(), 2u);
  // The good statements are in the tree, the broken ones are not.
  EXPECT_EQ(dump(source),
            "(Program (Assignment (Identifier a) (NumberLiteral 1)) (Assignment (Identifier c) (NumberLiteral 3)) "
            "(Assignment (Identifier e) (NumberLiteral 5)))");
}

// One fault in a class body, or in a function's header, gives one error: the
// parser resynchronises at the next method or at the end of the block, not
// at the next line, which would report each line of a body in turn.
TEST(SyntaxErrors, OneFaultInAClassBodyGivesOneError) {
  std::string const body =
      "            r = obj.x + 1;\n"
      "            if r > 0\n"
      "                r = [r(end) 0];\n"
      "            end\n";
  std::string const other =
      "        function s = other(obj)\n"
      "            s = 2;\n"
      "        end\n";
  struct Case {
    std::string name, source, error, kept;
  };
  std::vector<Case> const cases = {
      {"a method header with a bad input",
       "classdef A\n    methods\n        function r = run(obj, 1)\n" + body + "        end\n" + other + "    end\nend\n",
       "3:31: expected an input name or '~' but found number 1", "(Identifier other)"},
      {"a method body without its function line",
       "classdef A\n    methods\n" + body + other + "    end\nend\n",
       "3:23: expected ';', ',' or the end of the line after the statement but found '+'", "(Identifier other)"},
      {"a bad declaration before a definition",
       "classdef A\n    methods (Abstract)\n        r = run(obj 1)\n    end\n    methods\n" + other + "    end\nend\n",
       "3:21: expected ')' to close the inputs but found number 1", "(Identifier other)"},
      {"a misspelt block head",
       "classdef A\n    method\n        function r = run(obj)\n" + body + "        end\n    end\n    methods\n" + other +
           "    end\nend\n",
       "2:5: expected 'properties', 'methods', 'events', 'enumeration' or 'end' in the class but found identifier "
       "'method'",
       "(Identifier other)"},
      {"a method outside any methods block",
       "classdef A\n    function r = run(obj)\n" + body + "    end\n    methods\n" + other + "    end\nend\n",
       "2:5: expected 'properties', 'methods', 'events', 'enumeration' or 'end' in the class but found 'function'",
       "(Identifier other)"},
      {"a bad classdef line",
       "classdef A <\n    methods\n" + other + "    end\nend\n",
       "1:13: expected identifier as a name but found end of line", ""},
      {"bad block attributes",
       "classdef A\n    methods (Access = )\n" + other + "    end\nend\n",
       "2:23: expected an expression but found ')'", "(Identifier other)"},
      {"a bad property line",
       "classdef A\n    properties\n        P1 = (1\n        P2 = 2\n    end\nend\n",
       "3:16: expected ')' to close the '(' at line 3, column 14 but found end of line", "(Identifier P2)"},
      {"a function header with a bad input",
       "function r = run(obj, 1)\n" + body + "end\nfunction s = other(obj)\n    s = 2;\nend\n",
       "1:23: expected an input name or '~' but found number 1", "(Identifier other)"},
      {"a function header without end",
       "function r = run(obj, 1)\n" + body + "function s = other(obj)\n    s = 2;\n",
       "1:23: expected an input name or '~' but found number 1", "(Identifier other)"},
  };
  for (Case const& c : cases) {
    SCOPED_TRACE(c.name + "\n" + c.source);
    EXPECT_EQ(report(c.source), std::vector<std::string>{c.error});
    std::string const tree = dump(c.source);
    // The member after the fault is read; the one holding it is left out.
    if (!c.kept.empty()) {
      EXPECT_NE(tree.find(c.kept), std::string::npos) << tree;
    }
    EXPECT_EQ(tree.find("(Identifier run)"), std::string::npos) << tree;
  }
}

TEST(SyntaxErrors, AnArgumentsEntryIsANameOrTheIgnoreMark) {
  // `~` names an ignored input, which has no fields to name.
  EXPECT_EQ(report("function f(~)\narguments\n  ~.Name double\nend\nend\n"),
            std::vector<std::string>{
                "3:4: expected ';', ',' or the end of the line after the statement but found '.'"});
  EXPECT_EQ(report("function f(x)\narguments\n  x\n  3\nend\nend\n"),
            std::vector<std::string>{"4:3: expected identifier as an argument name or '~' but found number 3"});
}

TEST(SyntaxErrors, StopAfterTheLimitWithASummary) {
  std::string source;
  for (int i = 0; i < 150; ++i) source += "x = );\n";
  auto const diagnostics = frontend::parse(source, "t.m").diagnostics;
  ASSERT_EQ(diagnostics.size(), frontend::maxErrorsPerFile + 1);
  EXPECT_EQ(diagnostics.back().message, "too many errors (100); the rest of the file is not checked");
  EXPECT_EQ(diagnostics.back().line, frontend::maxErrorsPerFile + 1);  // one error a line
}

TEST(LexicalErrors, UnterminatedTextAndBlockCommentAndStrayCharacters) {
  EXPECT_EQ(report("s = 'abc\nt = \"x\n"),
            (std::vector<std::string>{"1:5: unterminated char vector: expected a closing ' before the end of the line",
                                      "2:5: unterminated string: expected a closing \" before the end of the line"}));
  EXPECT_EQ(report("x = 1;\n%{\nnot closed\n"),
            std::vector<std::string>{"2:1: unterminated block comment: no line holding only '%}' closes the '%{' here"});
  EXPECT_EQ(report("x = 1 $ 2;\n"), std::vector<std::string>{"1:7: unexpected character '$'"});
  // Columns count characters, not bytes.
  EXPECT_EQ(report("s = '\u00e9\u00e9'; y = 1 \u00a7;\n"), std::vector<std::string>{"1:17: unexpected character '\u00a7'"});
  EXPECT_EQ(report("n = 0x;\n"), std::vector<std::string>{"1:5: expected digits after the number prefix"});
  EXPECT_EQ(report("n = 0x1u7;\n"),
            std::vector<std::string>{"1:5: number type suffix must be u8, u16, u32, u64, s8, s16, s32 or s64"});
  EXPECT_EQ(report("n = 0x1FFu8;\n"), std::vector<std::string>{"1:5: number does not fit in 8 bits"});
}

TEST(BadInput, NulByteIsReportedAndNothingIsParsed) {
  auto const result = frontend::parse(std::string("a = 1;\nb\0 = 2;\n", 15), "t.m");
  ASSERT_EQ(result.diagnostics.size(), 1u);
  EXPECT_EQ(result.diagnostics[0].line, 2u);
  EXPECT_EQ(result.diagnostics[0].column, 2u);
  EXPECT_EQ(result.diagnostics[0].message, "file holds a NUL byte at offset 8; it is not source text");
  EXPECT_EQ(result.tree, nullptr);
}

// After converted characters and with lone CRs as line ends, a fault is
// placed where it stands in the file: the NUL is the file's byte 13, on its
// third line, after two characters there.
TEST(BadInput, PositionsAfterConvertedTextAreTheFilesOwn) {
  auto const result = frontend::parse(std::string("x = 1;\ry\r\xE9\xE9\xE9\xE9\0;\r", 16), "t.m");
  ASSERT_EQ(result.diagnostics.size(), 2u);
  EXPECT_EQ(result.diagnostics[0].severity, Severity::Warning);
  EXPECT_EQ(result.diagnostics[1].line, 3u);
  EXPECT_EQ(result.diagnostics[1].column, 5u);
  EXPECT_EQ(result.diagnostics[1].message, "file holds a NUL byte at offset 13; it is not source text");
  EXPECT_EQ(result.tree, nullptr);
}

// A file saved as UTF-16, with or without a byte-order mark, is converted and
// read, with a warning that says how.
TEST(BadInput, Utf16FilesAreConvertedWithAWarning) {
  auto utf16 = [](std::string const& ascii, bool bigEndian, bool mark) {
    std::string bytes = mark ? (bigEndian ? std::string("\xFE\xFF") : std::string("\xFF\xFE")) : std::string();
    for (char c : ascii) bytes += bigEndian ? std::string{'\0', c} : std::string{c, '\0'};
    return bytes;
  };
  for (bool bigEndian : {false, true}) {
    for (bool mark : {true, false}) {
      auto const result = frontend::parse(utf16("s = 'a';\nt = s;\n", bigEndian, mark), "wide.m");
      ASSERT_EQ(result.diagnostics.size(), 1u) << bigEndian << mark;
      EXPECT_EQ(result.diagnostics[0].severity, Severity::Warning);
      EXPECT_NE(result.diagnostics[0].message.find(bigEndian ? "UTF-16BE" : "UTF-16LE"), std::string::npos)
          << result.diagnostics[0].message;
      EXPECT_EQ(frontend::dumpTree(*result.tree->getProgram()),
                "(Program (Assignment (Identifier s) (CharVectorLiteral 'a')) (Assignment (Identifier t) "
                "(Identifier s)))");
    }
  }
}

TEST(BadInput, LegacyEncodingIsReadAsWindows1252WithAWarning) {
  // 'caf\xe9' in a comment and a char vector: not UTF-8.
  std::string const source = "% caf\xe9\ns = 'na\xefve \x80';\n";
  auto const result = frontend::parse(source, "old.m");
  ASSERT_EQ(result.diagnostics.size(), 1u);
  EXPECT_EQ(result.diagnostics[0].severity, Severity::Warning);
  EXPECT_EQ(result.diagnostics[0].message,
            "file is not valid UTF-8 (first bad byte at offset 5); read as Windows-1252");
  EXPECT_FALSE(result.hasErrors());
  EXPECT_EQ(frontend::dumpTree(*result.tree->getProgram()),
            "(Program (Assignment (Identifier s) (CharVectorLiteral 'na\u00efve \u20ac')))");
}

TEST(BadInput, AbsurdNestingIsReportedNotFollowed) {
  for (std::string open : {"(", "[", "{", "-", "@()"}) {
    SCOPED_TRACE(open);
    std::string source = "x = ";
    for (int i = 0; i < 100000; ++i) source += open;
    source += "1;\ny = 2;\n";
    auto const result = frontend::parse(source, "t.m");
    ASSERT_TRUE(result.hasErrors());
    EXPECT_EQ(result.diagnostics[0].message, "nesting is deeper than 256 levels");
    // The next line is parsed again.
    EXPECT_NE(frontend::dumpTree(*result.tree->getProgram()).find("(Identifier y)"), std::string::npos);
  }
  std::string blocks;
  for (int i = 0; i < 5000; ++i) blocks += "if x\n";
  EXPECT_TRUE(frontend::parse(blocks, "t.m").hasErrors());
}

TEST(BadInput, EmptyAndBlankFilesAreEmptyScripts) {
  for (std::string source : {"", "\n\n", "% only a comment", "\xEF\xBB\xBF", "   \t"}) {
    auto const result = frontend::parse(source, "t.m");
    EXPECT_TRUE(result.diagnostics.empty()) << source;
    EXPECT_EQ(frontend::dumpTree(*result.tree->getProgram()), "(Program)");
    EXPECT_EQ(result.tree->getFileType(), ca::FileType::Script);
  }
}

TEST(FunctionStyles, BothStylesParseAndMixedFilesAreErrors) {
  std::string const open = "function a\nx = 1;\nfunction b\ny = 2;\n";
  std::string const terminated = "function a\nx = 1;\n  function b\n  y = 2;\n  end\nend\n";
  EXPECT_TRUE(report(open).empty());
  EXPECT_TRUE(report(terminated).empty());
  EXPECT_EQ(dump(open),
            "(Program (Function (Identifier a) (Assignment (Identifier x) (NumberLiteral 1))) "
            "(Function (Identifier b) (Assignment (Identifier y) (NumberLiteral 2))))");
  // In the terminated file, b is nested in a.
  EXPECT_EQ(dump(terminated),
            "(Program (Function (Identifier a) (Assignment (Identifier x) (NumberLiteral 1)) "
            "(Function (Identifier b) (Assignment (Identifier y) (NumberLiteral 2)))))");
  EXPECT_FALSE(report("function a\nx = 1;\nend\nfunction b\ny = 2;\n").empty());
}

TEST(SourceRanges, NodesKnowTheirFirstAndLastCharacter) {
  auto const result = frontend::parse("x = 1;\nif a\n  y = f(b, 'c\u00e9');\nend", "t.m");
  ASSERT_FALSE(result.hasErrors());
  auto const* program = result.tree->getProgram();
  auto const* ifStatement = program->getBody()[1];
  EXPECT_EQ(ifStatement->getSourceRange().first, (lf::astapi::SourcePosition{7, 2, 1}));
  EXPECT_EQ(ifStatement->getSourceRange().last, (lf::astapi::SourcePosition{33, 4, 3}));
  auto const& assignment = static_cast<ca::ast::Assignment const&>(
      *static_cast<ca::ast::IfStatement const*>(ifStatement)->getBody()[0]);
  auto const* call = static_cast<ca::ast::ParenOperation const*>(assignment.getRight());
  EXPECT_EQ(call->getSourceRange().first, (lf::astapi::SourcePosition{18, 3, 7}));
  // The char vector holds a two-byte character: its last byte and column differ.
  auto const* text = call->getArguments()[1];
  EXPECT_EQ(text->getSourceRange().first, (lf::astapi::SourcePosition{23, 3, 12}));
  EXPECT_EQ(text->getSourceRange().last, (lf::astapi::SourcePosition{27, 3, 15}));
  EXPECT_EQ(program->getSourceRange().last.line, 4u);
}

}  // namespace
