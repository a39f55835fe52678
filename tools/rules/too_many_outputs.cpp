// too-many-outputs: a function or method that declares more outputs than the
// configured limit.

#include <cstdint>

#include "tools/rules/long_signature.hpp"
#include "tools/rules/rule_table.hpp"

namespace plexus::rules {

namespace {

using namespace ca::rulesystem;

std::size_t ordinaryOutputs(Function const& function) {
  return ordinarySignatureItems(function.getOutputs(), u"varargout", [](Identifier const& output) { return &output; });
}

void declare(RuleDeclaration const& rule) {
  // The vocabulary's counts treat `varargout` as open-ended: "more than the
  // limit" holds only when the ordinary outputs alone exceed it.
  auto const limit = static_cast<std::uint64_t>(rule.option("max-outputs"));
  auto const shown = static_cast<std::int64_t>(limit);
  reportLongSignature<Function>(rule, rule.all().function | (functionOutputs{} > limit), "returns", "outputs",
                                &ordinaryOutputs, shown);
  reportLongSignature<Method>(rule, rule.all().method | (methodOutputs{} > limit), "returns", "outputs",
                              &ordinaryOutputs, shown);
}

}  // namespace

RuleBody const& body::TooManyOutputs() {
  static RuleBody const rule{
      .documentation =
          {
              .finds = "A function, local or nested function, or method (defined or only declared in a methods "
                       "block) that declares more outputs than `max-outputs`; `varargout` does not count.",
              .why = "Outputs are taken by position, so every caller must list them in the right order, with `~` "
                     "for those it does not want: `[~, ~, ~, count] = summarize(data)`. A caller that takes "
                     "the wrong one gets no error, only a wrong value. Many outputs also tend to mean the function "
                     "computes several unrelated things.",
              .example = "    function [total, mean, minimum, maximum, spread, count] = summarize(values)\n"
                         "      total = sum(values);\n"
                         "      count = numel(values);\n"
                         "      mean = total / count;\n"
                         "      minimum = min(values);\n"
                         "      maximum = max(values);\n"
                         "      spread = maximum - minimum;\n"
                         "    end",
              .instead = "Return one structure (or object) whose fields name the results:\n\n"
                         "    function stats = summarize(values)\n"
                         "      stats.total = sum(values);\n"
                         "      stats.count = numel(values);\n"
                         "      stats.mean = stats.total / stats.count;\n"
                         "      stats.minimum = min(values);\n"
                         "      stats.maximum = max(values);\n"
                         "      stats.spread = stats.maximum - stats.minimum;\n"
                         "    end",
              .limits = "`varargout` is not counted, since it stands for outputs that a caller may or may not "
                        "ask for: a function with `max-outputs` ordinary outputs and `varargout` is not "
                        "reported, although it may return many more. A method declared in its class file and "
                        "defined in a file of the class folder is reported in both files.",
          },
      .options = {{.key = "max-outputs",
                   .description = "The most outputs a function may declare, `varargout` not counted.",
                   .defaultValue = 5,
                   .minimum = 0,
                   .maximum = 1000}},
      .declare = &declare,
  };
  return rule;
}

}  // namespace plexus::rules
