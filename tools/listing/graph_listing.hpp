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
///     AllNodes all;
///     auto rightSides = all.assignment | std::make_unique<RightSide>();
///     rightSides | isa<NumberLiteral>() | std::make_shared<Report<NumberLiteral>>(u"number");
///     rightSides | isa<CharVectorLiteral>() | std::make_shared<Report<CharVectorLiteral>>(u"text");
///     assert(listGraph(all) ==
///            "#1 Root Assignment\n"
///            "  #2 Transform RightSide\n"
///            "    #3 Switch NodeKind\n"
///            "      #4 Case CharVectorLiteral\n"
///            "        #5 Transform Downcast CharVectorLiteral\n"
///            "          #6 Report text\n"
///            "      #7 Case NumberLiteral\n"
///            "        #8 Transform Downcast NumberLiteral\n"
///            "          #9 Report number\n"
///            "(63 roots without rules not shown)\n");
std::string listGraph(ca::rulesystem::AllNodes const& all, ListingOptions const& options = {});

/// The same graph in the DOT language: one node a vertex, solid edges to
/// consumers, dashed edges to extra children.
std::string graphToDot(ca::rulesystem::AllNodes const& all, ListingOptions const& options = {});

}  // namespace plexus::listing
