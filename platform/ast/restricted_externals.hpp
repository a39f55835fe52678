#pragma once

#include <string>
#include <unordered_set>

namespace lf::astapi {

/// External functions whose use rules may restrict, because they run text as
/// code or reach into workspaces other than their caller's, so that analysis
/// of the caller cannot see what they do:
///
/// - assignin, evalin: read or write variables of another workspace;
/// - eval, evalc: run text as code;
/// - feval, str2func, run: call a function or script named by text;
/// - inputname: reads the caller's variable names;
/// - load: creates variables that no assignment shows, when given no output.
std::unordered_set<std::u16string> const& getRestrictedExternals();

}  // namespace lf::astapi
