#pragma once

#include "platform/ast/ast.hpp"

namespace ca::rulesystem {
// Rule code names tree classes short, in the `CA` flavour: `Node`,
// `Identifier`, `Method`, `DotOperation`.
using namespace ::ca::ast;
}  // namespace ca::rulesystem
