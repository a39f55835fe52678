// Operators and fields, from source text through a run: operator and field
// name keys on one switch, the operand of a unary operator, superclass
// constructor calls, field lengths and names without case, and the field of
// a dot operation.

#include <gtest/gtest.h>

#include <set>

#include "rulesystem/execution/all_nodes.hpp"
#include "rulesystem/graph/combine.hpp"
#include "rulesystem/syntax/node_relations.hpp"
#include "rulesystem/syntax/operators_and_fields.hpp"
#include "tests/support/checked_hits.hpp"
#include "tests/support/recorder.hpp"

namespace {

using namespace ca::rulesystem;
using lf::astapi::BinaryOperator;
using lf::astapi::UnaryOperator;
using plexus::testing::analyse;
using plexus::testing::checkedHitsOf;
using plexus::testing::Lines;

/// The one switch right behind `producer`, or null.
template <class In, class Key>
Switch<In, In, Key> const* switchBehind(Producer<In> const& producer) {
  auto const consumers = producer->consumers();
  return consumers.size() == 1 ? dynamic_cast<Switch<In, In, Key> const*>(consumers.front()) : nullptr;
}

TEST(IsBinaryOperation, OperatorsAreCasesOfOneSwitchAndOneOperatorIsTheSetOfIt) {
  std::string const source = "x = a + b - c * d;\n";
  EXPECT_EQ(checkedHitsOf(source, [](auto& all) { return all.binaryOperation | isBinaryOperation(BinaryOperator::Plus); }),
            Lines({"1:5 a + b"}));
  EXPECT_EQ(checkedHitsOf(source,
                 [](auto& all) {
                   return all.binaryOperation | isBinaryOperation(std::set{BinaryOperator::Plus, BinaryOperator::Minus});
                 }),
            Lines({"1:5 a + b - c * d", "1:5 a + b"}));

  AllNodes all;
  auto const plus = all.binaryOperation | isBinaryOperation(BinaryOperator::Plus);
  EXPECT_EQ(plus, all.binaryOperation | isBinaryOperation(std::set{BinaryOperator::Plus}));
  auto const either = all.binaryOperation | isBinaryOperation(std::set{BinaryOperator::Plus, BinaryOperator::Minus});
  EXPECT_NE(either, plus);
  auto const* branching = switchBehind<BinaryOperation const&, BinaryOperator>(all.binaryOperation);
  ASSERT_NE(branching, nullptr);
  EXPECT_EQ(branching->detailsDescription(), u"GetBinaryOperator");
  EXPECT_EQ(branching->cases.size(), 2u);
  EXPECT_EQ(branching->cases.at(BinaryOperator::Plus).get(), plus.impl.get());
  EXPECT_EQ(branching->cases.at(BinaryOperator::Minus)->detailsDescription(), u"-");
}

TEST(IsUnaryOperation, OperatorsAreCasesOfOneSwitchAndOneOperatorIsTheSetOfIt) {
  std::string const source = "x = -a + ~b;\nh = @sin;\nt = a';\n";
  EXPECT_EQ(checkedHitsOf(source, [](auto& all) { return all.unaryOperation | isUnaryOperation(UnaryOperator::FunctionHandle); }),
            Lines({"2:5 @sin"}));
  EXPECT_EQ(checkedHitsOf(source,
                 [](auto& all) {
                   return all.unaryOperation | isUnaryOperation(std::set{UnaryOperator::Minus, UnaryOperator::Not});
                 }),
            Lines({"1:5 -a", "1:10 ~b"}));

  AllNodes all;
  auto const handles = all.unaryOperation | isUnaryOperation(UnaryOperator::FunctionHandle);
  EXPECT_EQ(handles, all.unaryOperation | isUnaryOperation(std::set{UnaryOperator::FunctionHandle}));
  all.unaryOperation | isUnaryOperation(UnaryOperator::ComplexTranspose);
  auto const* branching = switchBehind<UnaryOperation const&, UnaryOperator>(all.unaryOperation);
  ASSERT_NE(branching, nullptr);
  EXPECT_EQ(branching->detailsDescription(), u"GetUnaryOperator");
  EXPECT_EQ(branching->cases.size(), 2u);
  EXPECT_EQ(branching->cases.at(UnaryOperator::ComplexTranspose)->detailsDescription(), u"'");
}

TEST(GetUnaryOperand, GivesTheIdentifierAfterAtOrQuestionMark) {
  std::string const source = "h = @sin;\nm = ?handle;\n";
  EXPECT_EQ(checkedHitsOf(source,
                 [](auto& all) {
                   return all.unaryOperation | isUnaryOperation(UnaryOperator::FunctionHandle) | getUnaryOperand();
                 }),
            Lines({"1:6 sin"}));
  EXPECT_EQ(checkedHitsOf(source,
                 [](auto& all) {
                   return all.unaryOperation | isUnaryOperation(UnaryOperator::Metaclass) | getUnaryOperand();
                 }),
            Lines({"2:6 handle"}));

  AllNodes all;
  auto const operands = all.unaryOperation | getUnaryOperand();
  EXPECT_EQ(operands, all.unaryOperation | getUnaryOperand());
  EXPECT_EQ(operands->detailsDescription(), u"GetUnaryOperand");

#ifndef PLEXUS_CHECKED
  // Unfiltered, an operand that is no identifier comes out as an identifier
  // without name or place (checked builds stop there instead).
  plexus::testing::Log log;
  operands | std::make_shared<plexus::testing::Recorder<Identifier const&>>(log, [](Identifier const& name) {
    return fl::i18n::to_utf8(name.getStringId().getString()) + (name.getParent() == nullptr ? " detached" : "");
  });
  auto const snippet = analyse("x = -(1) + -y;\n");
  all.execute(*snippet.analysis, nullptr);
  EXPECT_EQ(log, plexus::testing::Log({" detached", "y"}));
#endif
}

TEST(IsSuperclassConstructorCall, KeepsTheConstructorsCallNotAMethodsCall) {
  std::string const source =
      "classdef D < B\n"
      "    methods\n"
      "        function obj = D(x)\n"
      "            obj@B(x);\n"
      "        end\n"
      "        function show(obj)\n"
      "            show@B(obj);\n"
      "        end\n"
      "    end\n"
      "end\n";
  EXPECT_EQ(checkedHitsOf(source, [](auto& all) { return all.binaryOperation | isSuperclassConstructorCall(); }, "D.m"),
            Lines({"4:13 obj@B"}));

  AllNodes all;
  EXPECT_EQ(all.binaryOperation | isSuperclassConstructorCall(), all.binaryOperation | isSuperclassConstructorCall());
  EXPECT_EQ((all.binaryOperation | isSuperclassConstructorCall())->detailsDescription(),
            u"IsSuperclassConstructorCall");
}

TEST(FieldNames, ExactNamesAreKeysOfOneSwitchAndCaseInsensitiveTextsAreStages) {
  std::string const source = "s.name = 1;\ns.Name = 2;\nv = s.nAme + s.names;\n";
  EXPECT_EQ(checkedHitsOf(source, [](auto& all) { return all.field | isFieldStringId(u"name"); }), Lines({"1:3 name"}));
  EXPECT_EQ(checkedHitsOf(source, [](auto& all) { return all.field | isFieldTextCaseInsensitive(u"NAME"); }),
            Lines({"1:3 name", "2:3 Name", "3:7 nAme"}));

  AllNodes all;
  auto const exact = all.field | isFieldStringId(u"name");
  EXPECT_EQ(exact, all.field | isFieldStringId(u"name"));
  EXPECT_NE(exact, all.field | isFieldStringId(u"Name"));
  auto const* branching = switchBehind<Field const&, ca::astapi::StringId>(all.field);
  ASSERT_NE(branching, nullptr);
  EXPECT_EQ(branching->detailsDescription(), u"GetStringId");
  EXPECT_EQ(branching->cases.size(), 2u);
  EXPECT_EQ(exact->detailsDescription(), u"name");

  // The text is compared with case when stages are told apart.
  auto const lower = all.field | isFieldTextCaseInsensitive(u"name");
  EXPECT_EQ(lower, all.field | isFieldTextCaseInsensitive(u"name"));
  EXPECT_NE(lower, all.field | isFieldTextCaseInsensitive(u"NAME"));
  EXPECT_EQ(lower->detailsDescription(), u"isFieldTextCaseInsensitive name");
}

TEST(IsFieldLongerThan, CountsTheCharactersOfTheFieldStrictlyAboveTheLimit) {
  std::string const source = "s.abcde = 1;\ns.abcdef = 2;\nv = s.x;\n";
  EXPECT_EQ(checkedHitsOf(source, [](auto& all) { return all.field | isFieldLongerThan(5); }), Lines({"2:3 abcdef"}));
  EXPECT_EQ(checkedHitsOf(source, [](auto& all) { return all.field | isFieldLongerThan(0); }),
            Lines({"1:3 abcde", "2:3 abcdef", "3:7 x"}));

  AllNodes all;
  EXPECT_EQ(all.field | isFieldLongerThan(5), all.field | isFieldLongerThan(5));
  EXPECT_NE(all.field | isFieldLongerThan(5), all.field | isFieldLongerThan(6));
  EXPECT_EQ((all.field | isFieldLongerThan(12))->detailsDescription(),
            u"Field name contains more characters than specified limit of 12");
}

TEST(FieldOfDotOperation, GivesTheFieldThroughTheMemberFunction) {
  std::string const source = "v = s.inner.deep;\nw = t.deep;\n";
  // The dots whose left side is a dot, by way of the field below them.
  auto const innerDots = [](auto& all) {
    return upcast<Node const&>(all.field) | getParent<DotOperation>() | isDirectChildOf<DotOperation>();
  };
  EXPECT_EQ(checkedHitsOf(source, [&](auto& all) { return innerDots(all) | &DotOperation::getField; }),
            Lines({"1:7 inner"}));
  EXPECT_EQ(checkedHitsOf(source,
                 [](auto& all) {
                   return upcast<Node const&>(all.field) | getParent<DotOperation>() | &DotOperation::getField |
                          isFieldStringId(u"deep");
                 }),
            Lines({"1:13 deep", "2:7 deep"}));

  AllNodes all;
  auto const fields = innerDots(all) | &DotOperation::getField;
  EXPECT_EQ(fields, innerDots(all) | &DotOperation::getField);
  // The type's name, not the member's: another member of this type would
  // print alike.
  EXPECT_EQ(fields->detailsDescription(), ca::utils::prettyTypeName<Field const& (DotOperation::*)() const>());
  EXPECT_NE(fields->detailsDescription().find(u"Field const&"), std::u16string::npos);
}

}  // namespace
