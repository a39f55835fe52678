#pragma once

#include <memory>

#include "frontend/analysis/name_resolution.hpp"
#include "platform/controlflow/control_flow.hpp"
#include "platform/usedef/usedef_analysis.hpp"

namespace frontend {

/// The definitions and uses of every variable of a file, in source order, each
/// use linked to the definitions that reach it through the control-flow graph
/// of its body.
///
/// - Definitions: `x = ...` and each plain output of `[x, y] = ...` (whole
///   assignments), function and anonymous-function inputs, loop variables,
///   `catch` identifiers, names declared global or persistent.
/// - `x(2) = ...`, `x.f = ...`, `x{1} = ...` both use and define `x`: one
///   record of both kinds.
/// - Uses: every other occurrence of a variable in an expression.
///
/// Within a statement, what the right side reads comes before what the left
/// side defines. A definition reaches a use when a path of the graph leads
/// from it to the use with no other definition of the variable on the way. A
/// use in a nested function of a variable of an enclosing function is reached
/// only by definitions in its own body.
std::shared_ptr<ca::usedef::UseDefAnalysis> buildUseDefs(ca::ast::Program const& program, FileSymbols const& symbols,
                                                         ca::controlflow::ControlFlowAnalysis const& flow);

}  // namespace frontend
