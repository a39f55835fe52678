#pragma once

// What too-many-inputs and too-many-outputs share: counting a signature's
// ordinary items and reporting a function or method at its name.

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "tools/rules/rule.hpp"

namespace plexus::rules {

/// The items of a signature list that a caller must place by position: all
/// but the open-ended `varargin` or `varargout` (`openEnded`).
template <class List, class NameOf>
std::size_t ordinarySignatureItems(List const& items, std::u16string_view openEnded, NameOf nameOf) {
  std::size_t count = 0;
  for (auto const* item : items) {
    ca::ast::Identifier const* name = nameOf(*item);
    if (name == nullptr || ca::astapi::toStdView(name->getText()) != openEnded) ++count;
  }
  return count;
}

/// Reports each function or method (`F`) of `functions` at its name:
/// "'f' takes 9 inputs, more than the limit of 7", with `count` of the
/// function, `verb` ("takes") and `noun` ("inputs").
template <class F, class Count>
void reportLongSignature(RuleDeclaration const& rule, ca::rulesystem::Producer<F const&> functions, std::string verb,
                         std::string noun, Count count, std::int64_t limit) {
  functions | rule.report<F const&>(
                  [verb, noun, count, limit](F const& function) {
                    std::string const name =
                        function.getName() != nullptr ? utf8(ca::astapi::toStdView(function.getName()->getText())) : "";
                    return "'" + name + "' " + verb + " " + std::to_string(count(function)) + " " + noun +
                           ", more than the limit of " + std::to_string(limit);
                  },
                  [](F const& function) {
                    return function.getName() != nullptr ? function.getName()->getSourceRange()
                                                         : function.getSourceRange();
                  });
}

}  // namespace plexus::rules
