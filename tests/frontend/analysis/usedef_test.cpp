// Use-def records from source text: their kinds and order, and which
// definitions reach each use across branches and loops.

#include <gtest/gtest.h>

#include <sstream>
#include <string>
#include <vector>

#include "platform/usedef/usedef_analysis.hpp"
#include "rulesystem/execution/all_nodes.hpp"
#include "tests/support/analysis_text.hpp"

namespace {

using ca::usedef::UseDefBase;
using plexus::testing::analyzed;
using Lines = std::vector<std::string>;

std::string where(ca::usedef::UseDefBase const& record) {
  auto const& first = record.getIdentifier()->getSourceRange().first;
  return plexus::testing::text(record.getIdentifier()->getText()) + "@" + std::to_string(first.line) + ":" +
         std::to_string(first.column);
}

// Each record as "Kind name@line:col", uses followed by "<- " and the
// definitions that reach them.
Lines recordsOf(std::string const& source) {
  auto result = analyzed(source);
  Lines out;
  for (UseDefBase const* record : result.analysis->get<ca::usedef::UseDefAnalysis>().getAllUseDefs()) {
    std::ostringstream line;
    line << record->getKind() << " " << where(*record);
    if (auto const* use = record->asUse()) {
      line << " <-";
      for (auto const* definition : use->getDefinitions()) line << " " << where(*definition);
      EXPECT_EQ(use->getDefinition(), use->getDefinitions().empty() ? nullptr : use->getDefinitions().back());
      EXPECT_NE(use->getCfgNode(), nullptr) << line.str();
    }
    out.push_back(line.str());
  }
  return out;
}

TEST(UseDef, KindsInSourceOrderAndRightSidesBeforeTargets) {
  EXPECT_EQ(recordsOf("function y = f(x)\n"
                      "  y = x + 1;\n"
                      "  y(2) = y;\n"
                      "  [a, ~] = deal(y);\n"
                      "  global G\n"
                      "  persistent P\n"
                      "  disp(a, G, P);\n"
                      "end\n"),
            (Lines{"InputDef x@1:16", "FullAssignmentDef y@2:3", "VariableUse x@2:7 <- x@1:16",
                   "PartialAssignmentUseDef y@3:3 <- y@2:3", "VariableUse y@3:10 <- y@2:3", "FullAssignmentDef a@4:4",
                   "VariableUse y@4:17 <- y@3:3", "GlobalDef G@5:10", "PersistentDef P@6:14",
                   "VariableUse a@7:8 <- a@4:4", "VariableUse G@7:11 <- G@5:10", "VariableUse P@7:14 <- P@6:14"}));
}

TEST(UseDef, DefinitionsFromBothBranchesReachTheJoin) {
  EXPECT_EQ(
      recordsOf("function f(c)\n"
                "  if c\n"
                "    x = 1;\n"
                "  else\n"
                "    x = 2;\n"
                "  end\n"
                "  disp(x)\n"
                "  x = 3;\n"
                "  disp(x)\n"
                "end\n"),
      (Lines{"InputDef c@1:12", "VariableUse c@2:6 <- c@1:12", "FullAssignmentDef x@3:5", "FullAssignmentDef x@5:5",
             "VariableUse x@7:8 <- x@3:5 x@5:5", "FullAssignmentDef x@8:3", "VariableUse x@9:8 <- x@8:3"}));
}

TEST(UseDef, LoopsCarryDefinitionsAroundAndUsesWithoutDefinitionsGetNone) {
  EXPECT_EQ(
      recordsOf("function f(n)\n"
                "  s = 0;\n"
                "  for k = 1:n\n"
                "    s = s + k;\n"
                "  end\n"
                "  disp(s, t)\n"
                "  t = 1;\n"
                "end\n"),
      (Lines{"InputDef n@1:12", "FullAssignmentDef s@2:3", "LoopVariableDef k@3:7", "VariableUse n@3:13 <- n@1:12",
             "FullAssignmentDef s@4:5", "VariableUse s@4:9 <- s@2:3 s@4:5", "VariableUse k@4:13 <- k@3:7",
             "VariableUse s@6:8 <- s@2:3 s@4:5", "VariableUse t@6:11 <-", "FullAssignmentDef t@7:3"}));
}

TEST(UseDef, ScriptsCatchAndAnonymousFunctions) {
  EXPECT_EQ(recordsOf("x = 1;\n"
                      "try\n"
                      "  y = x;\n"
                      "catch err\n"
                      "  disp(err)\n"
                      "end\n"
                      "g = @(a) a + x;\n"),
            (Lines{"FullAssignmentDef x@1:1", "FullAssignmentDef y@3:3", "VariableUse x@3:7 <- x@1:1",
                   "CatchDef err@4:7", "VariableUse err@5:8 <- err@4:7", "FullAssignmentDef g@7:1", "InputDef a@7:7",
                   "VariableUse a@7:10 <- a@7:7", "VariableUse x@7:14 <- x@1:1"}));
}

TEST(UseDef, PartialAssignmentsReachBothRootsOfARun) {
  auto result = analyzed("function f\n  v = 1;\n  v(2) = 3;\n  disp(v)\nend\n");
  ca::rulesystem::AllNodes all;
  int definitions = 0, uses = 0, both = 0;
  struct Count final : ca::rulesystem::Consumer<ca::usedef::Definition const*> {
    int* n;
    explicit Count(int* counter) : n(counter) {}
    std::u16string kindDescription() const override { return u"Count"; }
    std::u16string detailsDescription() const override { return u""; }
    void consume(ca::usedef::Definition const*, ca::Analysis const&,
                 ca::rulesystem::MessageHelper const*) const override {
      ++*n;
    }
  };
  struct CountUses final : ca::rulesystem::Consumer<ca::usedef::Use const*> {
    int* n;
    int* alsoDefinitions;
    CountUses(int* counter, int* both) : n(counter), alsoDefinitions(both) {}
    std::u16string kindDescription() const override { return u"CountUses"; }
    std::u16string detailsDescription() const override { return u""; }
    void consume(ca::usedef::Use const* use, ca::Analysis const&, ca::rulesystem::MessageHelper const*) const override {
      ++*n;
      if (use->isDefinition()) ++*alsoDefinitions;
    }
  };
  all.definition | std::make_shared<Count>(&definitions);
  all.use | std::make_shared<CountUses>(&uses, &both);
  all.execute(*result.analysis, nullptr);
  EXPECT_EQ(definitions, 2);
  EXPECT_EQ(uses, 2);
  EXPECT_EQ(both, 1);
}

TEST(UseDef, TargetsReadTheirIndicesAndDynamicFieldNamesBeforeTheyWrite) {
  EXPECT_EQ(recordsOf("function f(k)\n"
                      "  s.(k) = 1;\n"
                      "  t(k, 2).(k) = 3;\n"
                      "  t{k}.a(k) = s;\n"
                      "end\n"),
            (Lines{"InputDef k@1:12", "PartialAssignmentUseDef s@2:3 <-", "VariableUse k@2:6 <- k@1:12",
                   "PartialAssignmentUseDef t@3:3 <-", "VariableUse k@3:5 <- k@1:12", "VariableUse k@3:12 <- k@1:12",
                   "PartialAssignmentUseDef t@4:3 <- t@3:3", "VariableUse k@4:5 <- k@1:12",
                   "VariableUse k@4:10 <- k@1:12", "VariableUse s@4:15 <- s@2:3"}));
}

}  // namespace
