#pragma once

// What the target of an assignment is made of: the variable it writes and
// what it reads on the way there. The parser, name resolution and use-def all
// take targets apart this way.

#include <algorithm>

#include <boost/container/small_vector.hpp>

#include "platform/ast/ast.hpp"

namespace lf::astapi {

/// The parts of one assignment target, `x`, `x(2)`, `s.a{k}.(name) = v`, taken
/// apart from the right, down the left side of each `()`, `{}`, `.f` and
/// `.(expression)`:
///
/// - `head`: what stands at the left end: the variable (`s`) for the targets
///   that write one; an `Ignored` for `~`; for a target of another shape
///   (`[a b](1) = v`, if a tree producer lets one through) whatever stands
///   there, which the target reads rather than writes. Null for a null target.
/// - `identifier`: the head when it is an `Identifier`, else null.
/// - `fields`: the fields of the `.f` links, left to right.
/// - `dynamicFields`: the expressions of the `.(expression)` links, left to
///   right.
/// - `indices`: the arguments of the `()` and `{}` links, left to right.
///
/// Nothing is allocated for a target of up to four parts of each sort.
///
///     // a(1).b{2}.c = v: head and identifier a, indices 1 and 2, fields b and c
///     AssignmentTarget<ca::astapi::CA> const target = getAssignmentTarget(assignment.getLeft());
///     assert(target.identifier != nullptr && target.throughField() && target.indices.size() == 2);
template <class F>
struct AssignmentTarget {
  template <class T>
  using Parts = boost::container::small_vector<T const*, 4>;

  Expression<F> const* head = nullptr;
  Identifier<F> const* identifier = nullptr;
  Parts<Field<F>> fields;
  Parts<Expression<F>> dynamicFields;
  Parts<Expression<F>> indices;

  /// Whether a field access, `.f` or `.(expression)`, stands on the way to the
  /// head: the target writes part of a structure or object.
  bool throughField() const noexcept { return !fields.empty() || !dynamicFields.empty(); }
  /// Whether the target writes a whole variable: it is an identifier alone.
  bool isWholeVariable() const noexcept {
    return identifier != nullptr && fields.empty() && dynamicFields.empty() && indices.empty();
  }
};

/// Takes `target`, the left side of an assignment or one output of a
/// multiple assignment, apart into its head, fields and indices. Iterative:
/// a chain as long as its input costs no call stack.
template <class F>
AssignmentTarget<F> getAssignmentTarget(Expression<F> const* target) {
  AssignmentTarget<F> parts;
  // The links are met from the right; each list is turned round at the end.
  Expression<F> const* at = target;
  bool atLink = true;
  while (at != nullptr && atLink) {
    switch (at->getKind()) {
      case NodeKind::ParenOperation: {
        auto const& paren = cast<ParenOperation<F>>(*at);
        auto const arguments = paren.getArguments();
        parts.indices.insert(parts.indices.end(), arguments.rbegin(), arguments.rend());
        at = paren.getFunction();
        break;
      }
      case NodeKind::BraceOperation: {
        auto const& brace = cast<BraceOperation<F>>(*at);
        auto const arguments = brace.getArguments();
        parts.indices.insert(parts.indices.end(), arguments.rbegin(), arguments.rend());
        at = brace.getBase();
        break;
      }
      case NodeKind::DotOperation: {
        auto const& dot = cast<DotOperation<F>>(*at);
        parts.fields.push_back(&dot.getField());
        at = dot.getLeft();
        break;
      }
      case NodeKind::DotParenOperation: {
        auto const& dynamic = cast<DotParenOperation<F>>(*at);
        parts.dynamicFields.push_back(dynamic.getExpression());
        at = dynamic.getLeft();
        break;
      }
      default: atLink = false; break;
    }
  }
  parts.head = at;
  parts.identifier = dynCast<Identifier<F>>(at);
  std::reverse(parts.fields.begin(), parts.fields.end());
  std::reverse(parts.dynamicFields.begin(), parts.dynamicFields.end());
  std::reverse(parts.indices.begin(), parts.indices.end());
  return parts;
}

}  // namespace lf::astapi
