#include "bench/vocabulary.hpp"

namespace plexus::bench {

std::vector<std::u16string> const& functionNames() {
  static std::vector<std::u16string> const names = [] {
    std::vector<std::u16string> list = {
        u"size",    u"numel", u"zeros",  u"isempty",  u"length",    u"ones",    u"sum",        u"max",
        u"min",     u"abs",   u"error",  u"sprintf",  u"strcmp",    u"find",    u"any",        u"all",
        u"floor",   u"round", u"sqrt",   u"mod",      u"isfield",   u"cell",    u"struct",     u"num2str",
        u"fprintf", u"disp",  u"sort",   u"unique",   u"mean",      u"reshape", u"cat",        u"exp",
        u"log",     u"ceil",  u"strrep", u"strsplit", u"isnumeric", u"ischar",  u"fieldnames", u"str2double",
    };
    // Project functions: every verb with every noun, 8 x 20 names.
    static char16_t const* const verbs[] = {u"get",   u"set",   u"compute", u"load",
                                            u"parse", u"check", u"update",  u"make"};
    static char16_t const* const nouns[] = {u"Data",   u"Value",  u"Size",   u"Index", u"Name",   u"Table", u"Result",
                                            u"Config", u"Matrix", u"Signal", u"Field", u"Count",  u"Path",  u"Options",
                                            u"State",  u"Grid",   u"Model",  u"Range", u"Vector", u"Limit"};
    for (char16_t const* verb : verbs) {
      for (char16_t const* noun : nouns) list.push_back(std::u16string(verb) + noun);
    }
    return list;
  }();
  return names;
}

std::vector<std::u16string> const& variableNames() {
  static std::vector<std::u16string> const names = {
      u"x",     u"y",      u"n",     u"m",      u"k",       u"idx",    u"data",  u"result", u"value",  u"count",
      u"total", u"offset", u"width", u"height", u"signal",  u"matrix", u"names", u"mask",   u"buffer", u"step",
      u"opts",  u"cfg",    u"s",     u"info",   u"options", u"out",    u"tmp",   u"flag",   u"err",    u"rows",
  };
  return names;
}

std::vector<std::u16string> const& loopVariableNames() {
  static std::vector<std::u16string> const names = {u"i", u"j", u"ii", u"jj", u"iter"};
  return names;
}

std::vector<std::u16string> const& fieldNames() {
  static std::vector<std::u16string> const names = {
      u"name",  u"value", u"data",    u"size", u"options", u"mode",  u"tol",   u"maxIter",
      u"items", u"first", u"verbose", u"path", u"limits",  u"scale", u"units", u"label",
  };
  return names;
}

}  // namespace plexus::bench
