#pragma once

#include <string>
#include <vector>

namespace plexus::bench {

// The names that synthetic code is written with. The generator draws from
// them and the benchmark rules look for them, so both must see the same lists.

/// About 200 names of called functions, the most frequently called first:
/// short library-style names, then composed names of project functions.
std::vector<std::u16string> const& functionNames();

/// Names of local variables; a function's inputs come from here too.
std::vector<std::u16string> const& variableNames();

/// Names of loop variables.
std::vector<std::u16string> const& loopVariableNames();

/// Names of the fields of structs, for `a.b.c` chains.
std::vector<std::u16string> const& fieldNames();

}  // namespace plexus::bench
