#pragma once

#include <cstddef>
#include <memory>

#include "platform/ast/syntax_tree.hpp"

namespace plexus::bench {

/// Builds a syntax tree of about `targetNodes` nodes shaped like a large file
/// of the analysed language: a Program of functions (roughly one per 3000
/// nodes, at least one) whose bodies mix assignments, calls, indexing, field
/// chains, literals and if/for/while statements nested up to four deep.
///
/// Deterministic: the generator draws from std::mt19937 with a fixed seed and
/// maps its raw output itself, so the same target gives the same tree on
/// every platform. The result overshoots the target by at most one statement;
/// `getNodeCount()` of the tree tells the exact size.
std::shared_ptr<ca::astapi::SyntaxTree const> makeSyntheticTree(std::size_t targetNodes);

}  // namespace plexus::bench
