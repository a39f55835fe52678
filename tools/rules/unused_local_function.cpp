// unused-local-function: local and nested functions that nothing else in the
// file calls or takes a handle of.

#include <string>

#include "tools/rules/rule_table.hpp"

namespace plexus::rules {

namespace {

using namespace ca::rulesystem;

// The name of a function; nothing for one whose name the parser could not
// read.
class FunctionName final : public StageOf<FunctionName, SelectMany<Function const&, Identifier const&>> {
 public:
  std::u16string description() const override { return u"FunctionName"; }
  void select(Function const& function, ca::Analysis const&,
              std::function<void(Identifier const&)> const& yield) const override {
    if (function.getName() != nullptr) yield(*function.getName());
  }
};

// Keeps the function names (the name in a function's own signature) that
// some occurrence outside that function refers to: a call, a command or a
// handle. A function that only calls itself is still unused, and a second
// definition of the same name is no use of the first.
class IsReferredToFromOutside final : public StageOf<IsReferredToFromOutside, Predicate<Identifier const&>> {
 public:
  std::u16string description() const override { return u"IsReferredToFromOutside"; }
  bool test(Identifier const& name, ca::Analysis const& analysis) override {
    Node const* const function = name.getParent();
    ca::Symbol const* const symbol = analysis.getSymbolTable()->getSymbol(name);
    if (function == nullptr || symbol == nullptr) return true;
    for (Identifier const* occurrence : symbol->getOccurrences()) {
      if (occurrence == &name || namesAFunction(*occurrence)) continue;
      if (!liesWithin(*occurrence, *function)) return true;
    }
    return false;
  }

 private:
  static bool namesAFunction(Identifier const& identifier) {
    Node const* const parent = identifier.getParent();
    return parent != nullptr && lf::astapi::isA<Function>(*parent) &&
           static_cast<Function const&>(*parent).getName() == &identifier;
  }
  // Climbs from the occurrence: the depth of the tree, not its size.
  static bool liesWithin(Node const& node, Node const& ancestor) {
    for (Node const* at = node.getParent(); at != nullptr; at = at->getParent()) {
      if (at == &ancestor) return true;
    }
    return false;
  }
};

void declare(RuleDeclaration const& rule) {
  auto const names = rule.all().function | std::make_unique<FunctionName>();
  names | isLocalFunction() | !std::make_unique<IsReferredToFromOutside>() |
      rule.report<Identifier const&>([](Identifier const& name) {
        return "local function '" + utf8(ca::astapi::toStdView(name.getText())) + "' is never called in this file";
      });
  names | isNestedFunction() | !std::make_unique<IsReferredToFromOutside>() |
      rule.report<Identifier const&>([](Identifier const& name) {
        return "nested function '" + utf8(ca::astapi::toStdView(name.getText())) + "' is never called in this file";
      });
}

}  // namespace

RuleBody const& body::UnusedLocalFunction() {
  static RuleBody const rule{
      .documentation =
          {
              .finds = "Local functions (those after the first of a function file, the functions of a script, "
                       "and those after the `classdef` of a class file) and nested functions that nothing else "
                       "in the file calls, runs as a command or takes a handle of (`@helper`). Calls from inside "
                       "the function itself do not count. The main function of a file and the methods of a class "
                       "are not checked: code outside the file calls them.",
              .why = "Code outside the file cannot reach a local or nested function, so one that the file does "
                     "not use is dead: it is read, maintained and kept compiling for nothing, and it often "
                     "hides that a caller was renamed or removed by mistake.",
              .example = "    function total = report(values)\n"
                         "      total = sum(values);\n"
                         "    end\n"
                         "\n"
                         "    function text = describe(values)\n"
                         "      text = sprintf('%d values', numel(values));\n"
                         "    end",
              .instead = "Remove the function, or call it where it was meant to be called:\n\n"
                         "    function total = report(values)\n"
                         "      total = sum(values);\n"
                         "      disp(describe(values));\n"
                         "    end\n"
                         "\n"
                         "    function text = describe(values)\n"
                         "      text = sprintf('%d values', numel(values));\n"
                         "    end",
              .limits = "Only calls and handles by name count: a function named in text, such as a callback "
                        "given as `'Callback', 'onClick'`, `feval('helper', x)`, `str2func('helper')` or code run "
                        "by `eval`, is reported although it is used. Of two functions of the same name the "
                        "second is never reached, yet the calls of the first count for it too.",
          },
      .options = {},
      .declare = &declare,
  };
  return rule;
}

}  // namespace plexus::rules
