#pragma once

#include <cstdint>
#include <iosfwd>

namespace ca::core {

/// What the class-object analysis knows of an identifier beyond its symbol.
enum class ToskAnnotation : std::int32_t {
  /// The identifier names the object of a method of a class (in a class file
  /// or an `@` folder): the first input of an ordinary method, or the output
  /// of a constructor; every occurrence of that variable bears it.
  ObjectParameter = 0,
};

/// Writes the enumerator's name: "ObjectParameter".
std::ostream& operator<<(std::ostream& out, ToskAnnotation annotation);

}  // namespace ca::core
