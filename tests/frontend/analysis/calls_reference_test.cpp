// Call resolution against its slow reference (reference_calls.hpp): for every
// node of the corpus and of generated programs, the same call (status, name,
// arguments) and the same closest call.

#include <gtest/gtest.h>

#include <cstdint>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include "frontend/analysis/call_resolution.hpp"
#include "frontend/analysis/name_resolution.hpp"
#include "frontend/diagnostic.hpp"
#include "frontend/parse.hpp"
#include "tests/frontend/analysis/reference_calls.hpp"
#include "tests/support/program_generator.hpp"

#ifndef PLEXUS_CORPUS_DIR
#error "PLEXUS_CORPUS_DIR must name the folder of the corpus"
#endif

namespace {

using ca::callresolution::Call;

std::string where(ca::ast::Node const& node) {
  auto const& first = node.getSourceRange().first;
  return std::to_string(first.line) + ":" + std::to_string(first.column) + " (kind " +
         std::to_string(static_cast<int>(node.getKind())) + ")";
}

void expectSameCall(Call const& got, Call const& want, std::string const& at) {
  EXPECT_EQ(got.getNode(), want.getNode()) << at;
  EXPECT_EQ(got.isCall(), want.isCall()) << at;
  EXPECT_EQ(got.getName(), want.getName()) << at;
  EXPECT_EQ(got.getArguments(), want.getArguments()) << at;
}

/// Asks both analyses about every node of one source; returns how many calls
/// there were, so that a test can tell that it saw some.
std::size_t expectSameAsReference(std::string const& source, std::string const& path) {
  frontend::ParseResult const parsed = frontend::parse(source, path);
  EXPECT_TRUE(parsed.diagnostics.empty()) << path << ": " << frontend::formatDiagnostic(parsed.diagnostics.front())
                                          << "\n"
                                          << source;
  if (!parsed.diagnostics.empty()) return 0;
  auto const symbols = frontend::FileSymbols::build(*parsed.tree->getProgram(), parsed.tree->getFileType());
  frontend::FileCalls const fast(symbols);
  plexus::testing::ReferenceCalls const slow(symbols);

  std::size_t calls = 0;
  std::vector<ca::ast::Node const*> pending{parsed.tree->getProgram()};
  while (!pending.empty()) {
    ca::ast::Node const* node = pending.back();
    pending.pop_back();
    std::string const at = path + " at " + where(*node);
    Call const want = slow.getCallInfo(*node);
    expectSameCall(fast.getCallInfo(*node), want, at);
    calls += want.isCall() != Call::NoCall ? 1 : 0;
    auto const gotClosest = fast.getClosestCall(*node);
    auto const wantClosest = slow.getClosestCall(*node);
    EXPECT_EQ(gotClosest.has_value(), wantClosest.has_value()) << at;
    if (gotClosest && wantClosest) expectSameCall(*gotClosest, *wantClosest, at + ", closest call");
    if (::testing::Test::HasFailure()) return calls;
    lf::astapi::forEachChild(*node, [&pending](ca::ast::Node const* child) { pending.push_back(child); });
  }
  return calls;
}

TEST(CallsReference, EveryNodeOfTheCorpusGivesTheReferenceAnswer) {
  std::size_t files = 0, calls = 0;
  for (auto const& entry : std::filesystem::recursive_directory_iterator(PLEXUS_CORPUS_DIR)) {
    if (!entry.is_regular_file() || entry.path().extension() != ".m") continue;
    std::ifstream in(entry.path(), std::ios::binary);
    std::string const source((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
    calls += expectSameAsReference(source, entry.path().filename().string());
    if (HasFailure()) return;
    ++files;
  }
  EXPECT_GE(files, 50u) << "the corpus is missing or was cut down";
  EXPECT_GT(calls, 500u);
}

TEST(CallsReference, EveryNodeOfGeneratedProgramsGivesTheReferenceAnswer) {
  std::size_t calls = 0;
  for (std::uint64_t seed = 1; seed <= 600; ++seed) {
    calls += expectSameAsReference(plexus::testing::ProgramGenerator(seed).program(),
                                   "generated" + std::to_string(seed) + ".m");
    if (HasFailure()) return;
  }
  EXPECT_GT(calls, 10000u);
}

}  // namespace
