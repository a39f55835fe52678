#pragma once

#include <string>

#include "platform/ast/ast.hpp"

namespace frontend {

enum class DumpLayout { OneLine, Indented };

/// Writes a tree as `(Kind child child ...)`, with the text of leaves:
///
///     auto parsed = frontend::parse("x = a + 1;\n", "a.m");
///     assert(frontend::dumpTree(*parsed.tree->getProgram()) ==
///            "(Program (Assignment (Identifier x) (BinaryOperation + (Identifier a) (NumberLiteral 1))))");
///
/// Operators stand after the kind, text literals keep their quotes, and `~`
/// marks a negated attribute. The indented layout puts each node with
/// children on a line of its own, indented two spaces a level down to
/// `maxDumpIndentDepth` (64) levels; a line deeper than that stays at that
/// indentation and starts with its depth in brackets, `[65] (...)`.
std::string dumpTree(ca::ast::Node const& node, DumpLayout layout = DumpLayout::OneLine);

}  // namespace frontend
