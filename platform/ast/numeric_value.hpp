#pragma once

#include <cstdint>
#include <iosfwd>
#include <variant>

namespace lf::astapi {

/// The imaginary part of a literal such as `3i`.
struct ImaginaryDouble {
  double value = 0.0;
  friend bool operator==(ImaginaryDouble, ImaginaryDouble) = default;
  friend auto operator<=>(ImaginaryDouble, ImaginaryDouble) = default;
};

/// The value of a numeric literal: a tagged union of ten alternatives, in this
/// order: double, imaginary double, unsigned 8/16/32/64, signed 8/16/32/64.
/// Trivially copyable, so that literal nodes stay trivially destructible.
using NumericValue = std::variant<double, ImaginaryDouble, std::uint8_t, std::uint16_t, std::uint32_t, std::uint64_t,
                                  std::int8_t, std::int16_t, std::int32_t, std::int64_t>;

/// Writes the value as the analysed language would show it: `3`, `2.5`, `3i`,
/// `uint8(7)`, `int16(-2)`.
std::ostream& operator<<(std::ostream& out, NumericValue const& value);

}  // namespace lf::astapi
