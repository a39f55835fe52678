// Assignment targets taken apart, from source text: head, fields, dynamic
// fields and indices, for the shapes the analysed language allows.

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "frontend/parse.hpp"
#include "frontend/tree_dump.hpp"
#include "platform/ast/assignment_target.hpp"
#include "tests/support/parser_limit.hpp"
#include "tests/support/tree_maker.hpp"

namespace {

namespace ast = ca::ast;
using Target = lf::astapi::AssignmentTarget<ca::astapi::CA>;
using Texts = std::vector<std::string>;

// The targets of the first statement of `source`, an assignment or a
// multiple assignment; the tree stays alive with the test.
struct Parsed {
  frontend::ParseResult result;
  std::vector<ast::Expression const*> targets;

  explicit Parsed(std::string const& source) : result(frontend::parse(source, "t.m")) {
    EXPECT_FALSE(result.hasErrors()) << source;
    ast::Node const* first = result.tree->getProgram()->getBody().front();
    if (auto const* single = lf::astapi::dynCast<ast::Assignment>(first)) {
      targets.push_back(single->getLeft());
    } else if (auto const* multiple = lf::astapi::dynCast<ast::MultiLhsAssignment>(first)) {
      targets.assign(multiple->getOutputs().begin(), multiple->getOutputs().end());
    } else {
      ADD_FAILURE() << "no assignment: " << source;
    }
  }
};

template <class List>
Texts dumps(List const& nodes) {
  Texts out;
  for (auto const* node : nodes) out.push_back(frontend::dumpTree(*node));
  return out;
}

std::string headOf(Target const& target) { return target.head ? frontend::dumpTree(*target.head) : "null"; }

TEST(AssignmentTarget, HeadFieldsAndIndicesOfEachShape) {
  {
    Parsed const parsed("x = 1;\n");
    Target const target = lf::astapi::getAssignmentTarget(parsed.targets[0]);
    EXPECT_EQ(headOf(target), "(Identifier x)");
    EXPECT_EQ(target.identifier, target.head);
    EXPECT_TRUE(target.isWholeVariable());
    EXPECT_FALSE(target.throughField());
  }
  {
    // Indices of every `()` and `{}`, fields of every `.f`, left to right.
    Parsed const parsed("a(1).b{2}.c = v;\n");
    Target const target = lf::astapi::getAssignmentTarget(parsed.targets[0]);
    EXPECT_EQ(headOf(target), "(Identifier a)");
    EXPECT_EQ(dumps(target.indices), (Texts{"(NumberLiteral 1)", "(NumberLiteral 2)"}));
    EXPECT_EQ(dumps(target.fields), (Texts{"(Field b)", "(Field c)"}));
    EXPECT_TRUE(target.dynamicFields.empty());
    EXPECT_TRUE(target.throughField());
    EXPECT_FALSE(target.isWholeVariable());
  }
  {
    // Several indices in one pair of parentheses keep their order.
    Parsed const parsed("s(i, j){k, end} = 0;\n");
    Target const target = lf::astapi::getAssignmentTarget(parsed.targets[0]);
    EXPECT_EQ(headOf(target), "(Identifier s)");
    EXPECT_EQ(dumps(target.indices), (Texts{"(Identifier i)", "(Identifier j)", "(Identifier k)", "(EndIndex)"}));
    EXPECT_FALSE(target.throughField());
  }
  {
    Parsed const parsed("x.(name) = v;\n");
    Target const target = lf::astapi::getAssignmentTarget(parsed.targets[0]);
    EXPECT_EQ(headOf(target), "(Identifier x)");
    EXPECT_EQ(dumps(target.dynamicFields), (Texts{"(Identifier name)"}));
    EXPECT_TRUE(target.fields.empty());
    EXPECT_TRUE(target.indices.empty());
    EXPECT_TRUE(target.throughField());
  }
  {
    Parsed const parsed("s.a.(k)(2).b = 1;\n");
    Target const target = lf::astapi::getAssignmentTarget(parsed.targets[0]);
    EXPECT_EQ(headOf(target), "(Identifier s)");
    EXPECT_EQ(dumps(target.fields), (Texts{"(Field a)", "(Field b)"}));
    EXPECT_EQ(dumps(target.dynamicFields), (Texts{"(Identifier k)"}));
    EXPECT_EQ(dumps(target.indices), (Texts{"(NumberLiteral 2)"}));
  }
}

TEST(AssignmentTarget, EachOutputOfAMultipleAssignment) {
  Parsed const parsed("[a.b, ~, c(3)] = f();\n");
  ASSERT_EQ(parsed.targets.size(), 3u);
  Target const field = lf::astapi::getAssignmentTarget(parsed.targets[0]);
  EXPECT_EQ(headOf(field), "(Identifier a)");
  EXPECT_EQ(dumps(field.fields), (Texts{"(Field b)"}));
  EXPECT_TRUE(field.throughField());

  // `~` writes nothing: its head is the Ignored, no identifier.
  Target const ignored = lf::astapi::getAssignmentTarget(parsed.targets[1]);
  EXPECT_EQ(headOf(ignored), "(Ignored)");
  EXPECT_EQ(ignored.identifier, nullptr);
  EXPECT_FALSE(ignored.throughField());
  EXPECT_FALSE(ignored.isWholeVariable());

  Target const indexed = lf::astapi::getAssignmentTarget(parsed.targets[2]);
  EXPECT_EQ(headOf(indexed), "(Identifier c)");
  EXPECT_EQ(dumps(indexed.indices), (Texts{"(NumberLiteral 3)"}));
  EXPECT_FALSE(indexed.throughField());
}

TEST(AssignmentTarget, TargetsOfOtherShapesAndNone) {
  plexus::testing::TreeMaker t;
  // `[1](2).f`, which a tree producer might let through: the matrix is the
  // head, and no variable is written.
  auto* matrix = t.b.make<ast::Matrix>(t.b.list<ast::Row>({t.b.make<ast::Row>(t.exprs({t.num(1)}))}));
  auto* indexed = t.b.make<ast::ParenOperation>(matrix, t.exprs({t.num(2)}));
  auto* dotted = t.b.make<ast::DotOperation>(indexed, t.field("f"));
  Target const other = lf::astapi::getAssignmentTarget<ca::astapi::CA>(dotted);
  EXPECT_EQ(other.head, matrix);
  EXPECT_EQ(other.identifier, nullptr);
  EXPECT_EQ(dumps(other.indices), (Texts{"(NumberLiteral 2)"}));
  EXPECT_EQ(dumps(other.fields), (Texts{"(Field f)"}));

  Target const none = lf::astapi::getAssignmentTarget<ca::astapi::CA>(nullptr);
  EXPECT_EQ(none.head, nullptr);
  EXPECT_EQ(none.identifier, nullptr);
  EXPECT_TRUE(none.fields.empty() && none.indices.empty() && none.dynamicFields.empty());
}

TEST(AssignmentTarget, ChainsAtTheParsersLimitAndFarBeyond) {
  // As long a chain of fields as the parser takes.
  auto const longest = plexus::testing::longestChainTheParserTakes("s", ".f", "(1) = 2;\n");
  ASSERT_GT(longest.links, 200);
  Parsed const parsed(longest.source);
  Target const target = lf::astapi::getAssignmentTarget(parsed.targets[0]);
  EXPECT_EQ(headOf(target), "(Identifier s)");
  EXPECT_EQ(target.fields.size(), static_cast<std::size_t>(longest.links));
  EXPECT_EQ(dumps(target.indices), (Texts{"(NumberLiteral 1)"}));

  // A hundred thousand links, built directly: taken apart without recursion.
  plexus::testing::TreeMaker t;
  ast::Expression const* deep = t.id("s");
  constexpr int kLinks = 100'000;
  for (int i = 0; i < kLinks; ++i) {
    deep = i % 2 == 0 ? static_cast<ast::Expression const*>(t.b.make<ast::DotOperation>(deep, t.field("f")))
                      : t.b.make<ast::BraceOperation>(deep, t.exprs({t.num(i)}));
  }
  Target const far = lf::astapi::getAssignmentTarget(deep);
  EXPECT_EQ(headOf(far), "(Identifier s)");
  EXPECT_EQ(far.fields.size(), static_cast<std::size_t>(kLinks / 2));
  ASSERT_EQ(far.indices.size(), static_cast<std::size_t>(kLinks / 2));
  EXPECT_EQ(frontend::dumpTree(*far.indices.front()), "(NumberLiteral 1)");
  EXPECT_EQ(frontend::dumpTree(*far.indices.back()), "(NumberLiteral 99999)");
}

}  // namespace
