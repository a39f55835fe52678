#include "platform/ast/node_kind.hpp"

#include <array>
#include <ostream>

namespace lf::astapi {

namespace {
constexpr std::array<std::string_view, 256> makeNames() {
  std::array<std::string_view, 256> names{};
#define PLEXUS_NODE_KIND(number, name, bits) names[number] = #name;
#include "platform/ast/node_kinds.def"
#undef PLEXUS_NODE_KIND
  return names;
}
constexpr auto kindNames = makeNames();
}  // namespace

std::string_view nodeKindName(NodeKind kind) noexcept { return kindNames[static_cast<std::uint8_t>(kind)]; }

std::set<NodeKind> const& getAllNodeKinds() {
  static std::set<NodeKind> const all = [] {
    std::set<NodeKind> kinds;
#define PLEXUS_NODE_KIND(number, name, bits) kinds.insert(NodeKind::name);
#include "platform/ast/node_kinds.def"
#undef PLEXUS_NODE_KIND
    return kinds;
  }();
  return all;
}

std::ostream& operator<<(std::ostream& out, NodeKind kind) {
  std::string_view name = nodeKindName(kind);
  if (name.empty()) {
    return out << "NodeKind(" << static_cast<unsigned>(kind) << ')';
  }
  return out << name;
}

}  // namespace lf::astapi
