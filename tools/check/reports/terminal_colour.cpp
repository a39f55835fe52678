#include "tools/check/reports/terminal_colour.hpp"

#include <unistd.h>

#include <cstdlib>

namespace plexus::check::reports {

bool wantsColour(int fd) {
  char const* noColour = std::getenv("NO_COLOR");
  if (noColour != nullptr && *noColour != '\0') return false;
  return isatty(fd) == 1;
}

}  // namespace plexus::check::reports
