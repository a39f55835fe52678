// unused-input: inputs of a function that its code never reads.

#include <string>

#include "tools/rules/function_signature.hpp"
#include "tools/rules/rule_table.hpp"
#include "tools/rules/variable_occurrences.hpp"

namespace plexus::rules {

namespace {

using namespace ca::rulesystem;

void declare(RuleDeclaration const& rule) {
  auto const inputs =
      functionsWithBodies(rule.all()) | std::make_unique<SignatureNames<SignatureList::Inputs>>() | isVariable();
  // The object of a method keeps its place whether the method reads it or
  // not; it is left alone.
  auto const objects = inputs | hasToskAnnotation{ca::core::ToskAnnotation::ObjectParameter};
  auto const checked = inputs | !subrule(objects);
  // Each branch runs to its end for an item before the subrule that watches
  // it is tested: the reads are declared before the test.
  auto const reads = checked | getOccurrences() | std::make_unique<IsVariableRead>();
  checked | !subrule(reads) | rule.report<Identifier const&>([](Identifier const& name) {
    return "input '" + utf8(ca::astapi::toStdView(name.getText())) + "' of '" + nameOfSignatureOwner(name) +
           "' is never used";
  });
}

}  // namespace

RuleBody const& body::UnusedInput() {
  static RuleBody const rule{
      .documentation =
          {
              .finds = "Inputs of a function or method whose value the function never reads: every other "
                       "occurrence of the name assigns the whole variable, or there is none. A read in a nested "
                       "function or an anonymous function inside the function counts, and so does changing part "
                       "of the input (`x(2) = 0`, `s.f = 1`), which keeps the rest. `varargin` is checked like "
                       "any input. Not checked: inputs written `~`, the object (first input) of a method, "
                       "method declarations without a body, functions whose body holds no statement, and "
                       "anonymous functions, whose inputs callers often fix.",
              .why = "An input that is never read misleads the caller, who computes and passes a value that "
                     "changes nothing; often it is a sign of a typo or of code that was removed. When the "
                     "signature must keep the place (a callback, an interface), `~` says so.",
              .example = "    function area = rectangle_area(width, height, units)\n"
                         "      area = width * height;\n"
                         "    end",
              .instead = "Remove the input, or mark the place with `~` when callers must pass it:\n\n"
                         "    function area = rectangle_area(width, height, ~)\n"
                         "      area = width * height;\n"
                         "    end",
              .limits = "Reads that the analyser cannot see make it report a used input: names in text "
                        "(`eval`, `exist('x', 'var')`, `inputname`), `nargin` checks with no read of the input "
                        "itself count as no use. An entry in an arguments block validates the input but is no "
                        "read. A nested function's input that has the name of a variable of the function around "
                        "it is that variable, so the outer function's reads count for it.",
          },
      .options = {},
      .declare = &declare,
  };
  return rule;
}

}  // namespace plexus::rules
