#include "platform/ast/class_syntax.hpp"

#include <algorithm>
#include <array>
#include <ostream>
#include <string>
#include <string_view>

#include "platform/ast/enclosing_node.hpp"
#include "platform/filesystem/paths.hpp"

namespace ca::ast {

namespace {

using Type = AttributeValueType;

struct Entry {
  std::u16string_view name;
  Type type;
};

// The attributes that the language defines on each place an attribute can
// stand: the tables follow the language's reference for class, property,
// method, event and arguments-block attributes, including the attributes of
// its unit-test framework, which the language reads on test classes (test
// tags, parameters, setup and teardown). A name missing here is Unknown, and
// a rule or the class-object analysis decides what it is. The tables are a
// few entries long: a linear search is enough.
constexpr std::array classAttributes{
    Entry{u"Abstract", Type::Logical},          Entry{u"AllowedSubclasses", Type::MetaClass},
    Entry{u"ConstructOnLoad", Type::Logical},   Entry{u"HandleCompatible", Type::Logical},
    Entry{u"Hidden", Type::Logical},            Entry{u"InferiorClasses", Type::MetaClass},
    Entry{u"Sealed", Type::Logical},            Entry{u"SharedTestFixtures", Type::MetaClass},
    Entry{u"TestTags", Type::Label},
};
constexpr std::array propertyAttributes{
    Entry{u"AbortSet", Type::Logical},
    Entry{u"Abstract", Type::Logical},
    Entry{u"Access", Type::AccessModifier},
    Entry{u"ClassSetupParameter", Type::Logical},
    Entry{u"Constant", Type::Logical},
    Entry{u"Dependent", Type::Logical},
    Entry{u"Description", Type::Text},
    Entry{u"DetailedDescription", Type::Text},
    Entry{u"GetAccess", Type::AccessModifier},
    Entry{u"GetObservable", Type::Logical},
    Entry{u"Hidden", Type::Logical},
    Entry{u"MethodSetupParameter", Type::Logical},
    Entry{u"NonCopyable", Type::Logical},
    Entry{u"PartialMatchPriority", Type::Numeric},
    Entry{u"SetAccess", Type::ImmutableAccessModifier},
    Entry{u"SetObservable", Type::Logical},
    Entry{u"TestParameter", Type::Logical},
    Entry{u"Transient", Type::Logical},
    Entry{u"WeakHandle", Type::Logical},
};
constexpr std::array methodAttributes{
    Entry{u"Abstract", Type::Logical},
    Entry{u"Access", Type::AccessModifier},
    Entry{u"Hidden", Type::Logical},
    Entry{u"ParameterCombination", Type::Label},
    Entry{u"Sealed", Type::Logical},
    Entry{u"Static", Type::Logical},
    Entry{u"Test", Type::Logical},
    Entry{u"TestClassSetup", Type::Logical},
    Entry{u"TestClassTeardown", Type::Logical},
    Entry{u"TestMethodSetup", Type::Logical},
    Entry{u"TestMethodTeardown", Type::Logical},
    Entry{u"TestParameterDefinition", Type::Label},
    Entry{u"TestTags", Type::Label},
};
constexpr std::array eventAttributes{
    Entry{u"Hidden", Type::Logical},
    Entry{u"ListenAccess", Type::AccessModifier},
    Entry{u"NotifyAccess", Type::AccessModifier},
};
// What an arguments block validates: the inputs (the default), the outputs,
// or the inputs that repeat.
constexpr std::array argumentsBlockAttributes{
    Entry{u"Input", Type::Logical},
    Entry{u"Output", Type::Logical},
    Entry{u"Repeating", Type::Logical},
};
constexpr std::array<Entry, 0> noAttributes{};

template <std::size_t N>
constexpr bool sortedByName(std::array<Entry, N> const& table) {
  return std::is_sorted(table.begin(), table.end(), [](Entry const& a, Entry const& b) { return a.name < b.name; });
}
// Kept sorted so that a reader finds a name, and a duplicate shows.
static_assert(sortedByName(classAttributes) && sortedByName(propertyAttributes) && sortedByName(methodAttributes) &&
              sortedByName(eventAttributes) && sortedByName(argumentsBlockAttributes));

template <std::size_t N>
Type lookUp(std::array<Entry, N> const& table, std::u16string_view name) {
  auto const found = std::find_if(table.begin(), table.end(), [name](Entry const& e) { return e.name == name; });
  return found == table.end() ? Type::Unknown : found->type;
}

}  // namespace

AttributeValueType getAttributeValueType(Attribute const& attribute) {
  std::u16string_view const name = astapi::toStdView(attribute.getName()->getText());
  Node const* const holder = attribute.getParent();
  switch (holder == nullptr ? lf::astapi::NodeKind{} : holder->getKind()) {
    case lf::astapi::NodeKind::Classdef: return lookUp(classAttributes, name);
    case lf::astapi::NodeKind::PropertiesBlock: return lookUp(propertyAttributes, name);
    case lf::astapi::NodeKind::MethodsBlock: return lookUp(methodAttributes, name);
    case lf::astapi::NodeKind::EventsBlock: return lookUp(eventAttributes, name);
    case lf::astapi::NodeKind::ArgumentsBlock: return lookUp(argumentsBlockAttributes, name);
    default: return lookUp(noAttributes, name);
  }
}

std::ostream& operator<<(std::ostream& out, AttributeValueType type) {
  switch (type) {
    case Type::Label: return out << "Label";
    case Type::Logical: return out << "Logical";
    case Type::Numeric: return out << "Numeric";
    case Type::MetaClass: return out << "MetaClass";
    case Type::AccessModifier: return out << "AccessModifier";
    case Type::ImmutableAccessModifier: return out << "ImmutableAccessModifier";
    case Type::Text: return out << "Text";
    case Type::Unknown: return out << "Unknown";
  }
  return out << "AttributeValueType(" << static_cast<std::uint32_t>(type) << ")";
}

std::u16string getClassFolderName(Program const& program) {
  std::u16string const path(astapi::toStdView(program.getFilePath()));
  std::u16string const folder = fl::filesystem::detail::extract_filename(
      fl::filesystem::detail::extract_parent_path(fl::filesystem::detail::make_native_form(path, 1)));
  if (folder.size() < 2 || folder[0] != u'@') return {};
  return folder.substr(1);
}

}  // namespace ca::ast

namespace ca::astapi {

namespace {

// The class whose constructor a function named `name` would be: the classdef
// around it, or the `@Name` folder of its file.
bool isConstructor(ca::ast::Function const& function) {
  std::u16string_view const name = toStdView(function.getName()->getText());
  for (ca::ast::Node const* at = function.getParent(); at != nullptr; at = at->getParent()) {
    if (at->getKind() == lf::astapi::NodeKind::Classdef) {
      return toStdView(static_cast<ca::ast::Classdef const*>(at)->getName()->getText()) == name;
    }
    if (at->getKind() == lf::astapi::NodeKind::Program) {
      return ca::ast::getClassFolderName(*static_cast<ca::ast::Program const*>(at)) == name;
    }
  }
  return false;
}

}  // namespace

bool isSuperclassConstructorCall(ca::ast::BinaryOperation const& operation) {
  if (operation.getOperator() != lf::astapi::BinaryOperator::SuperclassCall) return false;
  ca::ast::Expression const* const object = operation.getLeft();
  if (object == nullptr || object->getKind() != lf::astapi::NodeKind::Identifier) return false;
  // The function or method whose body holds the operation; none inside an
  // anonymous function: the call stands in the constructor's own body.
  ca::ast::Function const* const function =
      lf::astapi::getEnclosing<ca::ast::Function, ca::ast::AnonymousFunction>(operation);
  if (function == nullptr || function->getName() == nullptr || !isConstructor(*function)) return false;
  StringId const objectName = static_cast<ca::ast::Identifier const*>(object)->getStringId();
  auto const outputs = function->getOutputs();
  return std::any_of(outputs.begin(), outputs.end(),
                     [objectName](ca::ast::Identifier const* output) { return output->getStringId() == objectName; });
}

}  // namespace ca::astapi
