// too-many-inputs: a function or method that declares more inputs than the
// configured limit.

#include <cstdint>

#include "tools/rules/long_signature.hpp"
#include "tools/rules/rule_table.hpp"

namespace plexus::rules {

namespace {

using namespace ca::rulesystem;

std::size_t ordinaryInputs(Function const& function) {
  return ordinarySignatureItems(function.getInputs(), u"varargin",
                                [](InputArgument const& input) { return input.getIdentifier(); });
}

void declare(RuleDeclaration const& rule) {
  // The vocabulary's counts treat `varargin` as open-ended: "more than the
  // limit" holds only when the ordinary inputs alone exceed it.
  auto const limit = static_cast<std::uint64_t>(rule.option("max-inputs"));
  auto const shown = static_cast<std::int64_t>(limit);
  reportLongSignature<Function>(rule, rule.all().function | (functionInputs{} > limit), "takes", "inputs",
                                &ordinaryInputs, shown);
  reportLongSignature<Method>(rule, rule.all().method | (methodInputs{} > limit), "takes", "inputs", &ordinaryInputs,
                              shown);
}

}  // namespace

RuleBody const& body::TooManyInputs() {
  static RuleBody const rule{
      .documentation =
          {
              .finds = "A function, local or nested function, or method (defined or only declared in a methods "
                       "block) that declares more inputs than `max-inputs`. Every input of the signature counts, "
                       "an ignored `~` input and the object of a method included; `varargin` does not count.",
              .why = "Each input is a position that every caller must get right. Past a handful, calls become "
                     "hard to read and easy to get wrong: two inputs of the same type swapped raise no error. A "
                     "long list also tends to mean the function does several things at once.",
              .example = "    function h = drawBox(ax, x, y, width, height, color, style, lineWidth)\n"
                         "      h = rectangle(ax, 'Position', [x y width height], 'EdgeColor', color, ...\n"
                         "                    'LineStyle', style, 'LineWidth', lineWidth);\n"
                         "    end",
              .instead = "Group inputs that belong together in a structure or object, or make the optional ones "
                         "name-value arguments:\n\n"
                         "    function h = drawBox(ax, box, options)\n"
                         "      arguments\n"
                         "        ax\n"
                         "        box (1,4) double\n"
                         "        options.Color = 'k'\n"
                         "        options.LineStyle = '-'\n"
                         "        options.LineWidth = 0.5\n"
                         "      end\n"
                         "      h = rectangle(ax, 'Position', box, 'EdgeColor', options.Color, ...\n"
                         "                    'LineStyle', options.LineStyle, 'LineWidth', options.LineWidth);\n"
                         "    end",
              .limits = "`varargin` is not counted, since it stands for optional trailing arguments, often "
                        "name-value pairs, that a caller need not pass: a function with `max-inputs` ordinary "
                        "inputs and `varargin` is not reported, although its callers may pass many more. The "
                        "count is the signature's: the entries of an `arguments` block for the fields of one "
                        "options structure are not counted apart. A method declared in its class file and "
                        "defined in a file of the class folder is reported in both files.",
          },
      .options = {{.key = "max-inputs",
                   .description = "The most inputs a function may declare, `varargin` not counted.",
                   .defaultValue = 7,
                   .minimum = 0,
                   .maximum = 1000}},
      .declare = &declare,
  };
  return rule;
}

}  // namespace plexus::rules
