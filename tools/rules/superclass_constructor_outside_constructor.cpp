// superclass-constructor-outside-constructor: `obj@Base(...)`, a call of a
// superclass constructor on an object, anywhere but in the body of the
// class's constructor on the object it returns.

#include <string>

#include "platform/ast/class_syntax.hpp"
#include "platform/ast/dotted_name.hpp"
#include "platform/ast/enclosing_node.hpp"
#include "tools/rules/rule_table.hpp"

namespace plexus::rules {

namespace {

using namespace ca::rulesystem;
using lf::astapi::BinaryOperator;

// Gives the name on the left of `name@Base` when it is a plain identifier
// other than the name of the function it stands in: `area@Base(obj)` in the
// method `area` calls the superclass's `area`, even where the method's
// output is called `area` too.
class GetSuperclassCallLeftName final
    : public StageOf<GetSuperclassCallLeftName, SelectMany<BinaryOperation const&, Identifier const&>> {
 public:
  std::u16string description() const override { return u"GetSuperclassCallLeftName"; }
  void select(BinaryOperation const& operation, ca::Analysis const&,
              std::function<void(Identifier const&)> const& yield) const override {
    auto const* name = lf::astapi::dynCast<Identifier>(operation.getLeft());
    if (name == nullptr) return;
    Function const* const function = lf::astapi::getEnclosing<Function, AnonymousFunction>(operation);
    if (function != nullptr && function->getName() != nullptr &&
        function->getName()->getStringId() == name->getStringId()) {
      return;
    }
    yield(*name);
  }
};

std::string spelled(Expression const* expression) {
  if (expression == nullptr) return "?";
  auto const name = lf::astapi::getDottedName(*expression);
  return name ? utf8(name->text) : "?";
}

// Whether `function` is named like the class it belongs to: the classdef
// around it, or the class folder `@Name` of its file.
bool isNamedLikeItsClass(Function const& function) {
  if (function.getName() == nullptr) return false;
  std::u16string_view const name = ca::astapi::toStdView(function.getName()->getText());
  if (auto const* classdef = lf::astapi::getEnclosing<Classdef>(function)) {
    return classdef->getName() != nullptr && ca::astapi::toStdView(classdef->getName()->getText()) == name;
  }
  auto const* program = lf::astapi::getEnclosing<Program>(function);
  return program != nullptr && ca::ast::getClassFolderName(*program) == name;
}

// Where the call stands, for the message: the function it lies in, and why
// that is no place for it.
std::string placeOf(BinaryOperation const& call) {
  Function const* const function = lf::astapi::getEnclosing<Function, AnonymousFunction>(call);
  if (function == nullptr) {
    return lf::astapi::getEnclosing<AnonymousFunction>(call) != nullptr ? "inside an anonymous function"
                                                                        : "outside any function";
  }
  std::string const name =
      function->getName() != nullptr ? utf8(ca::astapi::toStdView(function->getName()->getText())) : "?";
  if (!isNamedLikeItsClass(*function)) {
    // A method of a class file or of a class folder belongs to a class; any
    // other function, a local one after a classdef included, to none.
    auto const* program = lf::astapi::getEnclosing<Program>(*function);
    bool const isMethod = lf::astapi::isA<MethodDefinition>(*function) ||
                          (program != nullptr && !ca::ast::getClassFolderName(*program).empty());
    return "in '" + name + (isMethod ? "', which is not the constructor of its class" : "', which is no constructor");
  }
  return "on a variable that is not the object that the constructor '" + name + "' returns";
}

void declare(RuleDeclaration const& rule) {
  // `name@Base(...)` calls the constructor of Base when `name` is the object
  // (a variable), and the superclass's method `name` otherwise; only the
  // constructor itself may do the former, which the vocabulary's
  // isSuperclassConstructorCall recognises.
  auto outsideConstructor =
      rule.all().binaryOperation | isBinaryOperation(BinaryOperator::SuperclassCall) | !isSuperclassConstructorCall();
  auto objects = outsideConstructor | std::make_unique<GetSuperclassCallLeftName>() | isVariable();
  upcast<Node const&>(objects) | getParent<BinaryOperation>() |
      rule.report<BinaryOperation const&>([](BinaryOperation const& call) {
        return "'" + spelled(call.getLeft()) + "@" + spelled(call.getRight()) + "' calls a superclass constructor " +
               placeOf(call);
      });
}

}  // namespace

RuleBody const& body::SuperclassConstructorOutsideConstructor() {
  static RuleBody const rule{
      .documentation =
          {
              .finds = "A call `obj@Base(...)` of a superclass constructor anywhere but in the body of the class's "
                       "own constructor on the object that the constructor returns: in another method, in a "
                       "local or nested function, in an anonymous function, in a script, or in the constructor "
                       "on some other variable.",
              .why = "Only a constructor may initialise the part of its object that a superclass defines, and "
                     "only on the object it is building; anywhere else the call is an error when it runs. Code "
                     "that tries to re-initialise an object this way, in a `reset` method for example, fails "
                     "only on the path that reaches it.",
              .example = "    classdef Account < Base\n"
                         "      methods\n"
                         "        function obj = reset(obj)\n"
                         "          obj@Base();\n"
                         "        end\n"
                         "      end\n"
                         "    end",
              .instead = "Call the superclass constructor once, in the constructor; to bring an object back to "
                         "its first state, give the superclass a method that does so and call that, or build a "
                         "new object:\n\n"
                         "    classdef Account < Base\n"
                         "      methods\n"
                         "        function obj = Account()\n"
                         "          obj@Base();\n"
                         "        end\n"
                         "        function obj = reset(obj)\n"
                         "          obj = resetState@Base(obj);\n"
                         "        end\n"
                         "      end\n"
                         "    end",
              .limits = "A call is taken for a constructor call when its left side is a variable of the function "
                        "it stands in and not that function's own name, so that `area@Base(obj)` in the method "
                        "`area`, a call of the superclass's method, is not reported, also when the method's "
                        "output is called `area`. In a script, where any name may be a variable set earlier, "
                        "only names the script itself sets are taken for variables. Whether `Base` really is a "
                        "superclass of the class is not checked.",
          },
      .options = {},
      .declare = &declare,
  };
  return rule;
}

}  // namespace plexus::rules
