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
#include "tests/support/program_generator.hpp"

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
  for (auto const* definition : use.getDefinitions()) {
    text += ' ';
    text += where(*definition);
  }
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

TEST(UseDefReference, GeneratedProgramsGiveTheReferenceAnswer) {
  for (std::uint64_t seed = 1; seed <= 600; ++seed) {
    std::string const source = plexus::testing::ProgramGenerator(seed).program();
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
