// What the rules report beyond which lines: how many findings, where, with
// which message, and how they read files in other encodings. Each case runs
// `runCheck` over a file written for it, with one rule on.

#include <gtest/gtest.h>

#include <map>
#include <string>
#include <vector>

#include "tests/support/scratch_folder.hpp"
#include "tools/check/check_run.hpp"
#include "tools/rules/rule_table.hpp"

namespace {

using plexus::rules::RuleDefinition;

struct Reported {
  std::uint32_t line;
  std::uint32_t column;
  std::string message;
  friend bool operator==(Reported const&, Reported const&) = default;
};

std::ostream& operator<<(std::ostream& out, Reported const& r) {
  return out << r.line << ":" << r.column << " " << r.message;
}

// The findings of rule `id` alone over the file at `path`, with `options`
// set and the others at their defaults.
std::vector<Reported> check(std::string const& id, std::string const& path,
                            std::map<std::string, std::int64_t> const& options = {}) {
  RuleDefinition const* rule = plexus::rules::findRule(id);
  EXPECT_NE(rule, nullptr) << id;
  if (rule == nullptr) return {};
  plexus::check::CheckOptions run;
  run.paths = {path};
  run.jobs = 1;
  run.selection.enabled.assign(run.selection.enabled.size(), false);
  run.selection.enabled[rule->index] = true;
  for (auto const& [key, value] : options) {
    auto const& declared = rule->body->options;
    for (std::size_t i = 0; i < declared.size(); ++i) {
      if (declared[i].key == key) run.selection.options[rule->index][i] = value;
    }
  }
  plexus::check::CheckReport const report = plexus::check::runCheck(run);
  EXPECT_TRUE(report.inputErrors.empty()) << path;
  std::vector<Reported> found;
  for (auto const& finding : report.findings) {
    found.push_back({finding.range.line, finding.range.column, finding.message});
  }
  return found;
}

// UTF-16 little-endian with a byte-order mark, from ASCII text.
std::string utf16(std::string const& ascii) {
  std::string bytes = "\xFF\xFE";
  for (char c : ascii) {
    bytes += c;
    bytes += '\0';
  }
  return bytes;
}

TEST(RuleFindings, AComparisonChainIsOneFindingAtTheWholeChainNamingBothOperators) {
  plexus::testing::ScratchFolder folder;
  ASSERT_TRUE(folder.made());
  std::string const path = folder.write("chains.m",
                                        "x = 1; lo = 0; hi = 2;\n"
                                        "r = lo < x < hi < 10;\n"
                                        "m = x ~= lo >= hi;\n"
                                        "k = (lo < x) < hi;\n");
  EXPECT_EQ(
      check("comparison-chain", path),
      (std::vector<Reported>{
          {2, 5,
           "'<' compares the logical result of the comparison '<' before it, not that comparison's right operand"},
          {3, 5,
           "'>=' compares the logical result of the comparison '~=' before it, not that comparison's right "
           "operand"}}));
}

TEST(RuleFindings, EmptyCatchNamesTheCaughtErrorAndTakesACommentOfItsOwnLineAsIntent) {
  plexus::testing::ScratchFolder folder;
  ASSERT_TRUE(folder.made());
  std::string const path = folder.write("catches.m",
                                        "try\n"
                                        "  x = load('a.mat');\n"
                                        "catch err\n"
                                        "end\n"
                                        "try\n"
                                        "  x = load('b.mat');\n"
                                        "catch  % a comment on the catch line is no explanation of the block\n"
                                        "end\n"
                                        "try\n"
                                        "  x = load('c.mat');\n"
                                        "catch\n"
                                        "  % c.mat is optional\n"
                                        "end\n"
                                        "try, x = 1; catch e, end  % after the end\n");
  EXPECT_EQ(check("empty-catch", path),
            (std::vector<Reported>{{3, 1, "the error caught in 'err' is dropped: the catch block is empty"},
                                   {7, 1, "the catch block is empty: every error of its try block is dropped"},
                                   {14, 13, "the error caught in 'e' is dropped: the catch block is empty"}}));
}

// The tree's offsets lie in the decoded text, which is longer than the file
// for a Windows-1252 file with accents and shorter for UTF-16: a comment is
// found only where the text is decoded as the parser decoded it.
TEST(RuleFindings, EmptyCatchFindsCommentsInFilesOfOtherEncodings) {
  plexus::testing::ScratchFolder folder;
  ASSERT_TRUE(folder.made());
  std::string const body =
      "try\n"
      "  x = 1;\n"
      "catch\n"
      "  % x is optional\n"
      "end\n"
      "y = 2; z = 3; w = 4; v = 5; u = 6; t = 7; s = 8; r = 9; q = 10; p = 11; o = 12;\n"
      "try\n"
      "  x = 2;\n"
      "catch\n"
      "end\n";
  std::string const accents = "% " + std::string(80, '\xE9') + "\n";
  for (std::string const& path : {folder.write("legacy.m", accents + body), folder.write("wide.m", utf16(body))}) {
    EXPECT_EQ(check("empty-catch", path),
              (std::vector<Reported>{{path.ends_with("legacy.m") ? 10u : 9u, 1,
                                      "the catch block is empty: every error of its try block is dropped"}}))
        << path;
  }
}

TEST(RuleFindings, SignatureLimitsCountOrdinaryItemsAndReportAtTheName) {
  plexus::testing::ScratchFolder folder;
  ASSERT_TRUE(folder.made());
  std::string const path = folder.write("signatures.m",
                                        "function [a, b, varargout] = signatures(p, q, ~, varargin)\n"
                                        "a = p; b = q; varargout = {};\n"
                                        "end\n"
                                        "function none()\n"
                                        "end\n");
  EXPECT_EQ(check("too-many-inputs", path, {{"max-inputs", 2}}),
            (std::vector<Reported>{{1, 30, "'signatures' takes 3 inputs, more than the limit of 2"}}));
  EXPECT_EQ(check("too-many-inputs", path, {{"max-inputs", 3}}), std::vector<Reported>{});
  EXPECT_EQ(check("too-many-inputs", path), std::vector<Reported>{});
  EXPECT_EQ(check("too-many-outputs", path, {{"max-outputs", 1}}),
            (std::vector<Reported>{{1, 30, "'signatures' returns 2 outputs, more than the limit of 1"}}));
  EXPECT_EQ(check("too-many-outputs", path, {{"max-outputs", 0}}),
            (std::vector<Reported>{{1, 30, "'signatures' returns 2 outputs, more than the limit of 0"}}));
  EXPECT_EQ(check("too-many-outputs", path, {{"max-outputs", 2}}), std::vector<Reported>{});
}

TEST(RuleFindings, SuperclassConstructorCallsSayWhereTheyStand) {
  plexus::testing::ScratchFolder folder;
  ASSERT_TRUE(folder.made());
  std::string const path = folder.write("Thing.m",
                                        "classdef Thing < pkg.Base\n"
                                        "  methods\n"
                                        "    function obj = Thing()\n"
                                        "      obj@pkg.Base();\n"
                                        "      spare = 1;\n"
                                        "      spare@pkg.Base();\n"
                                        "      f = @() obj@pkg.Base();\n"
                                        "    end\n"
                                        "    function obj = reset(obj)\n"
                                        "      obj@pkg.Base();\n"
                                        "      obj = reset@pkg.Base(obj);\n"
                                        "    end\n"
                                        "  end\n"
                                        "end\n"
                                        "function reopen(thing)\n"
                                        "thing@pkg.Base();\n"
                                        "end\n");
  EXPECT_EQ(check("superclass-constructor-outside-constructor", path),
            (std::vector<Reported>{
                {6, 7,
                 "'spare@pkg.Base' calls a superclass constructor on a variable that is not the object that the "
                 "constructor 'Thing' returns"},
                {7, 15, "'obj@pkg.Base' calls a superclass constructor inside an anonymous function"},
                {10, 7,
                 "'obj@pkg.Base' calls a superclass constructor in 'reset', which is not the constructor of its class"},
                {16, 1, "'thing@pkg.Base' calls a superclass constructor in 'reopen', which is no constructor"}}));
}

TEST(RuleFindings, ConditionsAndScriptsNameTheStatementAndTheName) {
  plexus::testing::ScratchFolder folder;
  ASSERT_TRUE(folder.made());
  std::string const path = folder.write("loop.m",
                                        "n = 0;\n"
                                        "while n < 3 | nargin > 0\n"
                                        "  n = n + 1;\n"
                                        "end\n");
  EXPECT_EQ(
      check("elementwise-logical-in-condition", path),
      (std::vector<Reported>{
          {2, 7, "'|' in the condition of 'while' works element by element; '||' is meant for a scalar condition"}}));
  EXPECT_EQ(check("nargin-in-script", path),
            (std::vector<Reported>{
                {2, 15, "'nargin' is used in a script, where it is an error: a script has no inputs to count"}}));
}

}  // namespace
