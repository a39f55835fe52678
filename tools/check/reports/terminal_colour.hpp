#pragma once

namespace plexus::check::reports {

/// Whether a report written to the file descriptor `fd` should be coloured:
/// only when it is a terminal and the user has not asked for no colour by
/// setting NO_COLOR to a non-empty value (whatever the value, as
/// no-color.org asks). A report written to a file never is; the caller says
/// so by not asking.
bool wantsColour(int fd);

}  // namespace plexus::check::reports
