#include "platform/ast/numeric_value.hpp"

#include <ostream>
#include <type_traits>

namespace lf::astapi {

namespace {
template <class T>
char const* integerTypeName() {
  if constexpr (std::is_same_v<T, std::uint8_t>) return "uint8";
  if constexpr (std::is_same_v<T, std::uint16_t>) return "uint16";
  if constexpr (std::is_same_v<T, std::uint32_t>) return "uint32";
  if constexpr (std::is_same_v<T, std::uint64_t>) return "uint64";
  if constexpr (std::is_same_v<T, std::int8_t>) return "int8";
  if constexpr (std::is_same_v<T, std::int16_t>) return "int16";
  if constexpr (std::is_same_v<T, std::int32_t>) return "int32";
  return "int64";
}
}  // namespace

std::ostream& operator<<(std::ostream& out, NumericValue const& value) {
  std::visit(
      [&out](auto v) {
        using T = decltype(v);
        if constexpr (std::is_same_v<T, double>) {
          out << v;
        } else if constexpr (std::is_same_v<T, ImaginaryDouble>) {
          out << v.value << 'i';
        } else {
          // Widen so that 8-bit values print as numbers, not characters.
          using Wide = std::conditional_t<std::is_signed_v<T>, long long, unsigned long long>;
          out << integerTypeName<T>() << '(' << static_cast<Wide>(v) << ')';
        }
      },
      value);
  return out;
}

}  // namespace lf::astapi
