// unset-output: outputs of a function that no statement of it sets.

#include <string>

#include "tools/rules/function_signature.hpp"
#include "tools/rules/rule_table.hpp"
#include "tools/rules/variable_occurrences.hpp"

namespace plexus::rules {

namespace {

using namespace ca::rulesystem;

void declare(RuleDeclaration const& rule) {
  auto const outputs = functionsWithBodies(rule.all()) | std::make_unique<SignatureNames<SignatureList::Outputs>>() |
                       isVariable() | !isStringId(u"varargout");
  // A class constructor's output is the object, which exists before the
  // first statement runs.
  auto const objects = outputs | hasToskAnnotation{ca::core::ToskAnnotation::ObjectParameter};
  auto const checked = outputs | !subrule(objects);
  // Each branch runs to its end for an item before the subrule that watches
  // it is tested: the definitions are declared before the test.
  auto const definitions = checked | getOccurrences() | std::make_unique<IsVariableDefinition>();
  checked | !subrule(definitions) | rule.report<Identifier const&>([](Identifier const& name) {
    return "output '" + utf8(ca::astapi::toStdView(name.getText())) + "' of '" + nameOfSignatureOwner(name) +
           "' is never set";
  });
}

}  // namespace

RuleBody const& body::UnsetOutput() {
  static RuleBody const rule{
      .documentation =
          {
              .finds = "Outputs of a function or method that no statement of the function assigns at all: no "
                       "assignment (whole or in part, also in a multiple assignment), loop, `catch`, `global` or "
                       "`persistent` names it, and it is no input too. An assignment in a nested function that "
                       "shares the output counts. Not checked: `varargout`, a class constructor's output (the "
                       "object exists from the start), method declarations without a body, and functions whose "
                       "body holds no statement.",
              .why = "A caller that asks for such an output gets an error at run time, and only on that call: "
                     "the function seems to work until someone uses its result. Usually the output was renamed "
                     "in the body but not in the signature, or the assignment was lost.",
              .example = "    function [total, count] = tally(values)\n"
                         "      total = sum(values);\n"
                         "      n = numel(values);\n"
                         "    end",
              .instead = "Assign the output, or remove it from the signature:\n\n"
                         "    function [total, count] = tally(values)\n"
                         "      total = sum(values);\n"
                         "      count = numel(values);\n"
                         "    end",
              .limits = "An output set on some paths only is not reported: one assignment anywhere is enough. "
                        "Outputs set by code the analyser cannot see are reported although they are set: by "
                        "`eval`, `assignin`, or `load` of a file holding the name. A constructor of an old-style "
                        "class in an `@` folder, which must assign its object, is not checked either. A nested "
                        "function's output "
                        "that has the name of a variable of the function around it is that variable, so an "
                        "assignment in the outer function counts for it.",
          },
      .options = {},
      .declare = &declare,
  };
  return rule;
}

}  // namespace plexus::rules
