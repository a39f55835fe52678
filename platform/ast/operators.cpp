#include "platform/ast/operators.hpp"

#include <ostream>

namespace lf::astapi {

std::string_view spelling(BinaryOperator op) noexcept {
  switch (op) {
    case BinaryOperator::Plus: return "+";
    case BinaryOperator::Minus: return "-";
    case BinaryOperator::MatrixTimes: return "*";
    case BinaryOperator::MatrixRightDivide: return "/";
    case BinaryOperator::MatrixLeftDivide: return "\\";
    case BinaryOperator::MatrixPower: return "^";
    case BinaryOperator::ElementTimes: return ".*";
    case BinaryOperator::ElementRightDivide: return "./";
    case BinaryOperator::ElementLeftDivide: return ".\\";
    case BinaryOperator::ElementPower: return ".^";
    case BinaryOperator::Equal: return "==";
    case BinaryOperator::NotEqual: return "~=";
    case BinaryOperator::Less: return "<";
    case BinaryOperator::LessEqual: return "<=";
    case BinaryOperator::Greater: return ">";
    case BinaryOperator::GreaterEqual: return ">=";
    case BinaryOperator::ElementAnd: return "&";
    case BinaryOperator::ElementOr: return "|";
    case BinaryOperator::ShortCircuitAnd: return "&&";
    case BinaryOperator::ShortCircuitOr: return "||";
    case BinaryOperator::SuperclassCall: return "@";
  }
  return "?";
}

std::string_view spelling(UnaryOperator op) noexcept {
  switch (op) {
    case UnaryOperator::Plus: return "+";
    case UnaryOperator::Minus: return "-";
    case UnaryOperator::Not: return "~";
    case UnaryOperator::Transpose: return ".'";
    case UnaryOperator::ComplexTranspose: return "'";
    case UnaryOperator::FunctionHandle: return "@";
    case UnaryOperator::Metaclass: return "?";
  }
  return "?";
}

std::ostream& operator<<(std::ostream& out, BinaryOperator op) { return out << spelling(op); }
std::ostream& operator<<(std::ostream& out, UnaryOperator op) { return out << spelling(op); }

}  // namespace lf::astapi
