#pragma once

#include <cstdint>
#include <string_view>

#include "platform/ast/numeric_value.hpp"

namespace frontend {

// Number literals, from where they end to what they are worth: the lexer
// asks where one ends, the parser what it is worth.
//
//   12  1.5  .5  1e-3  1.5E+3  2d3  1.  3i  2.5j    doubles and imaginary doubles
//   0x1F  0b101  0xFFs8  0x7u64                     integers, with an optional type suffix

/// What is wrong with the spelling of a number literal.
enum class NumberFault : std::uint8_t {
  None,
  MissingDigits,  // `0x` or `0b` with no digit after it
  BadSuffix,      // a type suffix other than u8 u16 u32 u64 s8 s16 s32 s64
};

/// Where a number literal ends, one past its last byte, and what is wrong
/// with it. A dot that starts an element-wise operator (`1./a`, `1.^2`) or a
/// continuation (`1...`) is not part of the number.
struct NumberExtent {
  std::uint32_t end = 0;
  NumberFault fault = NumberFault::None;
};

/// Reads the number literal that starts at `start` of `source`, at a digit
/// or at a dot before a digit.
NumberExtent scanNumber(std::string_view source, std::uint32_t start);

/// The value of a number literal, or, for an integer too large for its type,
/// how many bits it does not fit in.
struct NumberValue {
  lf::astapi::NumericValue value = 0.0;
  int overflowBits = 0;  // nonzero when the literal does not fit
};

/// The value of a literal that `scanNumber` read without a fault. A double
/// too large for its type is infinite; an integer without a type suffix takes
/// the smallest unsigned type that holds it, and a signed one the two's
/// complement of its bits.
NumberValue evaluateNumber(std::string_view spelled);

}  // namespace frontend
