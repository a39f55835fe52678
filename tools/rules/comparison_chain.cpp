// comparison-chain: a comparison whose left operand is itself a comparison
// written without parentheses, as in `a < b < c`.

#include <set>

#include "tools/rules/rule_table.hpp"

namespace plexus::rules {

namespace {

using namespace ca::rulesystem;
using lf::astapi::BinaryOperator;

std::set<BinaryOperator> const& comparisonOperators() {
  static std::set<BinaryOperator> const operators{BinaryOperator::Equal,   BinaryOperator::NotEqual,
                                                  BinaryOperator::Less,    BinaryOperator::LessEqual,
                                                  BinaryOperator::Greater, BinaryOperator::GreaterEqual};
  return operators;
}

bool isComparison(Node const* node) {
  if (node == nullptr || node->getKind() != lf::astapi::NodeKind::BinaryOperation) return false;
  return comparisonOperators().contains(static_cast<BinaryOperation const*>(node)->getOperator());
}

// Keeps the last link of a chain: a comparison that is not in turn the
// operand of a comparison, so that `a < b < c < d` is one finding, not two.
class IsOutermostComparison final : public StageOf<IsOutermostComparison, Predicate<BinaryOperation const&>> {
 public:
  std::u16string description() const override { return u"IsOutermostComparison"; }
  bool test(BinaryOperation const& comparison, ca::Analysis const&) override {
    return !isComparison(comparison.getParent());
  }
};

void declare(RuleDeclaration const& rule) {
  // Comparisons are one precedence level and group to the left, so an
  // unparenthesised comparison can only stand as the left operand of
  // another: the parent of a comparison that is a comparison is a chain.
  // Parentheses are a node of their own and break the parent link, which is
  // what leaves `(a < b) == flag` alone.
  auto comparisons = rule.all().binaryOperation | isBinaryOperation(comparisonOperators());
  upcast<Node const&>(comparisons) | getParent<BinaryOperation>() | isBinaryOperation(comparisonOperators()) |
      std::make_unique<IsOutermostComparison>() | rule.report<BinaryOperation const&>([](BinaryOperation const& outer) {
        // The left operand by the grouping; the right one should a tree
        // ever be built otherwise.
        Node const* const operand = isComparison(outer.getLeft()) ? outer.getLeft() : outer.getRight();
        auto const* inner = static_cast<BinaryOperation const*>(operand);
        return "'" + std::string(lf::astapi::spelling(outer.getOperator())) +
               "' compares the logical result of the comparison '" +
               std::string(lf::astapi::spelling(inner->getOperator())) +
               "' before it, not that comparison's right operand";
      });
}

}  // namespace

RuleBody const& body::ComparisonChain() {
  static RuleBody const rule{
      .documentation =
          {
              .finds = "A comparison (`<`, `<=`, `>`, `>=`, `==` or `~=`) whose left operand is another comparison "
                       "written without parentheses, such as `a < b < c`. A chain of several links is one finding, "
                       "at the whole chain.",
              .why = "Comparisons group to the left, so `a < b < c` means `(a < b) < c`: the logical result of "
                     "`a < b`, 0 or 1, is compared with `c`. That is almost never what the reader of the "
                     "mathematical notation expects, and for most values of `c` the result no longer depends on "
                     "`a` at all: `0 < x < 1` is true for every `x` when compared this way.",
              .example = "    if 0 < x < 1\n"
                         "      y = sqrt(x);\n"
                         "    end",
              .instead = "Join the two comparisons with `&&` (or `&` for arrays); where comparing a logical result "
                         "is meant, put the first comparison in parentheses to say so:\n\n"
                         "    if 0 < x && x < 1\n"
                         "      y = sqrt(x);\n"
                         "    end\n"
                         "    same = (a < b) == expected;",
              .limits = "It looks at one expression: a chain split over a variable, `t = a < b; t < c`, is not "
                        "found, nor one hidden in parentheses, `(a < b) < c`, which is taken as meant. A deliberate "
                        "comparison of a logical result written without parentheses, such as `x > 0 == wanted`, is "
                        "reported although it does what its author meant; the parentheses make it clear to the "
                        "next reader too.",
          },
      .options = {},
      .declare = &declare,
  };
  return rule;
}

}  // namespace plexus::rules
