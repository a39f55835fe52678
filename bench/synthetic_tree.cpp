#include "bench/synthetic_tree.hpp"

#include <algorithm>
#include <cstdint>
#include <random>
#include <string>
#include <utility>
#include <vector>

#include "bench/vocabulary.hpp"

namespace plexus::bench {

namespace {

namespace ast = ca::ast;
using ca::astapi::StringId;
using ca::astapi::TextView;
using lf::astapi::BinaryOperator;

constexpr std::uint32_t kSeed = 0x5eed1234;
// A few hundred functions for a million nodes.
constexpr std::size_t kNodesPerFunction = 3000;
// Statements nest up to this depth; a function body is depth 1.
constexpr int kMaxStatementDepth = 4;
// Expressions on the right of an assignment nest up to this many levels.
constexpr int kExpressionDepth = 3;

constexpr BinaryOperator kArithmetic[] = {BinaryOperator::Plus,
                                          BinaryOperator::Minus,
                                          BinaryOperator::MatrixTimes,
                                          BinaryOperator::ElementTimes,
                                          BinaryOperator::ElementRightDivide,
                                          BinaryOperator::MatrixRightDivide,
                                          BinaryOperator::ElementPower};
constexpr BinaryOperator kComparison[] = {BinaryOperator::Less,    BinaryOperator::LessEqual,
                                          BinaryOperator::Greater, BinaryOperator::GreaterEqual,
                                          BinaryOperator::Equal,   BinaryOperator::NotEqual};
constexpr BinaryOperator kLogical[] = {BinaryOperator::ShortCircuitAnd, BinaryOperator::ShortCircuitOr};

std::vector<StringId> intern(std::vector<std::u16string> const& names) {
  std::vector<StringId> ids;
  ids.reserve(names.size());
  for (auto const& name : names) ids.emplace_back(name);
  return ids;
}

std::u16string widen(std::string const& ascii) { return {ascii.begin(), ascii.end()}; }

/// One run of the generator. Every node goes through `make`, which counts it,
/// so that function bodies can be grown to a node budget while being built.
class Generator {
 public:
  explicit Generator(std::size_t targetNodes)
      : target_(targetNodes),
        functionNames_(intern(functionNames())),
        variableNames_(intern(variableNames())),
        loopVariableNames_(intern(loopVariableNames())),
        fieldNames_(intern(fieldNames())) {
    // Call frequencies follow Zipf's law over the vocabulary, which is ordered
    // most frequent first: a few names dominate and most are rare.
    double total = 0.0;
    for (std::size_t rank = 0; rank < functionNames_.size(); ++rank) {
      total += 1.0 / static_cast<double>(rank + 1);
      callWeights_.push_back(total);
    }
    // Literal texts are shared between literals of equal spelling; they live in
    // the tree's arena like any other text.
    for (int value = 0; value <= 10; ++value) {
      numbers_.emplace_back(static_cast<double>(value), builder_.text(widen(std::to_string(value))));
    }
    numbers_.emplace_back(0.5, builder_.text(u"0.5"));
    numbers_.emplace_back(1e-6, builder_.text(u"1e-6"));
    numbers_.emplace_back(100.0, builder_.text(u"100"));
    for (char16_t const* text : {u"%d items\\n", u"off", u"on", u"Invalid input.", u"linear", u"value", u"%s: %g\\n"}) {
      charTexts_.push_back(builder_.text(text));
    }
  }

  std::shared_ptr<ca::astapi::SyntaxTree const> run() {
    std::size_t const functionCount = std::max<std::size_t>(1, target_ / kNodesPerFunction);
    std::vector<ast::Node const*> functions;
    functions.reserve(functionCount);
    for (std::size_t index = 0; index < functionCount; ++index) {
      // Spread what is left of the budget evenly over the functions left.
      std::size_t const left = target_ > made_ + 1 ? target_ - made_ - 1 : 0;
      functions.push_back(function(index, left / (functionCount - index)));
    }
    auto const* program = make<ast::Program>(builder_.text(u"synthetic.m"), builder_.list<ast::Node>(functions));
    return builder_.finish(program, ca::FileType::Function);
  }

 private:
  template <class T, class... Args>
  T* make(Args&&... args) {
    ++made_;
    return builder_.make<T>(std::forward<Args>(args)...);
  }

  // Raw draws, mapped here rather than by std distributions, whose output
  // differs between standard libraries. Callers make each draw a statement of
  // its own: the order in which a call's arguments are evaluated is
  // unspecified, so two draws inside one argument list could swap.
  std::uint32_t below(std::uint32_t bound) { return random_() % bound; }
  bool percent(std::uint32_t chance) { return below(100) < chance; }
  template <class T, std::size_t N>
  T pick(T const (&items)[N]) {
    return items[below(N)];
  }
  StringId pick(std::vector<StringId> const& items) { return items[below(static_cast<std::uint32_t>(items.size()))]; }

  StringId calledName() {
    double const draw = static_cast<double>(random_()) / 4294967296.0 * callWeights_.back();
    auto const rank = std::upper_bound(callWeights_.begin(), callWeights_.end(), draw) - callWeights_.begin();
    return functionNames_[std::min<std::size_t>(static_cast<std::size_t>(rank), functionNames_.size() - 1)];
  }

  // A variable that holds a value here: one defined earlier in the function.
  StringId knownVariable() { return known_.empty() ? pick(variableNames_) : pick(known_); }
  void define(StringId name) {
    if (std::find(known_.begin(), known_.end(), name) == known_.end()) known_.push_back(name);
  }

  // --- Declarations ---------------------------------------------------------

  ast::Function const* function(std::size_t index, std::size_t budget) {
    std::size_t const start = made_;
    known_.clear();
    auto const* name = make<ast::Identifier>(functionNames_[index % functionNames_.size()]);

    std::vector<ast::InputArgument const*> inputs;
    for (std::uint32_t count = 1 + below(4); count > 0; --count) {
      StringId const input = pick(variableNames_);
      define(input);
      inputs.push_back(make<ast::InputArgument>(make<ast::Identifier>(input)));
    }
    std::vector<StringId> outputNames;
    for (std::uint32_t count = below(3); count > 0; --count) outputNames.push_back(pick(variableNames_));

    std::vector<ast::Node const*> body;
    while (made_ - start < budget) body.push_back(statement(1));
    // Each output is set at the end, as functions usually do.
    for (StringId const output : outputNames) {
      auto const* right = expression(kExpressionDepth);
      body.push_back(make<ast::Assignment>(make<ast::Identifier>(output), right));
    }

    std::vector<ast::Identifier const*> outputs;
    for (StringId const output : outputNames) outputs.push_back(make<ast::Identifier>(output));
    return make<ast::Function>(name, builder_.list<ast::InputArgument>(inputs), builder_.list<ast::Identifier>(outputs),
                               lf::astapi::NodeList<ast::ArgumentsBlock>{}, builder_.list<ast::Node>(body));
  }

  // --- Statements -----------------------------------------------------------

  ast::Node const* statement(int depth) {
    // One statement in five opens a block at the top of a function, fewer the
    // deeper it stands, so that most code sits at the first two levels.
    auto const nesting = static_cast<std::uint32_t>(20 * (kMaxStatementDepth - depth) / (kMaxStatementDepth - 1));
    if (percent(nesting)) {
      std::uint32_t const roll = below(20);
      if (roll < 10) return ifStatement(depth);
      if (roll < 17) return forStatement(depth);
      return whileStatement(depth);
    }
    if (percent(20)) return make<ast::ExpressionStatement>(call(kExpressionDepth - 1));
    return assignment();
  }

  lf::astapi::NodeList<ast::Node> block(int depth) {
    std::vector<ast::Node const*> body;
    for (std::uint32_t count = 1 + below(5); count > 0; --count) body.push_back(statement(depth));
    return builder_.list<ast::Node>(body);
  }

  ast::Node const* assignment() {
    // The right side is evaluated, and so written, before the left is defined.
    ast::Expression const* right = expression(kExpressionDepth);
    std::uint32_t const roll = below(100);
    ast::Expression const* left = nullptr;
    if (roll < 80) {
      StringId const target = percent(60) ? knownVariable() : pick(variableNames_);
      define(target);
      left = make<ast::Identifier>(target);
    } else if (roll < 92) {
      left = index(make<ast::Identifier>(knownVariable()));
    } else {
      left = fieldChain(1 + below(2));
    }
    return make<ast::Assignment>(left, right);
  }

  ast::Node const* ifStatement(int depth) {
    auto const* condition = this->condition();
    auto const body = block(depth + 1);
    std::vector<ast::ElseifBlock const*> elseifs;
    std::uint32_t const roll = below(100);
    for (std::uint32_t count = roll < 70 ? 0 : roll < 90 ? 1 : 2; count > 0; --count) {
      auto const* elseifCondition = this->condition();
      elseifs.push_back(make<ast::ElseifBlock>(elseifCondition, block(depth + 1)));
    }
    ast::ElseBlock const* elseBlock = percent(40) ? make<ast::ElseBlock>(block(depth + 1)) : nullptr;
    return make<ast::IfStatement>(condition, body, builder_.list<ast::ElseifBlock>(elseifs), elseBlock);
  }

  ast::Node const* forStatement(int depth) {
    StringId const loopName = pick(loopVariableNames_);
    auto const* range = colonVector();
    define(loopName);
    auto const* loopVariable = make<ast::Identifier>(loopName);
    return make<ast::ForStatement>(loopVariable, range, block(depth + 1));
  }

  ast::Node const* whileStatement(int depth) {
    auto const* condition = this->condition();
    return make<ast::WhileStatement>(condition, block(depth + 1));
  }

  // --- Expressions ----------------------------------------------------------

  ast::Expression const* expression(int depth) {
    if (depth == 0) return leaf();
    std::uint32_t const roll = below(100);
    if (roll < 30) {
      BinaryOperator const op = pick(kArithmetic);
      auto const* left = expression(depth - 1);
      auto const* right = expression(depth - 1);
      return make<ast::BinaryOperation>(op, left, right);
    }
    if (roll < 55) return call(depth - 1);
    if (roll < 65) return index(make<ast::Identifier>(knownVariable()));
    if (roll < 73) return fieldChain(1 + below(3));
    if (roll < 78) return matrix();
    if (roll < 83) return charVector();
    return leaf();
  }

  ast::Expression const* leaf() {
    if (percent(60)) return make<ast::Identifier>(knownVariable());
    return number();
  }

  ast::Expression const* number() {
    auto const& [value, text] = numbers_[below(static_cast<std::uint32_t>(numbers_.size()))];
    return make<ast::NumberLiteral>(lf::astapi::NumericValue(value), text);
  }

  ast::Expression const* charVector() {
    return make<ast::CharVectorLiteral>(charTexts_[below(static_cast<std::uint32_t>(charTexts_.size()))]);
  }

  /// `f(a, b)` with a name from the vocabulary and up to three arguments.
  ast::Expression const* call(int argumentDepth) {
    auto const* function = make<ast::Identifier>(calledName());
    std::vector<ast::Expression const*> arguments;
    for (std::uint32_t count = below(4); count > 0; --count) {
      arguments.push_back(percent(10) ? charVector() : expression(argumentDepth));
    }
    return make<ast::ParenOperation>(function, builder_.list<ast::Expression>(arguments));
  }

  /// `base(i)`, `base(i + 1, :)`, `base(end)`.
  ast::Expression const* index(ast::Expression const* base) {
    std::vector<ast::Expression const*> arguments;
    for (std::uint32_t count = 1 + below(2); count > 0; --count) {
      std::uint32_t const roll = below(100);
      if (roll < 45) {
        arguments.push_back(make<ast::Identifier>(knownVariable()));
      } else if (roll < 65) {
        arguments.push_back(number());
      } else if (roll < 80) {
        arguments.push_back(make<ast::ColonIndex>());
      } else if (roll < 88) {
        arguments.push_back(make<ast::EndIndex>());
      } else {
        auto const* left = make<ast::Identifier>(knownVariable());
        arguments.push_back(make<ast::BinaryOperation>(BinaryOperator::Plus, left, number()));
      }
    }
    return make<ast::ParenOperation>(base, builder_.list<ast::Expression>(arguments));
  }

  /// `s.a`, `s.a.b`, ...: chains nest to the left.
  ast::Expression const* fieldChain(std::uint32_t fields) {
    ast::Expression const* chain = make<ast::Identifier>(knownVariable());
    for (; fields > 0; --fields) chain = make<ast::DotOperation>(chain, make<ast::Field>(pick(fieldNames_)));
    return chain;
  }

  /// `[a, 1, 2; b, 3, 4]`.
  ast::Expression const* matrix() {
    std::uint32_t const columns = 1 + below(4);
    std::vector<ast::Row const*> rows;
    for (std::uint32_t count = 1 + below(2); count > 0; --count) {
      std::vector<ast::Expression const*> elements;
      for (std::uint32_t column = 0; column < columns; ++column) elements.push_back(leaf());
      rows.push_back(make<ast::Row>(builder_.list<ast::Expression>(elements)));
    }
    return make<ast::Matrix>(builder_.list<ast::Row>(rows));
  }

  /// `1:n`, `1:2:numel(x)`.
  ast::Expression const* colonVector() {
    auto const* first = number();
    ast::Expression const* step = percent(15) ? number() : nullptr;
    ast::Expression const* last = nullptr;
    if (percent(50)) {
      last = make<ast::Identifier>(knownVariable());
    } else {
      auto const* function = make<ast::Identifier>(functionNames_[below(2)]);  // size or numel
      last = make<ast::ParenOperation>(function, builder_.list<ast::Expression>({leaf()}));
    }
    return make<ast::ColonVector>(first, step, last);
  }

  /// `x < 3`, `isempty(x)`, `a > 0 && b <= n`.
  ast::Expression const* condition() {
    std::uint32_t const roll = below(100);
    if (roll < 20) return call(0);
    if (roll < 40) {
      BinaryOperator const op = pick(kLogical);
      auto const* left = comparison();
      auto const* right = comparison();
      return make<ast::BinaryOperation>(op, left, right);
    }
    return comparison();
  }

  ast::Expression const* comparison() {
    BinaryOperator const op = pick(kComparison);
    auto const* left = expression(1);
    auto const* right = leaf();
    return make<ast::BinaryOperation>(op, left, right);
  }

  ca::astapi::TreeBuilder builder_;
  std::mt19937 random_{kSeed};
  std::size_t made_ = 0;
  std::size_t const target_;

  std::vector<StringId> const functionNames_;
  std::vector<StringId> const variableNames_;
  std::vector<StringId> const loopVariableNames_;
  std::vector<StringId> const fieldNames_;
  std::vector<double> callWeights_;  // cumulative, by rank
  std::vector<std::pair<double, TextView>> numbers_;
  std::vector<TextView> charTexts_;

  std::vector<StringId> known_;  // variables defined so far in the current function
};

}  // namespace

std::shared_ptr<ca::astapi::SyntaxTree const> makeSyntheticTree(std::size_t targetNodes) {
  return Generator(targetNodes).run();
}

}  // namespace plexus::bench
