// Where a node stands: parents, positions in lists, what follows in control
// flow, and the file's folder and sort, from source text through a run.

#include <gtest/gtest.h>

#include <typeinfo>

#include "rulesystem/execution/all_nodes.hpp"
#include "rulesystem/syntax/isa.hpp"
#include "rulesystem/syntax/node_relations.hpp"
#include "tests/support/checked_hits.hpp"

namespace {

using namespace ca::rulesystem;
using lf::astapi::NodeKind;
using plexus::testing::analyse;
using plexus::testing::checkedHitsOf;
using plexus::testing::Lines;

TEST(GetParent, GivesTheParentOfTheClassAskedForAndNothingElse) {
  EXPECT_EQ(checkedHitsOf("x = 1 + 2;\n", [](auto& all) { return upcast<Node const&>(all.numberLiteral) | getParent<Node>(); }),
            Lines({"1:5 1 + 2", "1:5 1 + 2"}));
  // A field's parent is its dot operation: `b` in `a.b.c` is the field of
  // the inner one. A named argument's field has no dot above it.
  EXPECT_EQ(checkedHitsOf("a.b.c = f(Name=1);\n",
                 [](auto& all) { return upcast<Node const&>(all.field) | getParent<DotOperation>(); }),
            Lines({"1:1 a.b", "1:1 a.b.c"}));
  // The root has no parent, and a parent of another class gives nothing.
  EXPECT_EQ(checkedHitsOf("x = 1;\n", [](auto& all) { return upcast<Node const&>(all.program) | getParent<Node>(); }), Lines());
  EXPECT_EQ(checkedHitsOf("x = 1;\n",
                 [](auto& all) { return upcast<Node const&>(all.numberLiteral) | getParent<DotOperation>(); }),
            Lines());

  AllNodes all;
  auto const numbers = upcast<Node const&>(all.numberLiteral);
  EXPECT_EQ(numbers | getParent<Node>(), numbers | getParent<Node>());
  EXPECT_EQ((numbers | getParent<Node>())->detailsDescription(), u"GetParent Node");
  EXPECT_EQ((numbers | getParent<DotOperation>())->detailsDescription(), u"GetParent DotOperation");
}

TEST(IsDirectChildOf, KeepsTheNodesWhoseParentIsOfTheClass) {
  EXPECT_EQ(checkedHitsOf("hold on\nx = 'on';\n", [](auto& all) { return all.charVectorLiteral | isDirectChildOf<CommandInvocation>(); }),
            Lines({"1:6 on"}));
  // A field under a named argument is no field of a dot.
  EXPECT_EQ(checkedHitsOf("s.a = f(x, Name=1);\n",
                 [](auto& all) { return upcast<Node const&>(all.field) | isDirectChildOf<DotOperation>(); }),
            Lines({"1:3 a"}));
  std::string const assignments = "[a, b] = f(1);\nc = g(2);\nd = [h(3)];\n";
  EXPECT_EQ(checkedHitsOf(assignments,
                 [](auto& all) { return upcast<Node const&>(all.parenOperation) | isDirectChildOf<Assignment>(); }),
            Lines({"2:5 g(2)"}));
  EXPECT_EQ(checkedHitsOf(assignments,
                 [](auto& all) {
                   return upcast<Node const&>(all.parenOperation) | isDirectChildOf<MultiLhsAssignment>();
                 }),
            Lines({"1:10 f(1)"}));
  // A literal has no children; the root is the child of nothing.
  EXPECT_EQ(checkedHitsOf("x = 'a';\nhold on\n",
                 [](auto& all) { return upcast<Node const&>(all.charVectorLiteral) | isDirectChildOf<CharVectorLiteral>(); }),
            Lines());
  EXPECT_EQ(checkedHitsOf("x = 1;\n", [](auto& all) { return upcast<Node const&>(all.program) | isDirectChildOf<Assignment>(); }),
            Lines());

  AllNodes all;
  EXPECT_EQ(all.charVectorLiteral | isDirectChildOf<DotOperation>(), all.charVectorLiteral | isDirectChildOf<DotOperation>());
  EXPECT_NE(all.charVectorLiteral | isDirectChildOf<Assignment>(),
            all.charVectorLiteral | isDirectChildOf<MultiLhsAssignment>());
  EXPECT_EQ((all.charVectorLiteral | isDirectChildOf<CharVectorLiteral>())->detailsDescription(),
            u"IsDirectChildOf CharVectorLiteral");
  EXPECT_EQ((all.charVectorLiteral | isDirectChildOf<MultiLhsAssignment>())->detailsDescription(),
            u"IsDirectChildOf MultiLhsAssignment");
}

TEST(IsNthItemInList, CountsFromOneInArgumentListsCommandsAndImportsButNotTheCalledNode) {
  std::string const source = "y = f(a, 2, 3);\nz = c{1, 2};\nformat long g\n";
  EXPECT_EQ(checkedHitsOf(source, [](auto& all) { return all.numberLiteral | isNthItemInList(2); }),
            Lines({"1:10 2", "2:10 2"}));
  // Two arguments have no third.
  EXPECT_EQ(checkedHitsOf(source, [](auto& all) { return all.numberLiteral | isNthItemInList(3); }), Lines({"1:13 3"}));
  EXPECT_EQ(checkedHitsOf(source, [](auto& all) { return all.charVectorLiteral | isNthItemInList(2); }), Lines({"3:13 g"}));
  // The called expression is not the first argument; a call that is one is.
  EXPECT_EQ(checkedHitsOf("x = f(1)(2);\ny = h(g(3));\n",
                 [](auto& all) { return upcast<Node const&>(all.parenOperation) | isNthItemInList(1); }),
            Lines({"2:7 g(3)"}));
  // Outside these lists nothing has a position.
  EXPECT_EQ(checkedHitsOf("x = [1, 2];\n", [](auto& all) { return all.numberLiteral | isNthItemInList(1); }), Lines());

  // The parts of an import are items too; no root hands them out alone.
  auto const snippet = analyse("import pkg.sub.fn\nfn(1);\n");
  auto const& import = lf::astapi::cast<ImportCommand>(*snippet.analysis->getProgram()->getBody()[0]);
  ASSERT_EQ(import.getParts().size(), 3u);
  auto second = isNthItemInList(2);
  EXPECT_TRUE(second->test(*import.getParts()[1], *snippet.analysis));
  EXPECT_FALSE(second->test(*import.getParts()[0], *snippet.analysis));
  EXPECT_FALSE(second->test(import, *snippet.analysis));

  AllNodes all;
  EXPECT_EQ(all.numberLiteral | isNthItemInList(1), all.numberLiteral | isNthItemInList(1));
  EXPECT_NE(all.numberLiteral | isNthItemInList(1), all.numberLiteral | isNthItemInList(2));
  EXPECT_EQ((all.numberLiteral | isNthItemInList(3))->detailsDescription(), u"isNthItemInList 3");
}

TEST(IsFollowedBy, AsksWhatControlReachesNextFromTheStatement) {
  std::string const script = "x = 1;\ny = 2;\nz = 3;\ndisp(z)\n";
  EXPECT_EQ(checkedHitsOf(script,
                 [](auto& all) { return upcast<Node const&>(all.assignment) | isFollowedBy(NodeKind::Assignment); }),
            Lines({"1:1 x = 1", "2:1 y = 2"}));
  EXPECT_EQ(checkedHitsOf(script,
                 [](auto& all) { return upcast<Node const&>(all.assignment) | isFollowedBy(NodeKind::PrintStatement); }),
            Lines({"3:1 z = 3"}));
  // The end of a body goes back to its function.
  EXPECT_EQ(checkedHitsOf("function f\nif true\n    x = 1;\nend\ny = 2;\nend\n",
                 [](auto& all) { return upcast<Node const&>(all.assignment) | isFollowedBy(NodeKind::Function); }),
            Lines({"5:1 y = 2"}));
  // A printed expression stands for its statement.
  EXPECT_EQ(checkedHitsOf("numel(1)\ny = 2;\n",
                 [](auto& all) { return upcast<Node const&>(all.parenOperation) | isFollowedBy(NodeKind::Assignment); }),
            Lines({"1:1 numel(1)"}));

  // Different kinds print alike, and are still two stages.
  AllNodes all;
  auto const statements = upcast<Node const&>(all.assignment);
  auto const beforeAssignment = statements | isFollowedBy(NodeKind::Assignment);
  auto const beforePrint = statements | isFollowedBy(NodeKind::PrintStatement);
  EXPECT_EQ(beforeAssignment, statements | isFollowedBy(NodeKind::Assignment));
  EXPECT_NE(beforeAssignment, beforePrint);
  EXPECT_EQ(beforeAssignment->detailsDescription(), u"IsFollowedBy");
  EXPECT_EQ(beforePrint->detailsDescription(), u"IsFollowedBy");
}

TEST(IsInAtDirectory, IsTrueDirectlyInAFolderStartingWithAtAndNowhereElse) {
  auto const inFolder = [](std::string const& path) {
    return !checkedHitsOf("x = 1;\n", [](auto& all) { return all.numberLiteral | isInAtDirectory(); }, path).empty();
  };
  EXPECT_TRUE(inFolder("@Account/withdraw.m"));
  EXPECT_TRUE(inFolder("/home/me/project/@Shape/area.m"));
  EXPECT_TRUE(inFolder("C:\\project\\@Shape\\area.m"));  // written on another system
  EXPECT_TRUE(inFolder("lib//@Shape//area.m"));
  EXPECT_FALSE(inFolder("@Account/private/check.m"));  // deeper below the class folder
  EXPECT_FALSE(inFolder("project/Shape/area.m"));
  EXPECT_FALSE(inFolder("@area.m"));  // no folder at all
  EXPECT_FALSE(inFolder(""));
  EXPECT_FALSE(inFolder("proj@/x.m"));

  AllNodes all;
  auto const atFolder = all.program | isInAtDirectory();
  EXPECT_EQ(atFolder, all.program | isInAtDirectory());
  EXPECT_EQ(atFolder->detailsDescription(), u"IsInAtDirectory");

  // The folder is the analysis's to tell; another analysis cannot.
  Lines lines;
  plexus::testing::recordHits(atFolder, lines, plexus::testing::ItemDescriber(nullptr));
  auto const snippet = analyse("x = 1;\n", "@Account/withdraw.m");
  plexus::testing::ForeignAnalysis const bare(*snippet.analysis);
  EXPECT_THROW(all.execute(bare, nullptr), std::bad_cast);
  EXPECT_TRUE(lines.empty());
}

TEST(IsFileType, KeepsTheProgramOfFilesOfThatSort) {
  auto const sortOf = [](std::string const& source) {
    Lines found;
    for (ca::FileType type : {ca::FileType::Script, ca::FileType::Function, ca::FileType::Class}) {
      if (!checkedHitsOf(source, [type](auto& all) { return all.program | isFileType(type); }).empty()) {
        fl::i18n::TextStream text;
        text << type;
        found.push_back(fl::i18n::to_utf8(text.str()));
      }
    }
    return found;
  };
  EXPECT_EQ(sortOf("x = 1;\n"), Lines({"Script"}));
  EXPECT_EQ(sortOf("% a comment first\nfunction f\nend\n"), Lines({"Function"}));
  EXPECT_EQ(sortOf("classdef C\nend\n"), Lines({"Class"}));

  AllNodes all;
  EXPECT_EQ(all.program | isFileType(ca::FileType::Class), all.program | isFileType(ca::FileType::Class));
  EXPECT_NE(all.program | isFileType(ca::FileType::Class), all.program | isFileType(ca::FileType::Script));
  EXPECT_EQ((all.program | isFileType(ca::FileType::Class))->detailsDescription(), u"IsInFileType Class");
  EXPECT_EQ((all.program | isFileType(ca::FileType::Function))->detailsDescription(), u"IsInFileType Function");
}

}  // namespace
