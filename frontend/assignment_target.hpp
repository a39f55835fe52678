#pragma once

#include "platform/ast/assignment_target.hpp"

namespace frontend {

/// The variable an assignment target writes: the identifier at the left end
/// of `x`, `x(2)` or `x.f{3}`, and whether a field access stands on the way.
/// The parser's short form of `lf::astapi::getAssignmentTarget`, which takes
/// the whole target apart.
struct TargetHead {
  ca::ast::Identifier const* identifier = nullptr;  // null for a target of another shape
  bool throughField = false;
};

inline TargetHead headOf(ca::ast::Expression const* target) {
  auto const parts = lf::astapi::getAssignmentTarget(target);
  return {parts.identifier, parts.throughField()};
}

}  // namespace frontend
