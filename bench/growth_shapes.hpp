#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace plexus::bench {

/// The shapes of one large source file whose analysis must grow linearly with
/// its size: the places where a cost per statement that depends on the
/// number of statements around it would show.
enum class GrowthShape {
  Ordinary,    // a function file of ordinary functions, as the corpus writes them
  ScriptBody,  // one script body of assignments, uses and command statements
  ElseifChain, // one `if` with an `elseif` per value
  Switch,      // one `switch` with a `case` per value
  ManyTries,   // one function body of `try ... catch err ... end` blocks
  OneLine,     // `a1=1;a2=a1+1;...` on a single line of a script
};

inline constexpr GrowthShape kGrowthShapes[] = {GrowthShape::Ordinary,    GrowthShape::ScriptBody,
                                                GrowthShape::ElseifChain, GrowthShape::Switch,
                                                GrowthShape::ManyTries,   GrowthShape::OneLine};

/// A short name for benchmark names: "ordinary", "script_body" and so on.
std::string_view growthShapeName(GrowthShape shape);

/// Source text of the shape, at least `minimumBytes` long and valid, with a
/// `.m` name that makes it the right kind of file.
struct GrowthFile {
  std::string path;
  std::string source;
};
GrowthFile generateGrowthFile(GrowthShape shape, std::size_t minimumBytes);

}  // namespace plexus::bench
