// eval-call: calls that run text as code (`eval`, `evalin`, `evalc`) or set a
// variable named by text in another workspace (`assignin`), and handles to
// them.

#include <array>
#include <string_view>

#include "tools/rules/rule_table.hpp"

namespace plexus::rules {

namespace {

using namespace ca::rulesystem;

// The functions of the language that take code or a variable's name as text.
// `feval` is not among them: it calls a function by name and parses nothing.
constexpr std::array<std::u16string_view, 4> textAsCodeFunctions{u"eval", u"evalc", u"evalin", u"assignin"};

std::string consequence(std::string const& name) {
  if (name == "assignin") return "'assignin' sets a variable of another workspace by a name given as text";
  return "'" + name + "' runs text as code";
}

// Keeps the handles that name their function by a plain name, `@eval`; a
// package function's handle, `@pkg.eval`, names another function.
class IsHandleOfPlainName final : public StageOf<IsHandleOfPlainName, Predicate<UnaryOperation const&>> {
 public:
  std::u16string description() const override { return u"IsHandleOfPlainName"; }
  bool test(UnaryOperation const& handle, ca::Analysis const&) override {
    return lf::astapi::isA<Identifier>(handle.getOperand());
  }
};

void declare(RuleDeclaration const& rule) {
  auto const describeCall = [](ca::callresolution::Call const& call) {
    return consequence(utf8(ca::astapi::toStdView(call.getName().getString())));
  };
  auto const locateCall = [](ca::callresolution::Call const& call) { return call.getNode()->getSourceRange(); };
  std::vector<std::u16string> names;
  for (std::u16string_view name : textAsCodeFunctions) {
    ca::astapi::StringId const id(name);
    // Both forms: `eval(text)` and the command `eval text`.
    for (auto calls : {rule.all().parenOperation | getCalls{id}, rule.all().commandInvocation | getCalls{id}}) {
      calls | rule.report<ca::callresolution::Call const&>(describeCall, locateCall);
    }
    names.emplace_back(name);
  }
  // A handle `@eval` runs text as code wherever it is called.
  rule.all().unaryOperation | isUnaryOperation(lf::astapi::UnaryOperator::FunctionHandle) |
      std::make_unique<IsHandleOfPlainName>() | getUnaryOperand() | isStringId(names) | isExternal() |
      rule.report<Identifier const&>([](Identifier const& name) {
        return consequence(utf8(ca::astapi::toStdView(name.getText()))) + " when its handle is called";
      });
}

}  // namespace

RuleBody const& body::EvalCall() {
  static RuleBody const rule{
      .documentation =
          {
              .finds = "Calls of `eval`, `evalc` and `evalin`, which run text as code, and of `assignin`, which "
                       "sets a variable of another workspace by a name given as text; in function and command "
                       "syntax, and handles to them (`@eval`).",
              .why = "Code in text is invisible to the analyser and to the reader: its names, calls and errors "
                     "show only when it runs, the variables it defines appear from nowhere, and text built from "
                     "input can run anything. `assignin` changes a caller's variables behind its back. Such code "
                     "is slow too, since the text is parsed anew on every run.",
              .example = "    for k = 1:3\n"
                         "      eval(['result' num2str(k) ' = compute(k);']);\n"
                         "    end",
              .instead = "Keep related values in an array, a cell array or a structure with dynamic fields, and "
                         "call functions through handles:\n\n"
                         "    result = cell(1, 3);\n"
                         "    for k = 1:3\n"
                         "      result{k} = compute(k);\n"
                         "    end\n"
                         "    s.(name) = value;\n"
                         "    f = str2func(name); y = f(x);",
              .limits = "Only calls by these names are found: a call through a handle held in a variable "
                        "(`g = @eval; g(s)` is found at `@eval`, but not a handle passed in from elsewhere), "
                        "`feval('eval', s)`, or `builtin('eval', s)` is missed. `feval` itself is not reported: it "
                        "calls a function by name and parses no code. A variable that happens to be named `eval` "
                        "is indexed, not called, and is rightly left alone.",
          },
      .options = {},
      .declare = &declare,
  };
  return rule;
}

}  // namespace plexus::rules
