// The syntax tree: kinds and their class bits, the builder, parents, ranges
// and the dispatch on kinds.

#include <gtest/gtest.h>

#include <cstdint>
#include <set>
#include <sstream>
#include <type_traits>

#include "platform/ast/restricted_externals.hpp"
#include "platform/ast/syntax_tree.hpp"
#include "tests/support/tree_maker.hpp"

namespace {

namespace ast = ca::ast;
using lf::astapi::NodeKind;
using plexus::testing::TreeMaker;

template <class T>
std::string print(T const& value) {
  std::ostringstream out;
  out << value;
  return out.str();
}

TEST(NodeKinds, SixtySixKindsInOrderWithNamesAndClassBits) {
  auto const& all = lf::astapi::getAllNodeKinds();
  ASSERT_EQ(all.size(), 66u);
  EXPECT_EQ(static_cast<int>(*all.begin()), 1);
  EXPECT_EQ(static_cast<int>(*all.rbegin()), 66);
  EXPECT_EQ(print(NodeKind::Assignment), "Assignment");
  EXPECT_EQ(print(NodeKind::WhileStatement), "WhileStatement");
  EXPECT_EQ(print(static_cast<NodeKind>(0)), "NodeKind(0)");
  EXPECT_EQ(print(static_cast<NodeKind>(67)), "NodeKind(67)");
  EXPECT_EQ(static_cast<int>(NodeKind::CharVectorLiteral), 14);
  EXPECT_EQ(static_cast<int>(NodeKind::DotOperation), 22);
  EXPECT_EQ(static_cast<int>(NodeKind::Identifier), 37);
  EXPECT_EQ(static_cast<int>(NodeKind::MultiLhsAssignment), 46);

  std::set<int> expressions, statements, methods, plain;
  for (NodeKind kind : all) {
    switch (lf::astapi::getKindFlags(kind)) {
      case 0x05: expressions.insert(static_cast<int>(kind)); break;
      case 0x03: statements.insert(static_cast<int>(kind)); break;
      case 0x11: methods.insert(static_cast<int>(kind)); break;
      case 0x01: plain.insert(static_cast<int>(kind)); break;
      default: ADD_FAILURE() << "unexpected bits for " << kind;
    }
  }
  EXPECT_EQ(expressions,
            (std::set<int>{1, 2, 8, 9, 13, 14, 16, 17, 20, 22, 23, 27, 37, 39, 42, 47, 48, 50, 51, 59, 61, 64}));
  EXPECT_EQ(statements,
            (std::set<int>{5, 7, 10, 18, 19, 21, 26, 32, 34, 36, 38, 40, 46, 52, 53, 54, 58, 60, 62, 63, 66}));
  EXPECT_EQ(methods, (std::set<int>{43, 44}));
  EXPECT_EQ(plain.size(), 21u);
  EXPECT_FALSE(lf::astapi::isValidNodeKind(static_cast<NodeKind>(0)));
  EXPECT_FALSE(lf::astapi::isValidNodeKind(static_cast<NodeKind>(67)));
}

TEST(Tree, BuilderSetsKindsBitsParentsAndKeepsTexts) {
  TreeMaker t;
  auto* x = t.id("x");
  auto* call = t.b.make<ast::ParenOperation>(t.id("f"), t.exprs({x, t.num(2)}));
  auto* statement = t.b.make<ast::Assignment>(t.id("y"), call);
  auto tree = t.program({statement}, ca::FileType::Function);

  ast::Program const* program = tree->getProgram();
  EXPECT_EQ(tree->getFileType(), ca::FileType::Function);
  EXPECT_EQ(program->getParent(), nullptr);
  EXPECT_EQ(program->getBody().size(), 1u);
  EXPECT_EQ(statement->getParent(), program);
  EXPECT_EQ(call->getParent(), statement);
  EXPECT_EQ(x->getParent(), call);
  EXPECT_EQ(call->getFunction()->getParent(), call);
  EXPECT_EQ(call->getArguments()[1]->getParent(), call);
  EXPECT_EQ(x->getKind(), NodeKind::Identifier);
  EXPECT_EQ(x->getKindFlags(), 0x05);
  EXPECT_EQ(statement->getKindFlags(), 0x03);
  EXPECT_EQ(program->getKindFlags(), 0x01);
  EXPECT_EQ(x->getStringId(), ca::astapi::StringId(u"x"));
  EXPECT_EQ(ca::astapi::toStdView(x->getText()), u"x");
  EXPECT_EQ(ca::astapi::toStdView(program->getFilePath()), u"test.m");
  EXPECT_EQ(tree->getNodeCount(), 7u);
  static_assert(std::is_trivially_destructible_v<ast::Program>);
  static_assert(std::is_trivially_destructible_v<ast::NumberLiteral>);
}

// Types that rules name exactly: an accessor handed to a pipe operator as a
// member pointer is keyed by its type, and operators are switched on as
// 32-bit keys.
TEST(Tree, AccessorsAndOperatorsHaveTheTypesRulesName) {
  static_assert(std::is_same_v<decltype(&ast::DotOperation::getField),
                               ast::Field const& (ast::DotOperation::*)() const>);
  static_assert(sizeof(lf::astapi::BinaryOperator) == 4 &&
                std::is_same_v<std::underlying_type_t<lf::astapi::BinaryOperator>, std::uint32_t>);
  static_assert(sizeof(lf::astapi::UnaryOperator) == 4 &&
                std::is_same_v<std::underlying_type_t<lf::astapi::UnaryOperator>, std::uint32_t>);
  TreeMaker t;
  auto* dot = t.b.make<ast::DotOperation>(t.id("s"), t.field("f"));
  EXPECT_EQ((dot->*&ast::DotOperation::getField)().getStringId(), ca::astapi::StringId(u"f"));
}

TEST(Tree, BuilderRefusesWorkAfterHandingTheTreeOver) {
  TreeMaker t;
  auto tree = t.program({});
  EXPECT_THROW(t.id("late"), std::logic_error);
  EXPECT_THROW(t.b.text(u"late"), std::logic_error);
  EXPECT_THROW(t.program({}), std::logic_error);
  EXPECT_NE(tree->getProgram(), nullptr);
}

TEST(Tree, SourceRangesAreRecordedPerNode) {
  TreeMaker t;
  auto* x = t.id("x");
  lf::astapi::SourceRange range{{10, 2, 5}, {10, 2, 5}};
  x->setSourceRange(range);
  EXPECT_EQ(x->getSourceRange(), range);
  EXPECT_EQ(t.id("y")->getSourceRange(), lf::astapi::SourceRange{});
}

TEST(Tree, MethodsAreFunctionsWithTheMethodBits) {
  TreeMaker t;
  auto* get = t.b.make<ast::MethodDefinition>(t.id("get.P"), t.b.list<ast::InputArgument>({t.input("obj")}),
                                              t.b.list<ast::Identifier>({t.id("v")}), t.b.list<ast::ArgumentsBlock>({}),
                                              t.body({}));
  ast::Method const& method = *get;
  EXPECT_EQ(method.getKindFlags(), 0x11);
  EXPECT_EQ(ca::astapi::toStdView(method.getName()->getText()), u"get.P");
  EXPECT_EQ(method.getInputs().size(), 1u);
  EXPECT_EQ(method.getOutputs()[0]->getParent(), get);
}

TEST(Tree, VisitByKindReachesTheClassOfTheKindAndPlainNodeForNoKind) {
  TreeMaker t;
  auto kindOf = [](auto const& typed) -> int {
    using X = std::decay_t<decltype(typed)>;
    if constexpr (std::is_same_v<X, ast::Node>) {
      return -1;
    } else {
      return static_cast<int>(X::Kind);
    }
  };
  EXPECT_EQ(lf::astapi::visitByKind(*t.num(1), kindOf), 48);
  EXPECT_EQ(lf::astapi::visitByKind(*t.b.make<ast::BreakStatement>(), kindOf), 10);
  struct Bad final : ast::Node {
    Bad() : Node(static_cast<NodeKind>(99)) {}
  } bad;
  EXPECT_EQ(lf::astapi::visitByKind(static_cast<ast::Node const&>(bad), kindOf), -1);
}

TEST(Tree, ForEachChildSkipsAbsentOptionalChildren) {
  TreeMaker t;
  auto count = [](ast::Node const& node) {
    int n = 0;
    lf::astapi::forEachChild(node, [&n](ast::Node const*) { ++n; });
    return n;
  };
  EXPECT_EQ(count(*t.b.make<ast::ColonVector>(t.num(1), nullptr, t.num(2))), 2);
  EXPECT_EQ(count(*t.b.make<ast::ColonVector>(t.num(1), t.num(3), t.num(2))), 3);
  EXPECT_EQ(count(*t.id("leaf")), 0);
  EXPECT_EQ(count(*t.b.make<ast::InputArgument>(t.id("a"), t.b.make<ast::Ignored>())), 2);
}

TEST(Values, NumericValuesAndOperatorsPrintAsWritten) {
  using lf::astapi::NumericValue;
  EXPECT_EQ(print(NumericValue(2.5)), "2.5");
  EXPECT_EQ(print(NumericValue(lf::astapi::ImaginaryDouble{3})), "3i");
  EXPECT_EQ(print(NumericValue(std::uint8_t{7})), "uint8(7)");
  EXPECT_EQ(print(NumericValue(std::int16_t{-2})), "int16(-2)");
  EXPECT_EQ(NumericValue(std::uint64_t{1}).index(), 5u);
  EXPECT_EQ(NumericValue(std::int64_t{1}).index(), 9u);
  EXPECT_EQ(print(lf::astapi::BinaryOperator::ElementPower), ".^");
  EXPECT_EQ(print(lf::astapi::BinaryOperator::MatrixLeftDivide), "\\");
  EXPECT_EQ(print(lf::astapi::UnaryOperator::ComplexTranspose), "'");
  EXPECT_EQ(print(ca::FileType::Class), "Class");
}

TEST(RestrictedExternals, NamesThatRunTextOrReachOtherWorkspaces) {
  auto const& names = lf::astapi::getRestrictedExternals();
  for (char16_t const* name :
       {u"eval", u"evalc", u"evalin", u"assignin", u"feval", u"inputname", u"load", u"run", u"str2func"}) {
    EXPECT_EQ(names.count(name), 1u);
  }
  EXPECT_EQ(names.size(), 9u);
  EXPECT_EQ(names.count(u"disp"), 0u);
  EXPECT_EQ(&names, &lf::astapi::getRestrictedExternals());
}

}  // namespace
