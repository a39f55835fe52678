#pragma once

#include <string>

#include "tools/check/check_run.hpp"

namespace plexus::check::reports {

/// The line that ends a run on standard error: how many findings, in how
/// many files (distinct paths among the findings), and how many files were
/// checked, e.g. `3 findings in 2 files (12 files checked)`.
std::string reportSummary(CheckReport const& report);

}  // namespace plexus::check::reports
