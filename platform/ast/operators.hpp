#pragma once

#include <cstdint>
#include <iosfwd>
#include <string_view>

namespace lf::astapi {

/// Operators of `BinaryOperation`. The stream output is the operator's
/// spelling in source ("+", ".*", "&&"); `SuperclassCall` is the `@` of
/// `name@Super`.
enum class BinaryOperator : std::uint32_t {
  Plus,                // +
  Minus,               // -
  MatrixTimes,         // *
  MatrixRightDivide,   // /
  MatrixLeftDivide,    // backslash
  MatrixPower,         // ^
  ElementTimes,        // .*
  ElementRightDivide,  // ./
  ElementLeftDivide,   // .backslash
  ElementPower,        // .^
  Equal,               // ==
  NotEqual,            // ~=
  Less,                // <
  LessEqual,           // <=
  Greater,             // >
  GreaterEqual,        // >=
  ElementAnd,          // &
  ElementOr,           // |
  ShortCircuitAnd,     // &&
  ShortCircuitOr,      // ||
  SuperclassCall,      // @
};

/// Operators of `UnaryOperation`: the prefix operators, the two postfix
/// transposes, `@name` (a function handle) and `?Name` (a metaclass query).
enum class UnaryOperator : std::uint32_t {
  Plus,              // +a
  Minus,             // -a
  Not,               // ~a
  Transpose,         // a.'
  ComplexTranspose,  // a'
  FunctionHandle,    // @name
  Metaclass,         // ?Name
};

std::string_view spelling(BinaryOperator op) noexcept;
std::string_view spelling(UnaryOperator op) noexcept;

std::ostream& operator<<(std::ostream& out, BinaryOperator op);
std::ostream& operator<<(std::ostream& out, UnaryOperator op);

}  // namespace lf::astapi
