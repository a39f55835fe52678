// Which kinds each tree class covers, and the casts built on that: every
// class, concrete and abstract, against every kind number.

#include <gtest/gtest.h>

#include <set>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

#include "frontend/parse.hpp"
#include "platform/ast/ast.hpp"
#include "platform/ast/descendant_walk.hpp"

namespace {

namespace ast = ca::ast;
using lf::astapi::NodeKind;

// A node of any kind number, also of none, held as a plain Node: what a cast
// sees of a node is its kind.
class NodeOfKind final : public ast::Node {
 public:
  explicit NodeOfKind(NodeKind kind) noexcept : ast::Node(kind) {}
};

struct ClassRow {
  std::string name;
  std::set<int> expected;  // kind numbers
  bool (*covers)(NodeKind);
  bool (*isA)(ast::Node const&);
  std::set<NodeKind> (*kinds)();
  bool isNode;  // every node is a Node, whatever its kind: no cast to look at
};

template <class T>
ClassRow row(std::string name, std::set<int> expected) {
  return {std::move(name),
          std::move(expected),
          [](NodeKind kind) { return lf::astapi::coversKind<T>(kind); },
          [](ast::Node const& node) { return lf::astapi::isA<T>(node); },
          &lf::astapi::kindsOfClass<T>,
          std::is_same_v<T, ast::Node>};
}

std::vector<ClassRow> everyClass() {
  std::set<int> all;
  for (int kind = 1; kind <= 66; ++kind) all.insert(kind);
  std::vector<ClassRow> rows = {
      row<ast::Node>("Node", all),
      row<ast::Expression>("Expression",
                           {1, 2, 8, 9, 13, 14, 16, 17, 20, 22, 23, 27, 37, 39, 42, 47, 48, 50, 51, 59, 61, 64}),
      row<ast::Method>("Method", {43, 44}),
      row<lf::astapi::TextLiteral<ca::astapi::CA>>("TextLiteral", {14, 61}),
      row<lf::astapi::SingleExpressionStatement<ca::astapi::CA>>("SingleExpressionStatement", {32, 54}),
      row<lf::astapi::BodyBlock<ca::astapi::CA>>("BodyBlock", {24, 49}),
      row<lf::astapi::ConditionalBlock<ca::astapi::CA>>("ConditionalBlock", {11, 25, 66}),
      row<lf::astapi::DeclarationStatement<ca::astapi::CA>>("DeclarationStatement", {36, 53}),
      row<lf::astapi::MemberBlock<ca::astapi::CA, ast::Argument>>("MemberBlock<Argument>", {4}),
      row<lf::astapi::MemberBlock<ca::astapi::CA, ast::Method>>("MemberBlock<Method>", {45}),
      row<lf::astapi::MemberBlock<ca::astapi::CA, ast::Property>>("MemberBlock<Property>", {56}),
      row<lf::astapi::MemberBlock<ca::astapi::CA, ast::Event>>("MemberBlock<Event>", {31}),
      row<lf::astapi::MemberBlock<ca::astapi::CA, ast::Enumerator>>("MemberBlock<Enumerator>", {28}),
  };
  // Each concrete class covers its own kind; a function also covers the two
  // method kinds, since a method derives from it.
#define PLEXUS_NODE_KIND(number, name, bits) \
  rows.push_back(                            \
      row<ast::name>(#name, std::string(#name) == "Function" ? std::set<int>{35, 43, 44} : std::set<int>{number}));
#include "platform/ast/node_kinds.def"
#undef PLEXUS_NODE_KIND
  return rows;
}

TEST(NodeClass, EveryClassCoversExactlyItsKindsAndCastsFollow) {
  std::vector<ClassRow> const rows = everyClass();
  ASSERT_EQ(rows.size(), 13u + 66u);
  for (ClassRow const& row : rows) {
    std::set<NodeKind> expectedKinds;
    for (int number : row.expected) expectedKinds.insert(static_cast<NodeKind>(number));
    EXPECT_EQ(row.kinds(), expectedKinds) << row.name;
    // Every byte value, the numbers that are no kind (0, above 66) included.
    for (int number = 0; number < 256; ++number) {
      auto const kind = static_cast<NodeKind>(number);
      bool const expected = row.expected.count(number) != 0;
      EXPECT_EQ(row.covers(kind), expected) << row.name << " and kind " << number;
      NodeOfKind const node(kind);
      EXPECT_EQ(row.isA(node), expected || row.isNode) << row.name << " and a node of kind " << number;
    }
  }
}

// Sideways casts, between classes that neither derives from the other, do
// not compile.
template <class T, class From>
concept Castable = requires(From const& node) {
  lf::astapi::cast<T>(node);
};
static_assert(Castable<ast::Identifier, ast::Node>);
static_assert(Castable<ast::Identifier, ast::Expression>);
static_assert(Castable<ast::Node, ast::Identifier>);
static_assert(Castable<ast::Function, ast::MethodDefinition>);
static_assert(!Castable<ast::Identifier, ast::Assignment>);
static_assert(!Castable<ast::Field, ast::Expression>);
static_assert(!Castable<ast::MethodDefinition, ast::MethodDeclaration>);

// The nodes of a parsed file, in walk order.
std::vector<ast::Node const*> nodesOf(ca::astapi::SyntaxTree const& tree) {
  std::vector<ast::Node const*> nodes;
  lf::astapi::walkDescendants(*tree.getProgram(), [&](ast::Node const& node) { nodes.push_back(&node); });
  return nodes;
}

template <class T>
T const* firstOf(std::vector<ast::Node const*> const& nodes) {
  for (ast::Node const* node : nodes) {
    if (auto const* found = lf::astapi::dynCast<T>(node)) return found;
  }
  return nullptr;
}

TEST(NodeCast, IsADynCastAndCastOnParsedNodes) {
  auto parsed = frontend::parse(
      "classdef C\n"
      "  methods\n"
      "    function r = m(obj)\n"
      "      r = obj.x + 1;\n"
      "    end\n"
      "  end\n"
      "end\n",
      "C.m");
  ASSERT_FALSE(parsed.hasErrors());
  std::vector<ast::Node const*> const nodes = nodesOf(*parsed.tree);

  auto const* method = firstOf<ast::MethodDefinition>(nodes);
  ASSERT_NE(method, nullptr);
  ast::Node const& asNode = *method;
  // A method is a function and a method, and no expression.
  EXPECT_TRUE(lf::astapi::isA<ast::Function>(asNode));
  EXPECT_TRUE(lf::astapi::isA<ast::Method>(asNode));
  EXPECT_FALSE(lf::astapi::isA<ast::Expression>(asNode));
  EXPECT_FALSE(lf::astapi::isA<ast::MethodDeclaration>(asNode));
  EXPECT_EQ(lf::astapi::dynCast<ast::Function>(asNode), method);
  EXPECT_EQ(ca::astapi::toStdView(lf::astapi::cast<ast::Function>(asNode).getName()->getText()), u"m");
  EXPECT_EQ(lf::astapi::dynCast<ast::Classdef>(&asNode), nullptr);

  auto const* sum = firstOf<ast::BinaryOperation>(nodes);
  ASSERT_NE(sum, nullptr);
  ast::Expression const* left = sum->getLeft();
  EXPECT_TRUE(lf::astapi::isA<ast::DotOperation>(left));
  EXPECT_EQ(lf::astapi::dynCast<ast::DotOperation>(left), left);
  EXPECT_EQ(lf::astapi::dynCast<ast::Identifier>(left), nullptr);
  EXPECT_EQ(&lf::astapi::cast<ast::DotOperation>(*left).getField(),
            &static_cast<ast::DotOperation const*>(left)->getField());
  // Up the hierarchy a cast always holds, also for a node held as itself.
  EXPECT_TRUE(lf::astapi::isA<ast::Node>(*sum));
  EXPECT_TRUE(lf::astapi::isA<ast::BinaryOperation>(*sum));

  // Null is no class, and a checked cast lets it through as null.
  ast::Node const* none = nullptr;
  EXPECT_FALSE(lf::astapi::isA<ast::Node>(none));
  EXPECT_EQ(lf::astapi::dynCast<ast::Identifier>(none), nullptr);
  EXPECT_EQ(lf::astapi::cast<ast::Identifier>(none), nullptr);
}

TEST(NodeCast, CheckedBuildsStopAWrongCastSayingWhatAndWhere) {
#ifndef PLEXUS_CHECKED
  GTEST_SKIP() << "only checked builds (debug, sanitizers) check casts";
#else
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  auto parsed = frontend::parse("x = 1 + 22;\n", "a.m");
  ASSERT_FALSE(parsed.hasErrors());
  std::vector<ast::Node const*> const nodes = nodesOf(*parsed.tree);
  auto const* number = firstOf<ast::NumberLiteral>(nodes);
  auto const* assignment = firstOf<ast::Assignment>(nodes);
  ASSERT_NE(number, nullptr);
  ASSERT_NE(assignment, nullptr);
  ast::Node const& numberNode = *number;
  EXPECT_DEATH(static_cast<void>(lf::astapi::cast<ast::Identifier>(numberNode)),
               "plexus: cast<lf::astapi::Identifier<ca::astapi::CA> ?> of a node of kind NumberLiteral \\(48\\) at "
               "line 1, column 5");
  ast::Node const& assignmentNode = *assignment;
  EXPECT_DEATH(static_cast<void>(lf::astapi::cast<ast::Method>(&assignmentNode)),
               "cast<lf::astapi::Method<ca::astapi::CA> ?> of a node of kind Assignment \\(5\\) at line 1, column 1");
  // The right class passes.
  EXPECT_EQ(&lf::astapi::cast<ast::NumberLiteral>(numberNode), number);
#endif
}

}  // namespace
