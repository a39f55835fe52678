// long-identifier: names longer than the language allows, each reported once
// where it is declared or first written.

#include <cstdint>
#include <string>

#include "platform/ast/assignment_target.hpp"
#include "tools/rules/rule_table.hpp"

namespace plexus::rules {

namespace {

using namespace ca::rulesystem;

// The longest name the language accepts; longer ones are cut short or refused.
constexpr std::int64_t languageLimit = 63;

// The name of a class member that has no symbol (property, event,
// enumerator); nothing for a member whose name the parser could not read.
template <class Member>
class MemberName final : public StageOf<MemberName<Member>, SelectMany<Member const&, Identifier const&>> {
 public:
  std::u16string description() const override {
    std::u16string text = u"MemberName ";
    text += ca::utils::prettyTypeName<Member>();
    return text;
  }
  void select(Member const& member, ca::Analysis const&,
              std::function<void(Identifier const&)> const& yield) const override {
    if (member.getName() != nullptr) yield(*member.getName());
  }
};

// The fields that an assignment writes, `b` and `c` of `a.b(2).c = v`, taken
// apart as the analyses take targets apart. Fields that an index or a value
// reads are not written and not given.
template <class Statement>
class WrittenFields final : public StageOf<WrittenFields<Statement>, SelectMany<Statement const&, Field const&>> {
 public:
  std::u16string description() const override {
    std::u16string text = u"WrittenFields ";
    text += ca::utils::prettyTypeName<Statement>();
    return text;
  }
  void select(Statement const& statement, ca::Analysis const&,
              std::function<void(Field const&)> const& yield) const override {
    if constexpr (std::is_same_v<Statement, Assignment>) {
      yieldFields(statement.getLeft(), yield);
    } else {
      for (Expression const* output : statement.getOutputs()) yieldFields(output, yield);
    }
  }

 private:
  static void yieldFields(Expression const* target, std::function<void(Field const&)> const& yield) {
    if (target == nullptr) return;
    for (Field const* field : lf::astapi::getAssignmentTarget(target).fields) yield(*field);
  }
};

// The field that names a name-value entry of an arguments block,
// `LineWidth` of `opts.LineWidth (1,1) double`.
class ArgumentFieldName final : public StageOf<ArgumentFieldName, SelectMany<Argument const&, Field const&>> {
 public:
  std::u16string description() const override { return u"ArgumentFieldName"; }
  void select(Argument const& argument, ca::Analysis const&,
              std::function<void(Field const&)> const& yield) const override {
    if (argument.getFieldPart() != nullptr) yield(*argument.getFieldPart());
  }
};

// A property accessor's name, `get.Prop`, holds the dot and the property's
// name: it is as long as the property allows, which is checked where the
// property is declared.
class IsPropertyAccessorName final : public StageOf<IsPropertyAccessorName, Predicate<Identifier const&>> {
 public:
  std::u16string description() const override { return u"IsPropertyAccessorName"; }
  bool test(Identifier const& name, ca::Analysis const&) override {
    return ca::astapi::toStdView(name.getText()).find(u'.') != std::u16string_view::npos;
  }
};

std::string tooLong(std::u16string_view what, std::u16string_view name, std::int64_t limit) {
  return utf8(what) + " '" + utf8(name) + "' is " + std::to_string(name.size()) + " characters long, more than " +
         std::to_string(limit);
}

void declare(RuleDeclaration const& rule) {
  std::int64_t const limit = rule.option("max-length");
  auto const longer = static_cast<unsigned long>(limit);
  auto& all = rule.all();

  auto const nameOf = [limit](std::u16string_view what) {
    return
        [limit, what](Identifier const& name) { return tooLong(what, ca::astapi::toStdView(name.getText()), limit); };
  };
  auto const fieldOf = [limit](Field const& field) {
    return tooLong(u"field", ca::astapi::toStdView(field.getText()), limit);
  };

  // Functions and methods where they are defined or declared, which may come
  // after their first call.
  auto const symbols = all.program | getAllSymbols();
  // A class's constructor is one symbol with the class, reported below at
  // the class's name.
  auto const callables = symbols | (isSymbolFunction() || isSymbolMethod()) | !isSymbolClass();
  auto const definedNames = upcast<Node const&>(callables | getSymbolOccurences() | (identifierLength{} > longer)) |
                            isDirectChildOf<Function>();
  downcast<Identifier const&>(definedNames) | !std::make_unique<IsPropertyAccessorName>() |
      rule.report<Identifier const&>(nameOf(u"function"));

  // Variables, the class and names from outside the file: each symbol at its
  // first occurrence, which for a variable is where its function first names
  // it.
  symbols | !isSymbolFunction() | (isSymbolClass() || !isSymbolMethod()) | getFirstSymbolOccurrence() |
      (identifierLength{} > longer) | rule.report<Identifier const&>(nameOf(u"name"));

  // Class members without symbols, where they are declared.
  all.property | std::make_unique<MemberName<Property>>() | (identifierLength{} > longer) |
      rule.report<Identifier const&>(nameOf(u"property"));
  all.event | std::make_unique<MemberName<Event>>() | (identifierLength{} > longer) |
      rule.report<Identifier const&>(nameOf(u"event"));
  all.enumerator | std::make_unique<MemberName<Enumerator>>() | (identifierLength{} > longer) |
      rule.report<Identifier const&>(nameOf(u"enumerator"));

  // Fields where they are written or declared; a read names a field written
  // elsewhere.
  all.assignment | std::make_unique<WrittenFields<Assignment>>() | isFieldLongerThan(longer) |
      rule.report<Field const&>(fieldOf);
  all.multiLhsAssignment | std::make_unique<WrittenFields<MultiLhsAssignment>>() | isFieldLongerThan(longer) |
      rule.report<Field const&>(fieldOf);
  all.argument | std::make_unique<ArgumentFieldName>() | isFieldLongerThan(longer) | rule.report<Field const&>(fieldOf);
}

}  // namespace

RuleBody const& body::LongIdentifier() {
  static RuleBody const rule{
      .documentation =
          {
              .finds = "Names longer than 63 characters (or the `max-length` option): functions and methods "
                       "where they are defined or declared; variables, the class and names of functions from "
                       "outside the file at their first occurrence; properties, events and enumerators where they are "
                       "declared; fields where an "
                       "assignment writes them (`s.name = v`, also in `[s.name, t] = f()`) and where an arguments "
                       "block declares them (`opts.Name`).",
              .why = "The language takes only the first 63 characters of a name into account or refuses the "
                     "name, depending on where it stands: two long names that differ after that point are the "
                     "same variable or field, a function of such a name cannot be called by it, and a file may "
                     "behave differently from what its text says. Names that long are hard to read anyway.",
              .example = "    function r = scale(x)\n"
                         "      factorUsedToScaleTheMeasuredValuesBeforeTheyAreStoredInTheDatabase = 2;\n"
                         "      r = x * factorUsedToScaleTheMeasuredValuesBeforeTheyAreStoredInTheDatabase;\n"
                         "    end",
              .instead = "A shorter name, with the rest said in a comment:\n\n"
                         "    function r = scale(x)\n"
                         "      storageScale = 2;  % applied to measured values before they are stored\n"
                         "      r = x * storageScale;\n"
                         "    end",
              .limits = "A variable is reported once in each function that names it, a field at every "
                        "assignment that writes it, and a name from outside the file once per file. Fields that "
                        "are only read, dynamic fields (`s.(name)`), names in text (`struct('name', v)`, "
                        "`setfield`), the parts of an `import` and name-value arguments of a call "
                        "(`f(Name=v)`, declared by the called function) are not checked. A property accessor "
                        "(`get.Prop`) is not checked apart from its property. Length counts 16-bit units, which "
                        "for the letters, digits and underscores of a name are characters.",
          },
      .options = {{.key = "max-length",
                   .description = "report names longer than this",
                   .defaultValue = languageLimit,
                   .minimum = 1,
                   .maximum = 4096}},
      .declare = &declare,
  };
  return rule;
}

}  // namespace plexus::rules
