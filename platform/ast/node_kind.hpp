#pragma once

#include <cstdint>
#include <iosfwd>
#include <set>
#include <string_view>

namespace lf::astapi {

/// The one-byte number of a node's class. Kinds run from 1 to `maxNodeKind` in
/// the order of `node_kinds.def`; 0 is no kind and never occurs in a
/// well-formed tree.
enum class NodeKind : std::uint8_t {
#define PLEXUS_NODE_KIND(number, name, bits) name = number,
#include "platform/ast/node_kinds.def"
#undef PLEXUS_NODE_KIND
};

namespace detail {
// The number of lines of the kind table, and whether they number the kinds
// 1, 2, 3, ... without a gap: the tables below are indexed by kind number,
// and `maxNodeKind` must be the last of them.
constexpr int countNodeKinds() noexcept {
  int count = 0;
#define PLEXUS_NODE_KIND(number, name, bits) ++count;
#include "platform/ast/node_kinds.def"
#undef PLEXUS_NODE_KIND
  return count;
}
constexpr bool nodeKindsAreNumberedInOrder() noexcept {
  int expected = 1;
  bool inOrder = true;
#define PLEXUS_NODE_KIND(number, name, bits) inOrder = inOrder && (number) == expected++;
#include "platform/ast/node_kinds.def"
#undef PLEXUS_NODE_KIND
  return inOrder;
}
}  // namespace detail

static_assert(detail::nodeKindsAreNumberedInOrder(), "node_kinds.def must number its kinds 1, 2, 3, ... in order");
static_assert(detail::countNodeKinds() < 256, "a kind number must fit the byte of NodeKind, with 0 for no kind");

/// The highest kind number that exists: the number of lines of `node_kinds.def`.
inline constexpr std::uint8_t maxNodeKind = static_cast<std::uint8_t>(detail::countNodeKinds());

/// Class bits of a kind. A node is of an abstract class when all the bits of
/// that class are set in its kind's flags.
namespace kindflags {
inline constexpr std::uint8_t node = 0x01;
inline constexpr std::uint8_t statement = 0x02;
inline constexpr std::uint8_t expression = 0x04;
inline constexpr std::uint8_t method = 0x10;
}  // namespace kindflags

namespace detail {
struct KindTable {
  std::uint8_t flags[256];
  constexpr KindTable() : flags{} {
#define PLEXUS_NODE_KIND(number, name, bits) flags[number] = bits;
#include "platform/ast/node_kinds.def"
#undef PLEXUS_NODE_KIND
  }
};
inline constexpr KindTable kindTable{};
}  // namespace detail

/// Class bits of `kind`; 0 for a number that is no kind.
constexpr std::uint8_t getKindFlags(NodeKind kind) noexcept {
  return detail::kindTable.flags[static_cast<std::uint8_t>(kind)];
}

/// Whether `kind` is one of the kinds of `node_kinds.def`, 1 to `maxNodeKind`.
constexpr bool isValidNodeKind(NodeKind kind) noexcept { return getKindFlags(kind) != 0; }

/// The class name of a kind ("Identifier"), or an empty view for a number that
/// is no kind.
std::string_view nodeKindName(NodeKind kind) noexcept;

/// The ordered set of every kind that exists, 1 to `maxNodeKind`.
std::set<NodeKind> const& getAllNodeKinds();

/// Writes the class name of the kind, or "NodeKind(n)" for a number that is no
/// kind.
std::ostream& operator<<(std::ostream& out, NodeKind kind);

}  // namespace lf::astapi
