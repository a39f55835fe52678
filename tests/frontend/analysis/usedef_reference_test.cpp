// The use-def analysis against its slow reference (reference_use_def.hpp): the
// same records in the same order, each use in the same control-flow node and
// reached by exactly the same definitions, over the hand-written corpus and
// over generated programs that mix branches, loops, try/catch, switch, break,
// continue and return, nested functions, globals and partial assignments.

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include "frontend/analysis/control_flow.hpp"
#include "frontend/analysis/name_resolution.hpp"
#include "frontend/analysis/use_def.hpp"
#include "frontend/diagnostic.hpp"
#include "frontend/parse.hpp"
#include "tests/frontend/analysis/reference_use_def.hpp"

#ifndef PLEXUS_CORPUS_DIR
#error "PLEXUS_CORPUS_DIR must name the folder of the corpus"
#endif

namespace {

namespace fs = std::filesystem;
using ca::usedef::UseDefBase;

std::string where(UseDefBase const& record) {
  auto const& first = record.getIdentifier()->getSourceRange().first;
  return std::to_string(first.line) + ":" + std::to_string(first.column);
}

std::string definitionsText(ca::usedef::Use const& use) {
  std::string text;
  for (auto const* definition : use.getDefinitions()) text += " " + where(*definition);
  return text;
}

/// Runs both analyses over one source and reports the first difference.
void expectSameAsReference(std::string const& source, std::string const& path) {
  frontend::ParseResult const parsed = frontend::parse(source, path);
  ASSERT_TRUE(parsed.diagnostics.empty()) << path << ": "
                                          << frontend::formatDiagnostic(parsed.diagnostics.front()) << "\n"
                                          << source;
  auto const& program = *parsed.tree->getProgram();
  auto const symbols = frontend::FileSymbols::build(program, parsed.tree->getFileType());
  auto const flow = frontend::buildControlFlow(program);
  auto const fastAnalysis = frontend::buildUseDefs(program, *symbols, *flow);
  auto const slowAnalysis = plexus::testing::buildReferenceUseDefs(program, *symbols, *flow);
  auto const fast = fastAnalysis->getAllUseDefs();
  auto const slow = slowAnalysis->getAllUseDefs();

  ASSERT_EQ(fast.size(), slow.size()) << path;
  for (std::size_t i = 0; i < fast.size(); ++i) {
    UseDefBase const& got = *fast[i];
    UseDefBase const& want = *slow[i];
    ASSERT_EQ(got.getIdentifier(), want.getIdentifier()) << path << ": record " << i << " is at " << where(got)
                                                         << ", the reference's at " << where(want);
    ASSERT_EQ(got.getKind(), want.getKind()) << path << " at " << where(got);
    ASSERT_EQ(got.asUse() != nullptr, want.asUse() != nullptr) << path << " at " << where(got);
    if (got.asUse() == nullptr) continue;
    ca::usedef::Use const& gotUse = *got.asUse();
    ca::usedef::Use const& wantUse = *want.asUse();
    EXPECT_EQ(gotUse.getCfgNode(), wantUse.getCfgNode()) << path << " at " << where(got);
    std::vector<ca::ast::Identifier const*> gotDefinitions, wantDefinitions;
    for (auto const* definition : gotUse.getDefinitions()) gotDefinitions.push_back(definition->getIdentifier());
    for (auto const* definition : wantUse.getDefinitions()) wantDefinitions.push_back(definition->getIdentifier());
    ASSERT_EQ(gotDefinitions, wantDefinitions)
        << path << ": the use at " << where(got) << " is reached from" << definitionsText(gotUse)
        << " where the reference says" << definitionsText(wantUse) << "\n"
        << source;
  }
}

TEST(UseDefReference, EveryCorpusFileGivesTheReferenceAnswer) {
  std::size_t files = 0;
  for (auto const& entry : fs::recursive_directory_iterator(PLEXUS_CORPUS_DIR)) {
    if (!entry.is_regular_file() || entry.path().extension() != ".m") continue;
    std::ifstream in(entry.path(), std::ios::binary);
    std::string const source((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
    expectSameAsReference(source, entry.path().filename().string());
    if (HasFatalFailure()) return;
    ++files;
  }
  EXPECT_GE(files, 50u) << "the corpus is missing or was cut down";
}

// ---------------------------------------------------------------------------
// Generated programs

/// splitmix64, so that a failing seed is the same program everywhere.
class Random {
 public:
  explicit Random(std::uint64_t seed) : state_(seed) {}
  std::uint64_t next() {
    std::uint64_t z = (state_ += 0x9e3779b97f4a7c15ULL);
    z = (z ^ (z >> 30)) * 0xbf58476d1ce4e5b9ULL;
    z = (z ^ (z >> 27)) * 0x94d049bb133111ebULL;
    return z ^ (z >> 31);
  }
  std::size_t below(std::size_t n) { return static_cast<std::size_t>(next() % n); }
  bool chance(int percent) { return below(100) < static_cast<std::size_t>(percent); }

 private:
  std::uint64_t state_;
};

/// Random programs over a handful of variables, so that definitions and uses
/// of the same names meet through every kind of branch and jump.
class ProgramGenerator {
 public:
  explicit ProgramGenerator(std::uint64_t seed) : random_(seed) {}

  std::string program() {
    text_.clear();
    switch (random_.below(3)) {
      case 0:  // a script, perhaps with local functions after it
        block(0, false, false, 4 + random_.below(10));
        if (random_.chance(40)) {
          line(0, "function r = helper(p)");
          block(1, false, true, 2 + random_.below(5));
          line(0, "end");
        }
        break;
      case 1:  // functions with `end`, some nested
        function(0, "main", 2);
        if (random_.chance(50)) function(0, "other", 1);
        break;
      default:  // functions without `end`
        functionHead(0, "main");
        block(1, false, true, 4 + random_.below(10));
        line(0, "function r = local(p)");
        block(1, false, true, 2 + random_.below(6));
        break;
    }
    return text_;
  }

 private:
  std::string var() {
    static char const* const names[] = {"a", "b", "c", "x", "y", "r", "p"};
    return names[random_.below(std::size(names))];
  }

  std::string expression(int depth = 0) {
    switch (depth > 2 ? random_.below(2) : random_.below(9)) {
      case 0: return var();
      case 1: return std::to_string(random_.below(10));
      case 2: return expression(depth + 1) + " + " + expression(depth + 1);
      case 3: return "f(" + expression(depth + 1) + ")";
      case 4: return var() + "(" + expression(depth + 1) + ")";
      case 5: return "@(" + var() + ") " + var() + " * " + expression(depth + 1);
      case 6: return var() + ".field";
      case 7: return "[" + expression(depth + 1) + ", " + var() + "]";
      default: return "(" + expression(depth + 1) + ")";
    }
  }

  void line(std::size_t indent, std::string const& text) { text_ += std::string(indent * 2, ' ') + text + "\n"; }

  void functionHead(std::size_t indent, std::string const& name) {
    line(indent, "function [r, y] = " + name + "(a, b" + (random_.chance(30) ? ", varargin" : "") + ")");
  }

  void function(std::size_t indent, std::string const& name, int nesting) {
    functionHead(indent, name);
    block(indent + 1, false, true, 3 + random_.below(8));
    if (nesting > 0 && random_.chance(60)) {
      function(indent + 1, name + "Inner", nesting - 1);
      block(indent + 1, false, true, 1 + random_.below(3));
    }
    line(indent, "end");
  }

  void block(std::size_t indent, bool inLoop, bool inFunction, std::size_t count) {
    for (std::size_t i = 0; i < count; ++i) statement(indent, inLoop, inFunction);
  }

  void statement(std::size_t indent, bool inLoop, bool inFunction) {
    bool const deep = indent > 4;
    std::size_t const kind = random_.below(deep ? 8 : 20);
    std::size_t const body = 1 + random_.below(3);
    switch (kind) {
      case 0:
      case 1: line(indent, var() + " = " + expression() + ";"); return;
      case 2: line(indent, var() + "(" + expression() + ") = " + expression() + ";"); return;
      case 3: line(indent, var() + ".f = " + expression() + ";"); return;
      case 4: line(indent, "disp(" + expression() + ")"); return;
      case 5: {
        static char const* const shapes[] = {"[%, %] = deal(@);", "[%, ~] = size(@);", "[%(1), %] = deal(@);",
                                             "[%, %.g] = deal(@);"};
        std::string out;
        for (char const* c = shapes[random_.below(std::size(shapes))]; *c != 0; ++c) {
          out += *c == '%' ? var() : *c == '@' ? expression() : std::string(1, *c);
        }
        line(indent, out);
        return;
      }
      case 6:
        if (inLoop) {
          line(indent, random_.chance(50) ? "break" : "continue");
        } else {
          line(indent, random_.chance(30) ? "return" : var() + " = " + var() + ";");
        }
        return;
      case 7: line(indent, "if " + expression() + ", " + var() + " = 1; end"); return;
      case 8: {
        line(indent, "if " + expression());
        block(indent + 1, inLoop, inFunction, random_.below(3));
        for (std::size_t n = random_.below(3); n > 0; --n) {
          line(indent, "elseif " + expression());
          block(indent + 1, inLoop, inFunction, body);
        }
        if (random_.chance(50)) {
          line(indent, "else");
          block(indent + 1, inLoop, inFunction, body);
        }
        line(indent, "end");
        return;
      }
      case 9:
        line(indent, "while " + expression());
        block(indent + 1, true, inFunction, random_.below(4));
        line(indent, "end");
        return;
      case 10:
        line(indent, "for " + var() + " = 1:" + expression());
        block(indent + 1, true, inFunction, body + 1);
        line(indent, "end");
        return;
      case 11: {
        line(indent, "switch " + expression());
        for (std::size_t n = 1 + random_.below(3); n > 0; --n) {
          line(indent + 1, "case " + std::to_string(n));
          block(indent + 2, inLoop, inFunction, random_.below(3));
        }
        if (random_.chance(50)) {
          line(indent + 1, "otherwise");
          block(indent + 2, inLoop, inFunction, body);
        }
        line(indent, "end");
        return;
      }
      case 12: {
        line(indent, "try");
        block(indent + 1, inLoop, inFunction, body);
        switch (random_.below(3)) {
          case 0: line(indent, "catch err"); break;
          case 1: line(indent, "catch " + var()); break;
          default: line(indent, "catch"); break;
        }
        block(indent + 1, inLoop, inFunction, random_.below(3));
        line(indent, "end");
        return;
      }
      case 13:
        line(indent, "try");
        block(indent + 1, inLoop, inFunction, body);
        line(indent, "end");
        return;
      case 14: line(indent, "global " + var()); return;
      case 15:
        if (inFunction) {
          line(indent, "persistent " + var());
        } else {
          line(indent, "hold on");
        }
        return;
      case 16: line(indent, var() + " = " + var() + " + " + var() + ";"); return;
      case 17:
        line(indent, "parfor " + var() + " = 1:" + expression());
        block(indent + 1, false, inFunction, body);
        line(indent, "end");
        return;
      case 18:
        line(indent, "spmd");
        block(indent + 1, inLoop, inFunction, body);
        line(indent, "end");
        return;
      default: line(indent, "g = @(" + var() + ") " + expression() + ";"); return;
    }
  }

  Random random_;
  std::string text_;
};

TEST(UseDefReference, GeneratedProgramsGiveTheReferenceAnswer) {
  for (std::uint64_t seed = 1; seed <= 600; ++seed) {
    std::string const source = ProgramGenerator(seed).program();
    expectSameAsReference(source, "generated" + std::to_string(seed) + ".m");
    if (HasFatalFailure()) return;
  }
}

// Long bodies of the shapes that once cost the square of their length, at a
// size the reference still manages: one script body, an elseif chain, a
// switch, many try blocks, jumps out of a long loop, and many returns
// between definitions of many variables.
TEST(UseDefReference, LongBodiesGiveTheReferenceAnswer) {
  std::string script, chain = "function r = chain(x)\nr = 0;\nif x == 0\n  r = 1;\n",
                      choice = "function r = choose(x)\nr = 0;\nswitch x\n", tries = "function r = attempts(x)\nr = x;\n",
                      loop = "function r = loop(x)\nr = 0;\nwhile x\n", returns = "function r = checks(x)\nr = x;\n";
  for (int i = 1; i <= 300; ++i) {
    std::string const n = std::to_string(i), previous = std::to_string(i - 1), half = std::to_string(i / 2);
    script += "v" + n + " = v" + previous + " + v" + half + ";\nformat long\ndisp(v" + n + ")\n";
    chain += "elseif x == " + n + "\n  t = r + " + n + ";\n  r = t * x;\n";
    choice += "  case " + n + "\n    t" + n + " = r + " + n + ";\n    r = t" + n + " * x;\n";
    tries += "try\n  r = step(r);\ncatch err\n  r = recover(err, r);\nend\n";
    loop += "  w" + n + " = r + " + n + ";\n  if w" + n + " > x, break; end\n  if w" + previous +
            " < 0, continue; end\n  r = w" + half + ";\n";
    returns += "u" + n + " = r + u" + half + ";\nif u" + n + " > x, return; end\n";
  }
  expectSameAsReference(script + "disp(v0)\n", "script.m");
  expectSameAsReference(chain + "else\n  r = -r;\nend\ndisp(r)\nend\n", "chain.m");
  expectSameAsReference(choice + "  otherwise\n    r = -r;\nend\ndisp(r, t7)\nend\n", "choose.m");
  expectSameAsReference(tries + "disp(r)\nend\n", "attempts.m");
  expectSameAsReference(loop + "end\ndisp(r, w1, w150)\nend\n", "loop.m");
  expectSameAsReference(returns + "disp(r, u1, u299)\nend\n", "checks.m");
}

}  // namespace
