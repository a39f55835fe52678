#pragma once

// The functions whose signatures the rules on inputs and outputs check, and
// the names in those signatures.

#include <functional>
#include <set>
#include <string>

#include "platform/ast/enclosing_node.hpp"
#include "rulesystem/rulesystem.hpp"
#include "tools/rules/rule.hpp"

namespace plexus::rules {

/// Every function with a body of its own: functions of any sort and method
/// definitions, one stream. Method declarations have no body and are not in
/// it.
inline ca::rulesystem::Producer<ca::ast::Function const&> functionsWithBodies(ca::rulesystem::AllNodes& all) {
  using namespace ca::rulesystem;
  return combine(std::set{all.function, upcast<Function const&>(all.methodDefinition)});
}

/// Which names of a signature `SignatureNames` gives.
enum class SignatureList { Inputs, Outputs };

/// Gives the names of the inputs (`~` left out) or of the outputs of a
/// function whose body holds at least one statement. A function without code
/// is a placeholder that the rules on signatures leave alone.
template <SignatureList List>
class SignatureNames final
    : public ca::rulesystem::StageOf<SignatureNames<List>,
                                     ca::rulesystem::SelectMany<ca::ast::Function const&, ca::ast::Identifier const&>> {
 public:
  std::u16string description() const override {
    return List == SignatureList::Inputs ? u"SignatureNames Inputs" : u"SignatureNames Outputs";
  }
  void select(ca::ast::Function const& function, ca::Analysis const&,
              std::function<void(ca::ast::Identifier const&)> const& yield) const override {
    if (function.getBody().empty()) return;
    if constexpr (List == SignatureList::Inputs) {
      for (auto const* input : function.getInputs()) {
        if (input->getIdentifier() != nullptr) yield(*input->getIdentifier());
      }
    } else {
      for (auto const* output : function.getOutputs()) yield(*output);
    }
  }
};

/// The name of the function whose signature holds `name`, for messages;
/// empty when the parser could not read it.
inline std::string nameOfSignatureOwner(ca::ast::Identifier const& name) {
  ca::ast::Function const* const function = lf::astapi::getEnclosing<ca::ast::Function>(name);
  if (function == nullptr || function->getName() == nullptr) return {};
  return utf8(ca::astapi::toStdView(function->getName()->getText()));
}

}  // namespace plexus::rules
