#include "rulesystem/rulesystem.hpp"
#include "tests/rulesystem/reference/reference_pipelines.hpp"

namespace plexus::testing {

using namespace ca::rulesystem;
// The pipe with a member pointer has no argument from ca::rulesystem for
// argument-dependent lookup to go by when the handle is the naive one, and
// the naive pipes of this namespace hide the using-directive above.
using ca::rulesystem::operator|;

std::vector<ReferencePipeline> operatorAndFieldPipelines() {
  return {
      // Operators: single keys and a set on one switch, and a set of one.
      PLEXUS_PIPELINE(all.binaryOperation | isBinaryOperation(lf::astapi::BinaryOperator::Plus)),
      PLEXUS_PIPELINE(all.binaryOperation | isBinaryOperation(lf::astapi::BinaryOperator::Minus)),
      PLEXUS_PIPELINE(all.binaryOperation | isBinaryOperation(std::set<lf::astapi::BinaryOperator>{
                                                lf::astapi::BinaryOperator::Plus, lf::astapi::BinaryOperator::Minus})),
      PLEXUS_PIPELINE(all.binaryOperation | isBinaryOperation(std::set<lf::astapi::BinaryOperator>{
                                                lf::astapi::BinaryOperator::ShortCircuitAnd})),
      PLEXUS_PIPELINE(all.binaryOperation | isSuperclassConstructorCall()),
      PLEXUS_PIPELINE(all.binaryOperation | isBinaryOperation(lf::astapi::BinaryOperator::SuperclassCall) |
                      isSuperclassConstructorCall()),
      PLEXUS_PIPELINE(all.unaryOperation | isUnaryOperation(lf::astapi::UnaryOperator::FunctionHandle)),
      PLEXUS_PIPELINE(all.unaryOperation | isUnaryOperation(std::set<lf::astapi::UnaryOperator>{
                                               lf::astapi::UnaryOperator::Not, lf::astapi::UnaryOperator::Minus})),
      PLEXUS_PIPELINE(all.unaryOperation | isUnaryOperation(lf::astapi::UnaryOperator::FunctionHandle) |
                      getUnaryOperand()),
      PLEXUS_PIPELINE(all.unaryOperation | isUnaryOperation(lf::astapi::UnaryOperator::Metaclass) | getUnaryOperand()),
      // Field names: exact keys next to the same names case-insensitively.
      PLEXUS_PIPELINE(all.field | isFieldStringId(u"name")),
      PLEXUS_PIPELINE(all.field | isFieldStringId(u"Name")),
      PLEXUS_PIPELINE(all.field | isFieldTextCaseInsensitive(u"name")),
      PLEXUS_PIPELINE(all.field | isFieldTextCaseInsensitive(u"NAME")),
      PLEXUS_PIPELINE(all.field | isFieldLongerThan(5)),
      PLEXUS_PIPELINE(all.field | isFieldLongerThan(12)),
      // The field of a dot operation, then asked about.
      PLEXUS_PIPELINE(upcast<Node const&>(all.field) | getParent<DotOperation>() | &DotOperation::getField),
      PLEXUS_PIPELINE(upcast<Node const&>(all.field) | getParent<DotOperation>() | isDirectChildOf<DotOperation>() |
                      &DotOperation::getField),
      PLEXUS_PIPELINE(upcast<Node const&>(all.field) | getParent<DotOperation>() | isDirectChildOf<DotOperation>() |
                      &DotOperation::getField | isFieldStringId(u"inner")),
      PLEXUS_PIPELINE(upcast<Node const&>(all.field) | getParent<DotOperation>() | &DotOperation::getField |
                      isFieldLongerThan(5)),
  };
}

}  // namespace plexus::testing
