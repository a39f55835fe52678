#pragma once

// The name that a chain of dots spells, `pkg.sub.f` or `obj.method`: calls
// of package functions and methods are named so.

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "platform/ast/ast.hpp"

namespace lf::astapi {

/// A name of identifiers and fields joined by dots.
template <class F>
struct DottedName {
  /// The identifier at the left end: `a` of `a.b.c`.
  Identifier<F> const* head = nullptr;
  /// The field at the right end: `c` of `a.b.c`; null for a plain name.
  Field<F> const* last = nullptr;
  /// How many fields follow the head: 2 for `a.b.c`, 0 for `a`.
  std::size_t fieldCount = 0;
  /// The whole name: "a.b.c".
  std::u16string text;
};

/// The dotted name that `expression` spells: an identifier alone (`a`, no
/// field) or a chain of `DotOperation`s down to one (`a.b.c`). Nothing for any
/// other expression, nor for a chain with anything else on its left side:
/// `a(1).b`, `a{1}.b`, `a.(n).b`, `(a).b`, `f().b`. Iterative.
///
///     assert(getDottedName(*call.getFunction())->text == u"pkg.sub.h");  // of pkg.sub.h(x)
///     assert(!getDottedName(*assignment.getLeft()));                     // a(1).b{2}.c is no name
template <class F>
std::optional<DottedName<F>> getDottedName(Expression<F> const& expression) {
  std::vector<Field<F> const*> fields;  // right to left
  Expression<F> const* at = &expression;
  while (auto const* dot = dynCast<DotOperation<F>>(at)) {
    fields.push_back(&dot->getField());
    at = dot->getLeft();
  }
  auto const* head = dynCast<Identifier<F>>(at);
  if (head == nullptr) return std::nullopt;
  DottedName<F> name;
  name.head = head;
  name.last = fields.empty() ? nullptr : fields.front();
  name.fieldCount = fields.size();
  name.text = head->getStringId().getString();
  for (auto field = fields.rbegin(); field != fields.rend(); ++field) {
    name.text += u'.';
    name.text += (*field)->getStringId().getString();
  }
  return name;
}

}  // namespace lf::astapi
