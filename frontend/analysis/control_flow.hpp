#pragma once

#include <memory>

#include "platform/ast/ast.hpp"
#include "platform/controlflow/control_flow.hpp"

namespace frontend {

/// Builds the control-flow graphs of one file, at the grain of statements.
///
/// Graphs, in this order: the program (the statements of a script; for a
/// function or class file just its entry and exit), then every function,
/// nested and local ones included, and every method definition of a class, in
/// source order with an enclosing function before the functions inside it.
/// The owner of each graph is its Program, Function or MethodDefinition node.
/// Nested and local function definitions are not statements of the body
/// around them; method declarations (signatures only) get no graph.
///
/// Nodes of a graph: the entry, the exit, then one node per statement of the
/// body, nested blocks included, in source order (unreachable statements too;
/// they just have no predecessor). A compound statement is one node: the point
/// where it tests its condition or decides where to go.
///
/// Successors ("next" is what follows a statement: the next statement of its
/// block, or, for the last one, what follows the enclosing block; after the
/// last statement of the body comes the exit; "first of a block" is its first
/// statement, or the given fallback when the block is empty):
///   - entry: first of the body, or the exit.
///   - a simple statement: next.
///   - if: first of its body, then first of each elseif body in order, then
///     first of the else body, or next when there is no else; the fallback of
///     each empty block is next. One successor per branch, so an `if` with an
///     empty body and no else has next twice.
///   - while, for, parfor: first of the body (the loop itself when the body is
///     empty), then next. The last statement of the body goes back to the loop.
///   - switch: first of each case body in order, then first of the otherwise
///     body, or next without an otherwise (no fall-through; empty bodies give
///     next).
///   - try: first of the try body, then first of the catch body; an empty
///     body, or no catch at all (which swallows the error), gives next. The
///     last statements of both bodies go to next.
///   - spmd: first of its body (next when empty); its last statement goes to
///     next.
///   - break: what follows the innermost enclosing loop; continue: that loop.
///     Outside every loop both go to the exit, as does return. An if, switch,
///     try or spmd between the statement and the loop does not matter.
///   - exit: none.
///
/// Iterative: the depth of statement or function nesting uses no stack.
std::shared_ptr<ca::controlflow::ControlFlowAnalysis> buildControlFlow(ca::ast::Program const& program);

}  // namespace frontend
