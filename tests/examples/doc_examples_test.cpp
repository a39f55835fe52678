// Every example that a header's doc comment or the README shows, compiled and
// run. The examples stand here or, for the stage classes they declare, in
// doc_example_stages.hpp, word for word (doc_examples_sync_test.cpp checks
// that), each with the few lines of context it needs around it; what
// an example claims about its result is checked with assert, which stays on
// in every build of this file.

#undef NDEBUG
#include <cassert>

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <optional>
#include <memory>
#include <set>
#include <string>
#include <type_traits>
#include <vector>

#include "frontend/analysis/control_flow.hpp"
#include "frontend/analyze.hpp"
#include "frontend/parse.hpp"
#include "frontend/tree_dump.hpp"
#include "platform/analysis/analysis_registry.hpp"
#include "platform/ast/assignment_target.hpp"
#include "platform/ast/descendant_walk.hpp"
#include "platform/ast/dotted_name.hpp"
#include "platform/ast/enclosing_node.hpp"
#include "platform/ast/node_cast.hpp"
#include "platform/ast/node_class.hpp"
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
  {
    AllNodes all;
    // rulesystem/graph/pipe_handle.hpp
    Producer<Node const&> nodes = upcast<Node const&>(all.assignment);
    nodes | isa<Assignment>() | std::make_shared<Report<Assignment>>(u"assignment");
    all.execute(analysis, &helper);
  }
  EXPECT_EQ(findings.lines, std::vector<std::u16string>({u"1: no arguments", u"2: text", u"3: number", u"2: assignment",
                                                        u"3: assignment"}));
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

TEST(DocExamples, TreeQueries) {
  namespace ast = ca::ast;
  using namespace lf::astapi;
  auto parsed = frontend::parse("function r = f(x)\n  g = @() x;\n  a(1).b{2}.c = pkg.sub.h(x);\n  r = g;\nend\n", "f.m");
  ASSERT_TRUE(parsed.tree != nullptr);
  ast::Program const& program = *parsed.tree->getProgram();
  // The nodes the examples ask about: the second statement, the call on its
  // right side, and
  // the x inside the anonymous function.
  ast::Assignment const* second = nullptr;
  ast::ParenOperation const* found = nullptr;
  ast::Identifier const* captured = nullptr;
  int assignments = 0;
  walkDescendants(program, [&](ast::Node const& node) {
    if (auto const* a = dynCast<ast::Assignment>(node); a != nullptr && ++assignments == 2) second = a;
    if (auto const* id = dynCast<ast::Identifier>(node); id != nullptr && isA<ast::AnonymousFunction>(id->getParent())) {
      captured = id;
    }
  });
  ASSERT_TRUE(second != nullptr && captured != nullptr);
  found = dynCast<ast::ParenOperation>(second->getRight());
  ASSERT_TRUE(found != nullptr);
  ast::Assignment const& assignment = *second;
  ast::Node const& statement = assignment;
  ast::ParenOperation const& call = *found;
  ast::Identifier const& inside = *captured;

  // platform/ast/node_cast.hpp
  assert(isA<ast::Expression>(*assignment.getLeft()) && !isA<ast::Identifier>(*assignment.getLeft()));
  assert(!isA<ast::Expression>(statement));  // an assignment is a statement
  // platform/ast/node_cast.hpp
  ast::Identifier const* name = dynCast<ast::Identifier>(assignment.getLeft());  // null: not a name
  EXPECT_EQ(name, nullptr);
  // platform/ast/node_class.hpp
  static_assert(coversKind<ast::Expression>(NodeKind::Identifier));
  static_assert(coversKind<ast::Function>(NodeKind::MethodDefinition));  // a method is a function
  // platform/ast/node_class.hpp
  std::set<NodeKind> methods = kindsOfClass<ast::Method>();
  assert(methods == std::set<NodeKind>({NodeKind::MethodDeclaration, NodeKind::MethodDefinition}));
  // platform/ast/enclosing_node.hpp
  ast::Function const* function = getEnclosing<ast::Function>(statement);  // a method too
  assert(function != nullptr && (getEnclosing<ast::Function, ast::AnonymousFunction>(inside) == nullptr));
  // platform/ast/dotted_name.hpp
  assert(getDottedName(*call.getFunction())->text == u"pkg.sub.h");  // of pkg.sub.h(x)
  assert(!getDottedName(*assignment.getLeft()));                     // a(1).b{2}.c is no name
  // platform/ast/assignment_target.hpp
  // a(1).b{2}.c = v: head and identifier a, indices 1 and 2, fields b and c
  AssignmentTarget<ca::astapi::CA> const target = getAssignmentTarget(assignment.getLeft());
  assert(target.identifier != nullptr && target.throughField() && target.indices.size() == 2);
  // platform/ast/descendant_walk.hpp
  DescendantWalk<ca::astapi::CA> walk;
  std::size_t outsideAnonymousFunctions = 0;
  walk.run(program, [&](ast::Node const& node) {
    if (node.getKind() == NodeKind::AnonymousFunction) return WalkStep::SkipChildren;
    ++outsideAnonymousFunctions;
    return WalkStep::Descend;
  });
  // platform/ast/descendant_walk.hpp
  DescendantWalk<ca::astapi::CA, int> depths;
  int deepest = 0;
  depths.runWithState(program, 0, [&deepest](ast::Node const&, int depth) -> std::optional<int> {
    deepest = std::max(deepest, depth);
    return depth + 1;
  });
  // platform/ast/descendant_walk.hpp
  std::vector<ast::Identifier const*> names;
  walkDescendants(statement, [&](ast::Node const& node) {
    if (node.getKind() == NodeKind::Function) return WalkStep::SkipChildren;
    if (auto const* id = dynCast<ast::Identifier>(node)) names.push_back(id);
    return WalkStep::Descend;
  });
  // a, pkg and x: fields are not identifiers.
  EXPECT_EQ(names.size(), 3u);
  EXPECT_GT(deepest, 3);
  // Everything but the anonymous function and what lies below it.
  EXPECT_LT(outsideAnonymousFunctions, parsed.tree->getNodeCount() - 1);
  EXPECT_GT(outsideAnonymousFunctions, 10u);
}

TEST(DocExamples, AnalysisRegistry) {
  using namespace ca::clients;
  // platform/analysis/analysis_registry.hpp
  AnalysisRegistry registry;
  registry.add<ca::controlflow::ControlFlowAnalysis>(
      [](AnalysisImpl const& analysis) { return frontend::buildControlFlow(*analysis.getProgram()); });
  // One factory per analysis.
  EXPECT_THROW(registry.add<ca::controlflow::ControlFlowAnalysis>(
                   [](AnalysisImpl const& analysis) { return frontend::buildControlFlow(*analysis.getProgram()); }),
               std::logic_error);
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
