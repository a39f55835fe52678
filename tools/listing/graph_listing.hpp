#pragma once

// Listings of a finished rule graph, for people: an indented text and a
// Graphviz rendering. Both start at the tree roots and the "Definition" and
// "Use" roots, follow each vertex's consumers and then its extra children
// (the cases of a switch), and show every vertex once.

#include <string>

#include "rulesystem/execution/all_nodes.hpp"

namespace plexus::listing {

struct ListingOptions {
  /// When given, each vertex shows how many items it consumed and produced.
  ca::rulesystem::Profiler const* profiler = nullptr;
  /// Also list roots that no rule starts from.
  bool includeIdleRoots = false;
};

/// An indented listing, one vertex a line: its number, kind and details, the
/// number of its parents when it has more than one, and its counts. A vertex
/// reached again is referred to by its number instead of listed twice.
///
///     #1 Root Field
///       #2 Switch FieldName
///         #3 Case alpha
///           #5 Combine  (2 parents)
///         #4 Case beta
///           -> #5
std::string listGraph(ca::rulesystem::AllNodes const& all, ListingOptions const& options = {});

/// The same graph in the DOT language: one node a vertex, solid edges to
/// consumers, dashed edges to extra children.
std::string graphToDot(ca::rulesystem::AllNodes const& all, ListingOptions const& options = {});

}  // namespace plexus::listing
