#pragma once

#include <memory>

#include "platform/analysis/analysis_impl.hpp"
#include "platform/ast/syntax_tree.hpp"

namespace plexus::bench {

/// The analysis of a synthetic tree. Its symbol table is empty, since no
/// benchmark rule resolves names; its use-def records are those of
/// `collectUseDefs`, computed on first use like a real analysis's.
std::unique_ptr<ca::clients::AnalysisImpl> makeBenchAnalysis(std::shared_ptr<ca::astapi::SyntaxTree const> tree);

}  // namespace plexus::bench
