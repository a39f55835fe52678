#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "platform/ast/operators.hpp"
#include "platform/ast/string_id.hpp"
#include "rulesystem/execution/all_nodes.hpp"

namespace plexus::bench {

/// One benchmark rule. Rules of one shape share every stage but the last,
/// which looks for the rule's own value:
///
///     CallTo:       parenOperation  | CallsByName | CalledName   | NameIs(name)   | HitCounter
///     AssignmentTo: assignment      | AssignsName | AssignedName | NameIs(name)   | HitCounter
///     Operator:     binaryOperation | OperatorOf  | OperatorIs(op)                 | HitCounter
struct Rule {
  enum class Shape { CallTo, AssignmentTo, Operator };

  Shape shape;
  ca::astapi::StringId name;        // for CallTo and AssignmentTo
  lf::astapi::BinaryOperator op{};  // for Operator
};

inline constexpr Rule::Shape kAllShapes[] = {Rule::Shape::CallTo, Rule::Shape::AssignmentTo, Rule::Shape::Operator};

/// The 100 benchmark rules, each looking for a different value: 80 for calls
/// to one function each, frequent and rare ones alike; 12 for assignments to
/// one variable each; 8 for one binary operator each.
std::vector<Rule> const& benchmarkRules();

/// Declares `rule` on `all`, counting the items that reach its end in `hits`.
void declareRule(ca::rulesystem::AllNodes& all, Rule const& rule, std::uint64_t& hits);

/// The root that rules of `shape` start from.
ca::rulesystem::ProducerBase const& rootOf(ca::rulesystem::AllNodes const& all, Rule::Shape shape);

/// How many vertices `rules`, declared on one AllNodes, give under the root of
/// `shape` when equal stages are merged: each stage of the shared prefix once,
/// one last stage per distinct value looked for, one counter per rule.
std::size_t expectedSharedVertices(std::span<Rule const> rules, Rule::Shape shape);

}  // namespace plexus::bench
