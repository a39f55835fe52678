#include "platform/ast/restricted_externals.hpp"

namespace lf::astapi {

std::unordered_set<std::u16string> const& getRestrictedExternals() {
  static std::unordered_set<std::u16string> const names = {u"assignin",  u"eval", u"evalc", u"evalin",  u"feval",
                                                           u"inputname", u"load", u"run",   u"str2func"};
  return names;
}

}  // namespace lf::astapi
