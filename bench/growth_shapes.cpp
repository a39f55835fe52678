#include "bench/growth_shapes.hpp"

#include <fmt/format.h>

#include "bench/corpus_generator.hpp"

namespace plexus::bench {

namespace {

// Each shape repeats one unit of text, numbered, until the file is big
// enough; `head` and `tail` wrap the units.
template <class Unit>
std::string repeated(std::size_t minimumBytes, std::string_view head, std::string_view tail, Unit&& unit) {
  std::string text(head);
  text.reserve(minimumBytes + 256);
  for (std::size_t i = 1; text.size() + tail.size() < minimumBytes; ++i) unit(text, i);
  text += tail;
  return text;
}

// A long script: each unit defines a fresh variable from two earlier ones,
// runs a command and prints one, so that definitions, uses and statements
// without variables all grow together.
std::string scriptBody(std::size_t minimumBytes) {
  return repeated(minimumBytes, "v0 = 1;\n", "disp(v0)\n", [](std::string& text, std::size_t i) {
    fmt::format_to(std::back_inserter(text), "v{} = v{} + v{};\nformat long\ndisp(v{})\n", i, i - 1, i / 2, i);
  });
}

std::string elseifChain(std::size_t minimumBytes) {
  return repeated(minimumBytes, "function r = chain(x)\nr = 0;\nif x == 0\n    r = 1;\n",
                  "else\n    r = -r;\nend\ndisp(r)\nend\n", [](std::string& text, std::size_t i) {
                    fmt::format_to(std::back_inserter(text), "elseif x == {}\n    t = r + {};\n    r = t * x;\n", i, i);
                  });
}

std::string switchCases(std::size_t minimumBytes) {
  return repeated(minimumBytes, "function r = choose(x)\nr = 0;\nswitch x\n",
                  "    otherwise\n        r = -r;\nend\ndisp(r)\nend\n", [](std::string& text, std::size_t i) {
                    fmt::format_to(std::back_inserter(text), "    case {}\n        t = r + {};\n        r = t * x;\n", i,
                                   i);
                  });
}

std::string manyTries(std::size_t minimumBytes) {
  return repeated(minimumBytes, "function r = attempts(x)\nr = x;\n", "disp(r)\nend\n",
                  [](std::string& text, std::size_t i) {
                    fmt::format_to(std::back_inserter(text),
                                   "try\n    r = step{}(r);\ncatch err\n    r = recover(err, r, {});\nend\n", i % 97, i);
                  });
}

std::string oneLine(std::size_t minimumBytes) {
  return repeated(minimumBytes, "a0=1;", "disp(a0)\n", [](std::string& text, std::size_t i) {
    fmt::format_to(std::back_inserter(text), "a{}=a{}+{};", i, i - 1, i % 10);
  });
}

}  // namespace

std::string_view growthShapeName(GrowthShape shape) {
  switch (shape) {
    case GrowthShape::Ordinary: return "ordinary";
    case GrowthShape::ScriptBody: return "script_body";
    case GrowthShape::ElseifChain: return "elseif_chain";
    case GrowthShape::Switch: return "switch";
    case GrowthShape::ManyTries: return "many_tries";
    case GrowthShape::OneLine: return "one_line";
  }
  return "unknown";
}

GrowthFile generateGrowthFile(GrowthShape shape, std::size_t minimumBytes) {
  switch (shape) {
    case GrowthShape::Ordinary: return {"mainFile.m", generateFunctionFile(minimumBytes)};
    case GrowthShape::ScriptBody: return {"longScript.m", scriptBody(minimumBytes)};
    case GrowthShape::ElseifChain: return {"chain.m", elseifChain(minimumBytes)};
    case GrowthShape::Switch: return {"choose.m", switchCases(minimumBytes)};
    case GrowthShape::ManyTries: return {"attempts.m", manyTries(minimumBytes)};
    case GrowthShape::OneLine: return {"oneLine.m", oneLine(minimumBytes)};
  }
  return {};
}

}  // namespace plexus::bench
