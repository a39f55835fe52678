// global-declaration: each name that a `global` statement declares.

#include "tools/rules/rule_table.hpp"

namespace plexus::rules {

namespace {

using namespace ca::rulesystem;

void declare(RuleDeclaration const& rule) {
  auto declaredNames = upcast<Node const&>(rule.all().program | getAllSymbols() | isSymbolGlobalVariable() |
                                           getSymbolOccurences()) |
                       isDirectChildOf<GlobalStatement>();
  downcast<Identifier const&>(declaredNames) | rule.report<Identifier const&>([](Identifier const& name) {
    return "'" + utf8(ca::astapi::toStdView(name.getText())) + "' is declared global";
  });
}

}  // namespace

RuleBody const& body::GlobalDeclaration() {
  static RuleBody const rule{
      .documentation =
          {
              .finds = "Each name in a `global` statement.",
              .why = "A global variable is shared by every function that declares it, so any of them can change "
                     "what the others read: the value a function sees depends on what ran before it, anywhere "
                     "in the program. Such code is hard to test, cannot run twice side by side, and breaks "
                     "silently when two unrelated parts pick the same name.",
              .example = "    function count = tick()\n"
                         "      global counter\n"
                         "      counter = counter + 1;\n"
                         "      count = counter;\n"
                         "    end",
              .instead = "Pass the value in and out, or keep the state in an object or a `persistent` variable "
                         "of the one function that owns it:\n\n"
                         "    function count = tick(count)\n"
                         "      count = count + 1;\n"
                         "    end",
              .limits = "Every declaration is reported, also in code that must share state with code it "
                        "cannot change; silence those with `% plexus: ignore global-declaration`.",
          },
      .options = {},
      .declare = &declare,
  };
  return rule;
}

}  // namespace plexus::rules
