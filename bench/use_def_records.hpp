#pragma once

#include <memory>
#include <vector>

#include "platform/ast/ast.hpp"
#include "platform/usedef/usedef.hpp"

namespace plexus::bench {

/// The use-def records of a tree as a simple local analysis finds them, in
/// source order, function by function: an InputDef per named input, a
/// FullAssignmentDef per assignment to a name, a PartialAssignmentUseDef per
/// assignment to part of a named variable (`a(i) = ...`, `s.f = ...`), a
/// LoopVariableDef per for loop, and a VariableUse per read of a name defined
/// earlier in the function. Each use is linked to the latest definition of
/// its name in source order, ignoring control flow.
///
/// Without name resolution a name is a variable only once it was defined, so
/// calls such as `f(x)` to an undefined `f` make no records; that is close
/// enough to what real code yields for the records to load the engine's
/// use-def pass realistically.
std::vector<std::unique_ptr<ca::usedef::UseDefBase>> collectUseDefs(ca::ast::Program const& program);

}  // namespace plexus::bench
