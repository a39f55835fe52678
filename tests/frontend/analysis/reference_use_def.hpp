#pragma once

#include <memory>

#include "frontend/analysis/name_resolution.hpp"
#include "platform/controlflow/control_flow.hpp"
#include "platform/usedef/usedef_analysis.hpp"

namespace plexus::testing {

/// The records that `frontend::buildUseDefs` must give, made the slow and
/// obvious way: a set of reaching definitions per statement, as one bit per
/// definition of the graph, iterated until nothing changes. Time and memory
/// grow with the square of a body's size; for tests only.
std::shared_ptr<ca::usedef::UseDefAnalysis> buildReferenceUseDefs(ca::ast::Program const& program,
                                                                  frontend::FileSymbols const& symbols,
                                                                  ca::controlflow::ControlFlowAnalysis const& flow);

}  // namespace plexus::testing
