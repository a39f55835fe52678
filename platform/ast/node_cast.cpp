#include "platform/ast/node_cast.hpp"

#include <cstdio>
#include <cstdlib>

namespace lf::astapi::detail {

void castFailed(std::string const& target, NodeKind kind, SourceRange const& range) noexcept {
  std::string_view const name = nodeKindName(kind);
  std::string const what = name.empty() ? "of no kind" : "of kind " + std::string(name);
  std::fprintf(stderr, "plexus: cast<%s> of a node %s (%u) at line %u, column %u\n", target.c_str(), what.c_str(),
               static_cast<unsigned>(kind), static_cast<unsigned>(range.first.line),
               static_cast<unsigned>(range.first.column));
  std::abort();
}

}  // namespace lf::astapi::detail
