// nargin-in-script: `nargin` or `nargout` in the code of a script itself,
// where there is no call whose arguments they could count.

#include <set>
#include <string>

#include "platform/ast/enclosing_node.hpp"
#include "tools/rules/rule_table.hpp"

namespace plexus::rules {

namespace {

using namespace ca::rulesystem;

// Keeps the names that stand in a script's own statements, outside its local
// functions and anonymous functions: in those, the counts are their own.
class IsOutsideFunctions final : public StageOf<IsOutsideFunctions, Predicate<Identifier const&>> {
 public:
  std::u16string description() const override { return u"IsOutsideFunctions"; }
  bool test(Identifier const& name, ca::Analysis const&) override {
    return lf::astapi::getEnclosing<Function>(name) == nullptr &&
           lf::astapi::getEnclosing<AnonymousFunction>(name) == nullptr;
  }
};

// Keeps the names that are not called with arguments: `nargin(fn)` asks how
// many inputs the function `fn` declares, which works anywhere.
class IsNotGivenArguments final : public StageOf<IsNotGivenArguments, Predicate<Identifier const&>> {
 public:
  std::u16string description() const override { return u"IsNotGivenArguments"; }
  bool test(Identifier const& name, ca::Analysis const&) override {
    auto const* call = lf::astapi::dynCast<ParenOperation>(name.getParent());
    return call == nullptr || call->getFunction() != &name || call->getArguments().empty();
  }
};

void declare(RuleDeclaration const& rule) {
  auto names = rule.all().program | isFileType(ca::FileType::Script) | getAllSymbols() |
               isSymbolName(std::set<std::u16string>{u"nargin", u"nargout"}) | getSymbolOccurences();
  // A script may assign a variable of that name; its uses are then plain
  // variable reads.
  names | !isVariable() | std::make_unique<IsOutsideFunctions>() | std::make_unique<IsNotGivenArguments>() |
      rule.report<Identifier const&>([](Identifier const& name) {
        std::string const spelled = utf8(ca::astapi::toStdView(name.getText()));
        return "'" + spelled + "' is used in a script, where it is an error: a script has no " +
               (spelled == "nargin" ? "inputs" : "outputs") + " to count";
      });
}

}  // namespace

RuleBody const& body::NarginInScript() {
  static RuleBody const rule{
      .documentation =
          {
              .finds = "`nargin` or `nargout` used in the statements of a script, outside its local functions "
                       "and anonymous functions, unless the script assigns a variable of that name or calls "
                       "them with an argument (`nargin(fn)`, which counts the inputs of the function `fn`).",
              .why = "`nargin` and `nargout` count the arguments of the function call they stand in. A script "
                     "is not called with arguments and runs in the workspace of whoever ran it, so there is "
                     "nothing to count: the use is an error when the script runs. It usually means code was "
                     "moved out of a function into a script, and its inputs went with it.",
              .example = "    % plot_results.m, a script\n"
                         "    if nargin < 1\n"
                         "      data = load('results.mat');\n"
                         "    end\n"
                         "    plot(data.t, data.y);",
              .instead = "Make it a function, whose callers pass what it needs:\n\n"
                         "    function plot_results(data)\n"
                         "      if nargin < 1\n"
                         "        data = load('results.mat');\n"
                         "      end\n"
                         "      plot(data.t, data.y);\n"
                         "    end",
              .limits = "Only the names themselves are found: a script that reaches them through `eval` or "
                        "`evalin` is not reported. A script that assigns `nargin` anywhere is taken to mean "
                        "that variable everywhere, also in a use before the assignment.",
          },
      .options = {},
      .declare = &declare,
  };
  return rule;
}

}  // namespace plexus::rules
