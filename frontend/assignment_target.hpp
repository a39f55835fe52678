#pragma once

#include "platform/ast/ast.hpp"

namespace frontend {

/// The variable an assignment target writes: the identifier at the left end
/// of `x`, `x(2)` or `x.f{3}`, and whether a field access stands on the way.
struct TargetHead {
  ca::ast::Identifier const* identifier = nullptr;  // null for a target of another shape
  bool throughField = false;
};

inline TargetHead headOf(ca::ast::Expression const* target) {
  namespace ast = ca::ast;
  using lf::astapi::NodeKind;
  TargetHead head;
  while (target != nullptr) {
    switch (target->getKind()) {
      case NodeKind::Identifier: head.identifier = static_cast<ast::Identifier const*>(target); return head;
      case NodeKind::ParenOperation: target = static_cast<ast::ParenOperation const*>(target)->getFunction(); break;
      case NodeKind::BraceOperation: target = static_cast<ast::BraceOperation const*>(target)->getBase(); break;
      case NodeKind::DotOperation:
        head.throughField = true;
        target = static_cast<ast::DotOperation const*>(target)->getLeft();
        break;
      case NodeKind::DotParenOperation:
        head.throughField = true;
        target = static_cast<ast::DotParenOperation const*>(target)->getLeft();
        break;
      default: return head;
    }
  }
  return head;
}

}  // namespace frontend
