#include "bench/rule_set.hpp"

#include <memory>
#include <set>
#include <stdexcept>
#include <utility>

#include "bench/hit_counter.hpp"
#include "bench/rule_stages.hpp"
#include "bench/vocabulary.hpp"

namespace plexus::bench {

namespace {
constexpr std::size_t kCallRules = 80;
constexpr std::size_t kAssignmentRules = 12;

// The number of stages before the last one, shared by all rules of a shape.
std::size_t sharedPrefixLength(Rule::Shape shape) { return shape == Rule::Shape::Operator ? 1 : 2; }
}  // namespace

std::vector<Rule> const& benchmarkRules() {
  static std::vector<Rule> const rules = [] {
    std::vector<Rule> list;
    // Every other name of the vocabulary, which is ordered by call frequency,
    // so that the rules see the frequent names as well as the rare ones.
    for (std::size_t index = 0; index < kCallRules; ++index) {
      list.push_back({Rule::Shape::CallTo, ca::astapi::StringId(functionNames()[2 * index + 1]), {}});
    }
    for (std::size_t index = 0; index < kAssignmentRules; ++index) {
      list.push_back({Rule::Shape::AssignmentTo, ca::astapi::StringId(variableNames()[index]), {}});
    }
    using lf::astapi::BinaryOperator;
    for (BinaryOperator op :
         {BinaryOperator::Plus, BinaryOperator::Minus, BinaryOperator::MatrixTimes, BinaryOperator::ElementPower,
          BinaryOperator::Equal, BinaryOperator::NotEqual, BinaryOperator::Less, BinaryOperator::ShortCircuitAnd}) {
      list.push_back({Rule::Shape::Operator, ca::astapi::StringId(), op});
    }
    return list;
  }();
  return rules;
}

void declareRule(ca::rulesystem::AllNodes& all, Rule const& rule, std::uint64_t& hits) {
  switch (rule.shape) {
    case Rule::Shape::CallTo:
      all.parenOperation | std::make_unique<CallsByName>() | std::make_unique<CalledName>() |
          std::make_unique<NameIs>(rule.name) | std::make_shared<HitCounter<ca::astapi::StringId>>(hits);
      return;
    case Rule::Shape::AssignmentTo:
      all.assignment | std::make_unique<AssignsName>() | std::make_unique<AssignedName>() |
          std::make_unique<NameIs>(rule.name) | std::make_shared<HitCounter<ca::astapi::StringId>>(hits);
      return;
    case Rule::Shape::Operator:
      all.binaryOperation | std::make_unique<OperatorOf>() | std::make_unique<OperatorIs>(rule.op) |
          std::make_shared<HitCounter<lf::astapi::BinaryOperator>>(hits);
      return;
  }
}

ca::rulesystem::ProducerBase const& rootOf(ca::rulesystem::AllNodes const& all, Rule::Shape shape) {
  switch (shape) {
    case Rule::Shape::CallTo: return *all.parenOperation.impl;
    case Rule::Shape::AssignmentTo: return *all.assignment.impl;
    case Rule::Shape::Operator: return *all.binaryOperation.impl;
  }
  throw std::logic_error("rootOf: not a rule shape");
}

std::size_t expectedSharedVertices(std::span<Rule const> rules, Rule::Shape shape) {
  std::size_t count = 0;
  std::set<std::pair<ca::astapi::StringId, lf::astapi::BinaryOperator>> values;
  for (Rule const& rule : rules) {
    if (rule.shape != shape) continue;
    ++count;
    values.emplace(rule.name, rule.op);
  }
  if (count == 0) return 0;
  return sharedPrefixLength(shape) + values.size() + count;
}

}  // namespace plexus::bench
