// elementwise-logical-in-condition: `&` or `|` at the top of the condition of
// an `if`, `elseif` or `while`, where `&&` or `||` is meant.

#include <set>
#include <string>

#include "platform/utils/type_names.hpp"
#include "tools/rules/rule_table.hpp"

namespace plexus::rules {

namespace {

using namespace ca::rulesystem;
using lf::astapi::BinaryOperator;

// Gives the condition of an `if` (T = IfStatement), `elseif` or `while`.
template <class T>
class GetCondition final : public StageOf<GetCondition<T>, Transform<T const&, Expression const&>> {
 public:
  std::u16string description() const override {
    std::u16string text = u"GetCondition ";
    text += ca::utils::prettyTypeName<T>();
    return text;
  }
  Expression const& transform(T const& statement, ca::Analysis const&) const override {
    return *statement.getCondition();
  }
};

// Gives the expression inside any parentheses around it: `if (a & b)` is
// written with them as often as without.
class WithoutParentheses final : public StageOf<WithoutParentheses, Transform<Expression const&, Node const&>> {
 public:
  std::u16string description() const override { return u"WithoutParentheses"; }
  Node const& transform(Expression const& expression, ca::Analysis const&) const override {
    Expression const* at = &expression;
    while (auto const* parenthesized = lf::astapi::dynCast<ParenthesizedExpression>(at)) {
      at = parenthesized->getExpression();
    }
    return *at;
  }
};

template <class T>
void reportConditions(RuleDeclaration const& rule, Producer<T const&> statements, std::string keyword) {
  // Only the top of the condition: an `&` or `|` below it is either under
  // another of them, and so part of the same finding, or an operand of
  // something else (`any(a | b)`, `x == (a | b)`), where element-wise is
  // what is meant.
  auto tops = statements | std::make_unique<GetCondition<T>>() | std::make_unique<WithoutParentheses>() |
              isa<BinaryOperation>() |
              isBinaryOperation(std::set<BinaryOperator>{BinaryOperator::ElementAnd, BinaryOperator::ElementOr});
  tops | rule.report<BinaryOperation const&>([keyword](BinaryOperation const& operation) {
    bool const isAnd = operation.getOperator() == BinaryOperator::ElementAnd;
    return std::string(isAnd ? "'&'" : "'|'") + " in the condition of '" + keyword + "' works element by element; '" +
           (isAnd ? "&&" : "||") + "' is meant for a scalar condition";
  });
}

void declare(RuleDeclaration const& rule) {
  reportConditions<IfStatement>(rule, rule.all().ifStatement, "if");
  reportConditions<ElseifBlock>(rule, rule.all().elseifBlock, "elseif");
  reportConditions<WhileStatement>(rule, rule.all().whileStatement, "while");
}

}  // namespace

RuleBody const& body::ElementwiseLogicalInCondition() {
  static RuleBody const rule{
      .documentation =
          {
              .finds = "An element-wise `&` or `|` that is the whole condition of an `if`, `elseif` or `while` "
                       "(parentheses around it do not matter), where the short-circuit `&&` or `||` is meant. "
                       "One finding per condition, at the outermost operator; an `&` or `|` nested in it is part "
                       "of the same finding.",
              .why = "`&` and `|` are the element-wise operators for arrays. In a condition they say \"these "
                     "operands may be arrays\" to the reader, and whether the right operand is evaluated when "
                     "the left already decides is not visible from the code. `&&` and `||` say that the "
                     "condition is one logical value, stop at the first operand that decides it (so that "
                     "`isfield(s, 'n') && s.n > 0` is safe), and fail loudly when an operand is not a scalar.",
              .example = "    if isfield(opts, 'limit') & opts.limit > 0\n"
                         "      n = min(n, opts.limit);\n"
                         "    end\n"
                         "    while ~done | retries < 3\n"
                         "      [done, retries] = step(retries);\n"
                         "    end",
              .instead = "    if isfield(opts, 'limit') && opts.limit > 0\n"
                         "      n = min(n, opts.limit);\n"
                         "    end\n"
                         "    while ~done || retries < 3\n"
                         "      [done, retries] = step(retries);\n"
                         "    end\n"
                         "\n"
                         "Where an operand really is an array, say how it is reduced: `if all(a > 0 & b > 0)`.",
              .limits = "On arrays the two differ: `if a & b` with array operands is true when every element "
                        "of the element-wise result is true (and it is not empty), while `a && b` is an error "
                        "for an operand that is not a scalar. Replacing the operator is right only when both "
                        "operands are scalars; the rule cannot tell, as it knows no types, so it also reports "
                        "conditions over arrays that rely on the element-wise meaning. An `&` or `|` inside "
                        "another operation of a condition (`if x == (a | b)`, `if any(a | b)`, "
                        "`if ok && (a | b)`) is not reported, nor one assigned to a variable first and tested "
                        "later.",
          },
      .options = {},
      .declare = &declare,
  };
  return rule;
}

}  // namespace plexus::rules
