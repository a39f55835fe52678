// CheckOptions::beforeRules: the hook by which a run without rules still
// makes the analyses that rules would ask for.

#include <gtest/gtest.h>

#include <algorithm>
#include <mutex>
#include <string>
#include <vector>

#include "platform/analysis/analysis_impl.hpp"
#include "platform/ast/syntax_tree.hpp"
#include "platform/nameresolution/symbol_table.hpp"
#include "tests/support/scratch_folder.hpp"
#include "tools/check/check_run.hpp"

namespace {

using plexus::testing::ScratchFolder;

// It sees the analysis of every file that parses, once, whichever thread
// checks it, also when every rule is off; a file with syntax errors has no
// analysis to see.
TEST(BeforeRules, SeesTheAnalysisOfEachFileThatParsesOnceWithOrWithoutRules) {
  ScratchFolder folder;
  ASSERT_TRUE(folder.made());
  for (int i = 0; i < 6; ++i) folder.write("f" + std::to_string(i) + ".m", "function y = f(x)\ny = x + 1;\nend\n");
  folder.write("broken.m", "y = (1 + ;\n");

  for (bool const rulesOn : {true, false}) {
    plexus::check::CheckOptions options;
    options.paths = {folder / ""};
    options.jobs = 2;
    if (!rulesOn) options.selection.enabled.assign(options.selection.enabled.size(), false);
    std::mutex mutex;
    std::vector<std::size_t> symbolCounts;
    options.beforeRules = [&](ca::clients::AnalysisImpl const& analysis) {
      std::size_t const symbols = analysis.getSymbolTable()->getSymbols().size();
      std::lock_guard const lock(mutex);
      symbolCounts.push_back(symbols);
    };
    plexus::check::CheckReport const report = plexus::check::runCheck(options);
    EXPECT_EQ(report.files, 7u);
    ASSERT_EQ(symbolCounts.size(), 6u) << (rulesOn ? "with rules" : "without rules");
    // The same function in every file: the same symbols, made from the file's own tree.
    EXPECT_GT(symbolCounts.front(), 0u);
    EXPECT_TRUE(std::all_of(symbolCounts.begin(), symbolCounts.end(),
                            [&](std::size_t count) { return count == symbolCounts.front(); }));
  }
}

}  // namespace
