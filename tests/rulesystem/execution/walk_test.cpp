// The walk of the syntax tree: which roots see which nodes, in which order.

#include <gtest/gtest.h>

#include <algorithm>
#include <stdexcept>
#include <string>
#include <vector>

#include "platform/i18n/i18n.hpp"
#include "rulesystem/execution/all_nodes.hpp"
#include "tests/support/recorder.hpp"
#include "tests/support/test_analysis.hpp"
#include "tests/support/tree_maker.hpp"

namespace {

using namespace ca::rulesystem;
using plexus::testing::Log;
using plexus::testing::TreeMaker;
using lf::astapi::BinaryOperator;
using lf::astapi::NodeKind;
using lf::astapi::UnaryOperator;

std::string utf8(ca::astapi::TextView text) { return fl::i18n::to_utf8(ca::astapi::toStdView(text)); }

// The root's name, and for leaves that carry text or a number, that too.
std::string describe(std::string const& root, Node const& node) {
  switch (node.getKind()) {
    case NodeKind::NumberLiteral: {
      auto const& number = static_cast<NumberLiteral const&>(node);
      return root + " " + utf8(number.getText());
    }
    case NodeKind::Field: return root + " " + utf8(static_cast<Field const&>(node).getText());
    case NodeKind::CharVectorLiteral:
    case NodeKind::StringLiteral:
      return root + " " + utf8(static_cast<lf::astapi::TextLiteral<ca::astapi::CA> const&>(node).getValue());
    default: return root;
  }
}

// Attaches a recorder to every tree root of `all`.
void recordAllRoots(AllNodes& all, Log& log) {
  all.method | std::make_shared<plexus::testing::Recorder<Method const&>>(
                   log, [](Method const& n) { return describe("Method", n); });
#define PLEXUS_ROOT(member, TreeClass)                                           \
  all.member | std::make_shared<plexus::testing::Recorder<TreeClass const&>>( \
                   log, [](TreeClass const& n) { return describe(#TreeClass, n); });
#include "rulesystem/execution/root_producers.def"
#undef PLEXUS_ROOT
}

Log walk(std::shared_ptr<ca::astapi::SyntaxTree const> tree) {
  AllNodes all;
  Log log;
  recordAllRoots(all, log);
  auto analysis = plexus::testing::makeAnalysis(std::move(tree));
  all.execute(*analysis, nullptr);
  return log;
}

TEST(Walk, ExpressionsInPreorderWithDotChainsAndNamedArgumentsFeedingNothing) {
  TreeMaker t;
  auto& b = t.b;
  auto* innerDot = b.make<DotOperation>(t.id("a"), t.field("b"));
  auto* dot = b.make<DotOperation>(innerDot, t.field("c"));
  auto* negTranspose = b.make<UnaryOperation>(UnaryOperator::Minus,
                                              b.make<UnaryOperation>(UnaryOperator::ComplexTranspose, t.id("x")));
  auto* cell = b.make<CellArray>(t.list<Row>({b.make<Row>(t.exprs({t.num(1), t.chars("q")}))}));
  auto* matrix = b.make<Matrix>(
      t.list<Row>({b.make<Row>(t.exprs({t.num(2), t.num(3)})), b.make<Row>(t.exprs({t.num(4), t.num(5)}))}));
  auto* lambda = b.make<AnonymousFunction>(t.list<InputArgument>({t.input("k")}),
                                           b.make<BinaryOperation>(BinaryOperator::Plus, t.id("k"), t.num(6)));
  auto* dynamicField = b.make<DotParenOperation>(t.id("s"), t.id("t"));
  auto* brace = b.make<BraceOperation>(t.id("z"), t.exprs({b.make<EndIndex>()}));
  auto* colonIndex = b.make<ParenOperation>(t.id("q"), t.exprs({b.make<ColonIndex>()}));
  auto* stepped = b.make<ColonVector>(t.num(7), t.num(8), t.num(9));
  auto* unstepped = b.make<ColonVector>(t.num(10), nullptr, t.num(11));
  auto* named = b.make<NamedArgument>(t.field("Name"), t.num(12));
  auto* meta = b.make<UnaryOperation>(UnaryOperator::Metaclass, t.id("Meta"));
  auto* paren = b.make<ParenthesizedExpression>(t.num(13));
  auto* call = b.make<ParenOperation>(
      t.id("f"), t.exprs({dot, negTranspose, cell, matrix, lambda, dynamicField, brace, colonIndex, stepped, unstepped,
                          t.str("str"), named, meta, b.make<Ignored>(), paren}));
  Log log = walk(t.program({t.stmt(call)}));

  Log expected = {"Program", "ExpressionStatement", "ParenOperation",
                  // a.b.c: the DotOperations feed nothing, the fields do
                  "Field b", "Field c",
                  // -x'
                  "UnaryOperation", "UnaryOperation",
                  // {1, 'q'}
                  "CellArray", "Row", "NumberLiteral 1", "CharVectorLiteral q",
                  // [2 3; 4 5]
                  "Matrix", "Row", "NumberLiteral 2", "NumberLiteral 3", "Row", "NumberLiteral 4", "NumberLiteral 5",
                  // @(k) k + 6
                  "AnonymousFunction", "InputArgument", "BinaryOperation", "NumberLiteral 6",
                  // s.(t), z{end}, q(:)
                  "DotParenOperation", "BraceOperation", "EndIndex", "ParenOperation", "ColonIndex",
                  // 7:8:9 and 10:11, the missing step dispatching nothing
                  "ColonVector", "NumberLiteral 7", "NumberLiteral 8", "NumberLiteral 9", "ColonVector",
                  "NumberLiteral 10", "NumberLiteral 11",
                  // "str", Name=12 (the NamedArgument itself feeds nothing)
                  "StringLiteral str", "Field Name", "NumberLiteral 12",
                  // ?Meta, ~, (13)
                  "UnaryOperation", "Ignored", "ParenthesizedExpression", "NumberLiteral 13"};
  EXPECT_EQ(log, expected);
}

TEST(Walk, StatementsWithTheirBlocksAndOptionalParts) {
  TreeMaker t;
  auto& b = t.b;
  auto* assignment = b.make<Assignment>(t.id("x"), t.num(1));
  auto* multi = b.make<MultiLhsAssignment>(t.exprs({t.id("a"), b.make<Ignored>()}),
                                           b.make<ParenOperation>(t.id("g"), t.exprs({})));
  auto* print = b.make<PrintStatement>(t.num(2));
  auto* ifStatement =
      b.make<IfStatement>(t.num(3), t.body({b.make<BreakStatement>()}),
                          t.list<ElseifBlock>({b.make<ElseifBlock>(t.num(4), t.body({b.make<ContinueStatement>()}))}),
                          b.make<ElseBlock>(t.body({b.make<ReturnStatement>()})));
  auto* switchStatement = b.make<SwitchStatement>(
      t.num(5), t.list<CaseSelection>({b.make<CaseSelection>(t.num(6), t.body({b.make<EmptyStatement>()}))}),
      b.make<OtherwiseBlock>(t.body({b.make<BangStatement>(b.text(u"ls"))})));
  auto* tryStatement = b.make<TryStatement>(t.body({t.stmt(t.num(7))}),
                                            b.make<CatchBlock>(t.id("err"), t.body({t.stmt(t.num(8))})));
  auto* forStatement =
      b.make<ForStatement>(t.id("i"), b.make<ColonVector>(t.num(20), nullptr, t.num(21)), t.body({t.stmt(t.num(9))}));
  auto* parfor = b.make<ParforStatement>(t.id("j"), t.num(22), t.exprs({t.num(23)}), t.body({t.stmt(t.num(24))}));
  auto* whileStatement = b.make<WhileStatement>(t.num(25), t.body({t.stmt(t.num(26))}));
  auto* spmd = b.make<SpmdStatement>(t.exprs({t.num(27)}), t.body({t.stmt(t.num(28))}));
  auto* global = b.make<GlobalStatement>(t.list<Identifier>({t.id("g1"), t.id("g2")}));
  auto* persistent = b.make<PersistentStatement>(t.list<Identifier>({t.id("p")}));
  auto* import = b.make<ImportCommand>(t.list<Identifier>({t.id("pkg"), t.id("sub")}));
  auto* command = b.make<CommandInvocation>(t.id("hold"), t.exprs({t.chars("on")}));
  auto* opaqueStatement = b.make<OpaqueStatement>(b.text(u"kept"));
  auto* opaqueExpression = t.stmt(b.make<OpaqueExpression>(b.text(u"kept")));
  Log log = walk(t.program({assignment, multi, print, ifStatement, switchStatement, tryStatement, forStatement, parfor,
                            whileStatement, spmd, global, persistent, import, command, opaqueStatement,
                            opaqueExpression}));

  Log expected = {"Program",
                  "Assignment", "NumberLiteral 1",
                  "MultiLhsAssignment", "Ignored", "ParenOperation",
                  "PrintStatement", "NumberLiteral 2",
                  "IfStatement", "NumberLiteral 3", "BreakStatement", "ElseifBlock", "NumberLiteral 4",
                  "ContinueStatement", "ElseBlock", "ReturnStatement",
                  "SwitchStatement", "NumberLiteral 5", "CaseSelection", "NumberLiteral 6", "EmptyStatement",
                  "OtherwiseBlock", "BangStatement",
                  "TryStatement", "ExpressionStatement", "NumberLiteral 7", "CatchBlock", "ExpressionStatement",
                  "NumberLiteral 8",
                  "ForStatement", "ColonVector", "NumberLiteral 20", "NumberLiteral 21", "ExpressionStatement",
                  "NumberLiteral 9",
                  // the options of a parfor come before its body
                  "ParforStatement", "NumberLiteral 22", "NumberLiteral 23", "ExpressionStatement", "NumberLiteral 24",
                  "WhileStatement", "NumberLiteral 25", "ExpressionStatement", "NumberLiteral 26",
                  "SpmdStatement", "NumberLiteral 27", "ExpressionStatement", "NumberLiteral 28",
                  "GlobalStatement", "PersistentStatement", "ImportCommand",
                  "CommandInvocation", "CharVectorLiteral on",
                  // kinds 20 and 21 are skipped silently
                  "ExpressionStatement"};
  EXPECT_EQ(log, expected);
}

TEST(Walk, AbsentOptionalPartsDispatchNothing) {
  TreeMaker t;
  auto& b = t.b;
  auto* ifStatement = b.make<IfStatement>(t.num(1), t.body({}), t.list<ElseifBlock>({}), nullptr);
  auto* switchStatement = b.make<SwitchStatement>(t.num(2), t.list<CaseSelection>({}), nullptr);
  auto* tryStatement = b.make<TryStatement>(t.body({}), nullptr);
  auto* bareCatch = b.make<TryStatement>(t.body({}), b.make<CatchBlock>(nullptr, t.body({})));
  Log log = walk(t.program({ifStatement, switchStatement, tryStatement, bareCatch}));
  Log expected = {"Program",      "IfStatement",  "NumberLiteral 1", "SwitchStatement",
                  "NumberLiteral 2", "TryStatement", "TryStatement",    "CatchBlock"};
  EXPECT_EQ(log, expected);
}

TEST(Walk, FunctionsClassesAndMethodsGiveNameInputsOutputsBlocksThenBody) {
  TreeMaker t;
  auto& b = t.b;
  auto* validation = b.make<Validation>(t.exprs({t.num(1), b.make<AnySize>()}), t.id("double"),
                                        t.exprs({t.id("mustBePositive")}));
  auto* argument = b.make<Argument>(t.input("opts"), t.field("Name"), nullptr, validation, t.num(2));
  auto* arguments = b.make<ArgumentsBlock>(t.list<Attribute>({b.make<Attribute>(t.id("Access"), t.chars("private"))}),
                                           t.list<Argument>({argument}));
  auto* function = b.make<Function>(
      t.id("f"), t.list<InputArgument>({t.input("x"), b.make<InputArgument>(b.make<Ignored>())}),
      t.list<Identifier>({t.id("y")}), t.list<ArgumentsBlock>({arguments}),
      t.body({b.make<Assignment>(t.id("y"), t.num(3))}));

  auto* property = b.make<Property>(t.id("P"), b.make<Validation>(t.exprs({}), t.id("double"), t.exprs({})), t.num(4));
  auto* properties = b.make<PropertiesBlock>(t.list<Attribute>({b.make<Attribute>(t.id("Constant"), nullptr)}),
                                             t.list<Property>({property}));
  auto* definition = b.make<MethodDefinition>(t.id("m"), t.list<InputArgument>({t.input("obj")}),
                                              t.list<Identifier>({t.id("r")}), t.list<ArgumentsBlock>({}),
                                              t.body({b.make<Assignment>(t.id("r"), t.num(5))}));
  auto* declaration =
      b.make<MethodDeclaration>(t.id("d"), t.list<InputArgument>({t.input("obj")}), t.list<Identifier>({}));
  auto* methods = b.make<MethodsBlock>(t.list<Attribute>({}), t.list<Method>({definition, declaration}));
  auto* events = b.make<EventsBlock>(t.list<Attribute>({}), t.list<Event>({b.make<Event>(t.id("Changed"))}));
  auto* enumeration = b.make<EnumerationBlock>(
      t.list<Attribute>({}), t.list<Enumerator>({b.make<Enumerator>(t.id("Red"), t.exprs({t.num(6)}))}));
  auto* classdef = b.make<Classdef>(t.list<Attribute>({b.make<Attribute>(t.id("Sealed"), nullptr)}), t.id("C"),
                                    t.exprs({b.make<DotOperation>(t.id("pkg"), t.field("Base"))}),
                                    t.body({properties, methods, events, enumeration}));
  Log log = walk(t.program({function, classdef}, ca::FileType::Class));

  Log expected = {"Program",
                  "Function", "InputArgument", "InputArgument", "Ignored",
                  "ArgumentsBlock", "Attribute", "CharVectorLiteral private",
                  "Argument", "InputArgument", "Field Name", "Validation", "NumberLiteral 1", "AnySize",
                  "NumberLiteral 2",
                  "Assignment", "NumberLiteral 3",
                  "Classdef", "Attribute", "Field Base",
                  "PropertiesBlock", "Attribute", "Property", "Validation", "NumberLiteral 4",
                  // a method feeds the Method root first, then its own, and not the Function root
                  "MethodsBlock", "Method", "MethodDefinition", "InputArgument", "Assignment", "NumberLiteral 5",
                  "Method", "MethodDeclaration", "InputArgument",
                  "EventsBlock", "Event",
                  "EnumerationBlock", "Enumerator", "NumberLiteral 6"};
  EXPECT_EQ(log, expected);
}

TEST(Walk, EmptyProgramYieldsOnlyTheProgram) {
  TreeMaker t;
  EXPECT_EQ(walk(t.program({})), Log({"Program"}));
}

TEST(Walk, InputArgumentWithBothChildrenDispatchesOnlyTheIdentifier) {
  TreeMaker t;
  auto* both = t.b.make<InputArgument>(t.id("x"), t.b.make<Ignored>());
  auto* lambda = t.b.make<AnonymousFunction>(t.list<InputArgument>({both}), t.num(1));
  EXPECT_EQ(walk(t.program({t.stmt(lambda)})),
            Log({"Program", "ExpressionStatement", "AnonymousFunction", "InputArgument", "NumberLiteral 1"}));
}

// A node whose kind byte is no kind, as a corrupt tree could hold.
struct NodeOfKind final : Node {
  explicit NodeOfKind(std::uint8_t kind) : Node(static_cast<NodeKind>(kind)) {}
};

TEST(Walk, UnknownKindsFailWithTheFixedTextAfterEarlierNodesWereSeen) {
  for (std::uint8_t kind : {0, 67, 255}) {
    SCOPED_TRACE(static_cast<int>(kind));
    NodeOfKind bad(kind);
    TreeMaker t;
    auto tree = t.program({t.stmt(t.num(1)), &bad, t.stmt(t.num(2))});
    AllNodes all;
    Log log;
    recordAllRoots(all, log);
    auto analysis = plexus::testing::makeAnalysis(tree);
    try {
      all.execute(*analysis, nullptr);
      ADD_FAILURE() << "no exception";
    } catch (std::logic_error const& e) {
      EXPECT_STREQ(e.what(), "Unhandled node kind encountered in AstDispatcher");
    }
    EXPECT_EQ(log, Log({"Program", "ExpressionStatement", "NumberLiteral 1"}));
  }
}

TEST(Walk, InputArgumentWithNeitherChildFailsAfterItsConsumersSawIt) {
  TreeMaker t;
  auto* empty = t.b.make<InputArgument>(static_cast<Identifier const*>(nullptr), nullptr);
  auto* lambda = t.b.make<AnonymousFunction>(t.list<InputArgument>({empty}), t.num(1));
  AllNodes all;
  Log log;
  recordAllRoots(all, log);
  auto analysis = plexus::testing::makeAnalysis(t.program({t.stmt(lambda)}));
  try {
    all.execute(*analysis, nullptr);
    ADD_FAILURE() << "no exception";
  } catch (std::logic_error const& e) {
    EXPECT_STREQ(e.what(), "InputArgument has neither an Identifier nor an Ignored");
  }
  EXPECT_EQ(log, Log({"Program", "ExpressionStatement", "AnonymousFunction", "InputArgument"}));
}

TEST(Walk, LongNamedArgumentChainsCostNoStack) {
  // f(A=g(B=h(...))) nests through the value of each NamedArgument, and
  // x.a.b.c... through the field; both are taken without recursion. The value
  // chain here is a NamedArgument whose value is a NamedArgument, and so on.
  TreeMaker t;
  Expression const* value = t.num(0);
  constexpr int depth = 200000;
  for (int i = 0; i < depth; ++i) value = t.b.make<NamedArgument>(t.field("N"), value);
  AllNodes all;
  int fields = 0;
  int numbers = 0;
  Log unused;
  all.field | std::make_shared<plexus::testing::Recorder<Field const&>>(unused, [&](Field const&) {
    ++fields;
    return std::string();
  });
  all.numberLiteral | std::make_shared<plexus::testing::Recorder<NumberLiteral const&>>(
                          unused, [&](NumberLiteral const&) {
                            ++numbers;
                            return std::string();
                          });
  auto analysis = plexus::testing::makeAnalysis(t.program({t.stmt(value)}));
  all.execute(*analysis, nullptr);
  EXPECT_EQ(fields, depth);
  EXPECT_EQ(numbers, 1);
}

TEST(AllNodes, RootsAreNamedAfterTheirClassesInMemberOrder) {
  AllNodes all;
  std::vector<ProducerConsumerBase const*> roots = all.allProducers();
  ASSERT_EQ(roots.size(), AllNodes::treeRootCount);
  // Every tree class has a root, but the five below; `Method` is abstract and
  // has one too.
  EXPECT_EQ(AllNodes::treeRootCount, lf::astapi::getAllNodeKinds().size() - 5 + 1);
  std::vector<std::u16string> names;
  for (auto const* root : roots) {
    ASSERT_NE(root, nullptr);
    EXPECT_EQ(root->kindDescription(), u"Root");
    EXPECT_TRUE(root->extraChildren().empty());
    names.push_back(root->detailsDescription());
  }
  EXPECT_EQ(names.front(), u"Method");
  EXPECT_EQ(names[1], u"AnonymousFunction");
  EXPECT_EQ(names.back(), u"WhileStatement");
  // Every tree class but the five that feed no root, once each.
  for (NodeKind kind : lf::astapi::getAllNodeKinds()) {
    std::string name(lf::astapi::nodeKindName(kind));
    bool const feedsNoRoot = kind == NodeKind::Identifier || kind == NodeKind::DotOperation ||
                             kind == NodeKind::NamedArgument || kind == NodeKind::OpaqueExpression ||
                             kind == NodeKind::OpaqueStatement;
    EXPECT_EQ(std::count(names.begin(), names.end(), plexus::testing::TreeMaker::u(name)), feedsNoRoot ? 0 : 1)
        << name;
  }
  EXPECT_EQ(all.definition->detailsDescription(), u"Definition");
  EXPECT_EQ(all.use->detailsDescription(), u"Use");
  // Roots have no consuming half: upstream walks end at them.
  EXPECT_EQ(dynamic_cast<ConsumerDependent const*>(roots.front()), nullptr);
}

}  // namespace
