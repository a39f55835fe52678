// Every example that a header's doc comment or the README shows, compiled and
// run. The examples stand here or, for the stage classes they declare, in
// doc_example_stages.hpp, word for word (doc_examples_sync_test.cpp checks
// that), each with the few lines of context it needs around it; what
// an example claims about its result is checked with assert, which stays on
// in every build of this file.

#undef NDEBUG
#include <cassert>

#include <gtest/gtest.h>

#include <cstddef>
#include <memory>
#include <set>
#include <string>
#include <type_traits>
#include <vector>

#include "frontend/analyze.hpp"
#include "frontend/parse.hpp"
#include "frontend/tree_dump.hpp"
#include "platform/ast/string_id.hpp"
#include "platform/ast/syntax_tree.hpp"
#include "platform/i18n/i18n.hpp"
#include "platform/nameresolution/symbol_table.hpp"
#include "platform/usedef/usedef_analysis.hpp"
#include "platform/utils/type_names.hpp"
#include "rulesystem/graph/method_comparator.hpp"
#include "rulesystem/rulesystem.hpp"
#include "tests/examples/doc_example_stages.hpp"
#include "tools/listing/graph_listing.hpp"

namespace examples {

using namespace ca::rulesystem;

// The findings of one run of `all` over `source`.
std::vector<std::u16string> run(AllNodes const& all, std::string const& source) {
  auto analysed = frontend::analyze(source, "a.m");
  EXPECT_TRUE(analysed.analysis != nullptr) << source;
  Findings findings;
  MessageHelper helper{&findings};
  all.execute(*analysed.analysis, &helper);
  return findings.lines;
}

TEST(DocExamples, TheUmbrellaHeaderWalksOneRuleToItsConsumer) {
  // rulesystem/rulesystem.hpp, step 3.
  AllNodes all;
  all.assignment | std::make_unique<RightSide>() | isa<NumberLiteral>()
      | std::make_shared<Report<NumberLiteral>>(u"a number assigned");

  auto analysed = frontend::analyze("x = 1;\ny = x;\nz = 2;\n", "a.m");
  Findings findings;
  MessageHelper helper{&findings};
  all.execute(*analysed.analysis, &helper);
  assert(findings.lines == std::vector<std::u16string>({u"1: a number assigned", u"3: a number assigned"}));
}

TEST(DocExamples, TheReadmeRule) {
  auto analysed = frontend::analyze("x = 1;\ny = 'two';\n", "a.m");
  Findings findings;
  MessageHelper helper{&findings};
  ca::Analysis const& analysis = *analysed.analysis;
  // README.md
  AllNodes all;
  all.assignment | std::make_unique<RightSide>() | isa<NumberLiteral>()
      | std::make_shared<Report<NumberLiteral>>(u"a number assigned");
  all.execute(analysis, &helper);
  assert(findings.lines == std::vector<std::u16string>({u"1: a number assigned"}));
}

TEST(DocExamples, Stages) {
  AllNodes all;
  // rulesystem/graph/stage.hpp
  all.parenOperation | std::make_unique<HasArgumentCount>(2)  // one vertex however many rules ask
      ;
  // rulesystem/graph/stage.hpp
  auto noArguments = all.parenOperation | std::make_unique<HasArgumentCount>(0);
  auto arguments = all.parenOperation | std::make_unique<CallArguments>();
  assert(noArguments == (all.parenOperation | std::make_unique<HasArgumentCount>(0)));
  assert(noArguments != (all.parenOperation | std::make_unique<HasArgumentCount>(1)));

  noArguments | std::make_shared<Report<ParenOperation>>(u"no arguments");
  arguments | isa<NumberLiteral>() | std::make_shared<Report<NumberLiteral>>(u"a number argument");
  EXPECT_EQ(run(all, "f();\ng(1, x);\n"),
            std::vector<std::u16string>({u"1: no arguments", u"2: a number argument"}));
}

TEST(DocExamples, UncomparedParameters) {
  AllNodes all;
  int first = 0;
  int second = 0;
  auto counted = all.parenOperation | std::make_unique<CountedCalls>(&first);
  // The second differs only in what is not compared: the first is found.
  assert(counted == (all.parenOperation | std::make_unique<CountedCalls>(&second)));
  counted | std::make_shared<Report<ParenOperation>>(u"call");
  EXPECT_EQ(run(all, "f(1);\ng();\n"), std::vector<std::u16string>({u"1: call", u"2: call"}));
  EXPECT_EQ(first, 2);
  EXPECT_EQ(second, 0);
}

TEST(DocExamples, Producers) {
  AllNodes all;
  // rulesystem/graph/producer.hpp
  auto numbers = all.assignment | std::make_unique<RightSide>() | isa<NumberLiteral>();
  assert(numbers == (all.assignment | std::make_unique<RightSide>() | isa<NumberLiteral>()));
  numbers | std::make_shared<Report<NumberLiteral>>(u"number");
  EXPECT_EQ(run(all, "x = 1;\n"), std::vector<std::u16string>({u"1: number"}));
}

TEST(DocExamples, Combinators) {
  AllNodes all;
  // rulesystem/graph/combinators.hpp
  auto withArguments = all.parenOperation | !std::make_unique<HasArgumentCount>(0);
  // rulesystem/graph/combinators.hpp
  auto oneOrTwo = all.parenOperation | (std::make_unique<HasArgumentCount>(1) || std::make_unique<HasArgumentCount>(2));
  withArguments | std::make_shared<Report<ParenOperation>>(u"some");
  oneOrTwo | std::make_shared<Report<ParenOperation>>(u"one or two");
  EXPECT_EQ(run(all, "f();\ng(1);\nh(1, 2, 3);\n"),
            std::vector<std::u16string>({u"2: some", u"2: one or two", u"3: some"}));
}

TEST(DocExamples, Switches) {
  AllNodes all;
  // rulesystem/graph/switch.hpp
  auto unary = all.parenOperation | std::make_unique<ArgumentCountIs>(std::set<std::size_t>{1});
  auto binary = all.parenOperation | std::make_unique<ArgumentCountIs>(std::set<std::size_t>{2});
  unary | std::make_shared<Report<ParenOperation>>(u"one");
  binary | std::make_shared<Report<ParenOperation>>(u"two");
  EXPECT_EQ(run(all, "f(1);\ng(1, 2);\nh();\n"), std::vector<std::u16string>({u"1: one", u"2: two"}));
}

TEST(DocExamples, Combine) {
  AllNodes all;
  // rulesystem/graph/combine.hpp
  auto assigned = all.assignment | std::make_unique<RightSide>() | isa<NumberLiteral>();
  auto passed = all.parenOperation | std::make_unique<CallArguments>() | isa<NumberLiteral>();
  auto either = combine(std::set{assigned, passed});
  either | std::make_shared<Report<NumberLiteral>>(u"number");
  EXPECT_EQ(run(all, "x = 1;\nf(2);\n"), std::vector<std::u16string>({u"1: number", u"2: number"}));
}

TEST(DocExamples, Subrules) {
  AllNodes all;
  // rulesystem/graph/subrule.hpp
  auto literalArguments = all.parenOperation | std::make_unique<CallArguments>() | isa<NumberLiteral>();
  all.parenOperation | subrule(literalArguments) | std::make_shared<Report<ParenOperation>>(u"literal argument");
  EXPECT_EQ(run(all, "f(x);\ng(x, 2);\n"), std::vector<std::u16string>({u"2: literal argument"}));
}

TEST(DocExamples, AllNodesAndIsa) {
  auto analysed = frontend::analyze("f();\ny = 'a';\nz = 2;\n", "a.m");
  Findings findings;
  MessageHelper helper{&findings};
  ca::Analysis const& analysis = *analysed.analysis;
  {
    // rulesystem/execution/all_nodes.hpp
    AllNodes all;
    all.parenOperation | std::make_unique<HasArgumentCount>(0) | std::make_shared<Report<ParenOperation>>(u"no arguments");
    all.execute(analysis, &helper);
  }
  {
    AllNodes all;
    // rulesystem/syntax/isa.hpp
    auto rightSides = all.assignment | std::make_unique<RightSide>();
    auto numbers = rightSides | isa<NumberLiteral>();
    auto texts = rightSides | isa<CharVectorLiteral>();
    numbers | std::make_shared<Report<NumberLiteral>>(u"number");
    texts | std::make_shared<Report<CharVectorLiteral>>(u"text");
    all.execute(analysis, &helper);
  }
  EXPECT_EQ(findings.lines, std::vector<std::u16string>({u"1: no arguments", u"2: text", u"3: number"}));
}

TEST(DocExamples, GraphListing) {
  using plexus::listing::listGraph;
  // tools/listing/graph_listing.hpp
  AllNodes all;
  auto rightSides = all.assignment | std::make_unique<RightSide>();
  rightSides | isa<NumberLiteral>() | std::make_shared<Report<NumberLiteral>>(u"number");
  rightSides | isa<CharVectorLiteral>() | std::make_shared<Report<CharVectorLiteral>>(u"text");
  assert(listGraph(all) ==
         "#1 Root Assignment\n"
         "  #2 Transform RightSide\n"
         "    #3 Switch NodeKind\n"
         "      #4 Case CharVectorLiteral\n"
         "        #5 Transform Downcast CharVectorLiteral\n"
         "          #6 Report text\n"
         "      #7 Case NumberLiteral\n"
         "        #8 Transform Downcast NumberLiteral\n"
         "          #9 Report number\n"
         "(63 roots without rules not shown)\n");
}

TEST(DocExamples, MethodComparator) {
  using Entry = ca::nameresolution::SymbolTableEntry;
  // rulesystem/graph/method_comparator.hpp
  bool less = getComparator<bool (Entry::*)() const>()->compare(&Entry::isVariable, &Entry::isGlobalVariable);
  bool greater = getComparator<bool (Entry::*)() const>()->compare(&Entry::isGlobalVariable, &Entry::isVariable);
  assert(less != greater);
}

TEST(DocExamples, Analyses) {
  auto analysed = frontend::analyze("x = 1;\ny = x;\n", "a.m");
  ca::Analysis const& analysis = *analysed.analysis;
  // platform/analysis/analysis.hpp
  auto const& useDefs = analysis.get<ca::usedef::UseDefAnalysis>();
  EXPECT_EQ(useDefs.getAllUseDefs().size(), 3u);

  // frontend/analyze.hpp
  auto result = frontend::analyze("x = 1; disp(x)\n", "a.m");
  auto const* table = result.analysis->getSymbolTable();
  EXPECT_FALSE(table->getSymbols().empty());
}

TEST(DocExamples, TheTree) {
  namespace ast = ca::ast;
  using namespace ca::astapi;
  using lf::astapi::forEachChild;
  using lf::astapi::visitByKind;
  {
    // frontend/parse.hpp
    auto result = frontend::parse("x = 1;\n", "a.m");
    assert(!result.hasErrors());
  }
  {
    // frontend/tree_dump.hpp
    auto parsed = frontend::parse("x = a + 1;\n", "a.m");
    assert(frontend::dumpTree(*parsed.tree->getProgram()) ==
           "(Program (Assignment (Identifier x) (BinaryOperation + (Identifier a) (NumberLiteral 1))))");
  }
  {
    // platform/ast/syntax_tree.hpp
    TreeBuilder b;
    auto* x = b.identifier(u"x");
    auto* one = b.make<ast::NumberLiteral>(1.0, b.text(u"1"));
    auto* stmt = b.make<ast::Assignment>(x, one);
    auto tree = b.finish(b.make<ast::Program>(b.text(u"a.m"), b.list<ast::Node>({stmt})));

    ast::Node const& node = *stmt;
    // platform/ast/ast.hpp
    bool const isAssignment = visitByKind(node, []<class C>(C const&) { return std::is_same_v<C, ast::Assignment>; });
    // platform/ast/ast.hpp
    std::size_t children = 0;
    forEachChild(node, [&children](auto const* child) { children += child != nullptr ? 1 : 0; });
    EXPECT_TRUE(isAssignment);
    EXPECT_EQ(children, 2u);
    EXPECT_EQ(tree->getProgram()->getKind(), lf::astapi::NodeKind::Program);
  }
  {
    // platform/ast/string_id.hpp
    StringId a(u"plot"), b(u"plot");
    assert(a == b && a.hash() == b.hash());
  }
}

TEST(DocExamples, Text) {
  using fl::i18n::TextStream;
  using ca::utils::prettifyTypeName;
  // platform/i18n/i18n.hpp
  TextStream s;
  s << u"isNthItemInList " << 3;
  assert(s.str() == u"isNthItemInList 3");
  // platform/utils/type_names.hpp
  assert(prettifyTypeName(u"lf::astapi::Identifier<ca::astapi::CA>") == u"Identifier");
  assert(prettifyTypeName(u"std::vector<ca::Symbol const*>") == u"vector<Symbol const*>");
}

}  // namespace examples
