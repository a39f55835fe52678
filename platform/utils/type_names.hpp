#pragma once

#include <string>
#include <typeinfo>

#include <boost/core/demangle.hpp>

#include "platform/i18n/i18n.hpp"

namespace ca::utils {

/// Shortens the readable full name of a type to the name shown in stage
/// descriptions: namespace qualifiers are dropped at every level, and so are
/// template argument lists that hold only the tree flavour tag.
///
///     assert(prettifyTypeName(u"lf::astapi::Identifier<ca::astapi::CA>") == u"Identifier");
///     assert(prettifyTypeName(u"std::vector<ca::Symbol const*>") == u"vector<Symbol const*>");
std::u16string prettifyTypeName(std::u16string const& fullName);

/// The short name of T, computed anew on each call: demangled, converted to
/// 16-bit text and prettified. References and top-level const are not part of
/// a type's run-time name.
template <class T>
std::u16string prettyTypeName() {
  return prettifyTypeName(fl::i18n::to_ustring(boost::core::demangle(typeid(T).name())));
}

}  // namespace ca::utils
