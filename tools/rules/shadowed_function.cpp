// shadowed-function: variables named like a function of the same file or a
// common function of the language, which the variable hides.

#include <set>
#include <string>

#include "tools/rules/rule_table.hpp"
#include "tools/rules/variable_occurrences.hpp"

namespace plexus::rules {

namespace {

using namespace ca::rulesystem;

// Functions of the language whose names code most often reuses for its own
// variables: common words and letters (`sum`, `max`, `line`, `path`, `i`),
// the usual statistics, the constructors of the basic types and the plotting
// and file functions that scripts call by short names. Chosen by hand from
// the functions that every installation provides, no toolbox; the list is
// kept short so that every entry is a name a reader takes for the function.
std::set<std::u16string> const& languageFunctions() {
  // One group of names a line, as the comments say.
  // clang-format off
  static std::set<std::u16string> const names{
      // Letters and constants.
      u"i", u"j", u"pi", u"eps", u"inf", u"nan",
      // Arithmetic and statistics.
      u"sum", u"prod", u"max", u"min", u"mean", u"median", u"mode", u"std", u"var", u"abs", u"round", u"floor",
      u"ceil", u"fix", u"mod", u"rem", u"sign", u"sqrt", u"exp", u"log", u"power", u"diff", u"cumsum", u"norm",
      u"det", u"inv", u"rank", u"trace", u"filter", u"conv", u"gamma", u"beta",
      // Arrays.
      u"length", u"size", u"numel", u"zeros", u"ones", u"eye", u"rand", u"sort", u"find", u"unique", u"flip",
      u"reshape", u"cat", u"all", u"any", u"isempty", u"union", u"intersect", u"count",
      // Types.
      u"cell", u"struct", u"table", u"char", u"double", u"single", u"string", u"logical", u"class",
      // Input, output, errors and files.
      u"disp", u"display", u"error", u"warning", u"input", u"path", u"load", u"save", u"dir", u"type", u"version",
      u"clock", u"date", u"now", u"clear", u"delete", u"get", u"set",
      // Graphics.
      u"line", u"image", u"text", u"title", u"axis", u"figure", u"plot", u"area", u"bar", u"hist", u"surface",
      u"patch", u"legend", u"colormap", u"grid", u"box", u"alpha", u"view",
  };
  // clang-format on
  return names;
}

// Gives the first definition of each variable of the file whose name is
// that of the function named by `name`. Variables and functions are symbols
// apart, so the whole table is searched: the file's functions are few, and
// this runs once for each of them.
class VariablesNamedLikeFunction final
    : public StageOf<VariablesNamedLikeFunction, SelectMany<Identifier const&, Identifier const&>> {
 public:
  std::u16string description() const override { return u"VariablesNamedLikeFunction"; }
  void select(Identifier const& name, ca::Analysis const& analysis,
              std::function<void(Identifier const&)> const& yield) const override {
    auto const& symbols = analysis.get<frontend::FileSymbols>();
    for (ca::Symbol const* symbol : symbols.getSymbols()) {
      if (!symbol->isVariable() || symbol->getStringId() != name.getStringId()) continue;
      for (Identifier const* occurrence : symbol->getOccurrences()) {
        if (symbols.isDefinition(*occurrence)) {
          yield(*occurrence);
          break;
        }
      }
    }
  }
};

std::string spelled(Identifier const& name) { return utf8(ca::astapi::toStdView(name.getText())); }

void declare(RuleDeclaration const& rule) {
  auto const symbols = rule.all().program | getAllSymbols();

  symbols | isSymbolVariable() | isSymbolName(languageFunctions()) | std::make_unique<FirstVariableDefinition>() |
      rule.report<Identifier const&>([](Identifier const& name) {
        return "variable '" + spelled(name) + "' shadows the function '" + spelled(name) +
               "' that the language provides";
      });

  auto const functions = symbols | isSymbolFunction() | getFirstSymbolOccurrence();
  auto const shadowing = [&rule](std::string kind) {
    return rule.report<Identifier const&>([kind](Identifier const& name) {
      return "variable '" + spelled(name) + "' shadows the " + kind + " '" + spelled(name) + "' of this file";
    });
  };
  functions | isMainFunction() | std::make_unique<VariablesNamedLikeFunction>() | shadowing("main function");
  functions | isLocalFunction() | std::make_unique<VariablesNamedLikeFunction>() | shadowing("local function");
  functions | isNestedFunction() | std::make_unique<VariablesNamedLikeFunction>() | shadowing("nested function");
}

}  // namespace

RuleBody const& body::ShadowedFunction() {
  static RuleBody const rule{
      .documentation =
          {
              .finds = "Variables named like a function of the same file (its main, local or nested "
                       "functions) or like a common function of the language (`sum`, `max`, `length`, `i`, "
                       "`line`, `table`, ...: a short list kept in the rule), reported once per variable, at its "
                       "first definition: an assignment, an input, a loop variable, a `catch` identifier or a "
                       "`global` or `persistent` declaration.",
              .why = "Where a variable of that name exists, the name means the variable: `sum(x)` indexes it "
                     "instead of adding, a call of the local function silently stops reaching it, and `i` is "
                     "no longer the imaginary unit. The error, if any, shows far from the assignment, often as "
                     "an index out of bounds.",
              .example = "    function total = tally(values)\n"
                         "      sum = 0;\n"
                         "      for k = 1:numel(values)\n"
                         "        sum = sum + values(k);\n"
                         "      end\n"
                         "      total = sum;\n"
                         "    end",
              .instead = "A name of its own for the variable:\n\n"
                         "    function total = tally(values)\n"
                         "      total = 0;\n"
                         "      for k = 1:numel(values)\n"
                         "        total = total + values(k);\n"
                         "      end\n"
                         "    end",
              .limits = "Only the functions of the list count among those the language provides; the other "
                        "functions of the language, and functions on the path or in packages, are not known. "
                        "Loop variables `i` and `j` are reported like any other. Methods of a class are not "
                        "compared, nor are property and field names, which do not hide functions. A variable "
                        "that only code the analyser cannot see defines (`eval`, `load`) is not found.",
          },
      .options = {},
      .declare = &declare,
  };
  return rule;
}

}  // namespace plexus::rules
