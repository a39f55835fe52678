#include "frontend/analysis/class_objects.hpp"

#include <string_view>
#include <utility>
#include <variant>

#include "platform/ast/class_syntax.hpp"

namespace frontend {

namespace ast = ca::ast;
using lf::astapi::NodeKind;

namespace {

std::u16string_view textOf(ast::Identifier const& identifier) { return ca::astapi::toStdView(identifier.getText()); }

// Whether an attribute value is a plain false: `false` or a zero.
bool isLiteralFalse(ast::Expression const& value) {
  if (value.getKind() == NodeKind::Identifier) return textOf(static_cast<ast::Identifier const&>(value)) == u"false";
  if (value.getKind() == NodeKind::NumberLiteral) {
    return std::visit([](auto number) { return number == decltype(number){}; },
                      static_cast<ast::NumberLiteral const&>(value).getValue());
  }
  return false;
}

// Whether the methods of `block` are static. Of several `Static` attributes
// the last decides, as the language reads a list of name-value pairs.
bool isStatic(ast::MethodsBlock const& block) {
  bool result = false;
  for (ast::Attribute const* attribute : block.getAttributes()) {
    if (attribute->getName() == nullptr || textOf(*attribute->getName()) != u"Static") continue;
    if (attribute->isNegated()) {
      result = false;
    } else {
      result = attribute->getValue() == nullptr || !isLiteralFalse(*attribute->getValue());
    }
  }
  return result;
}

}  // namespace

ClassObjects::ClassObjects(ast::Program const& program, ca::FileType type,
                           std::shared_ptr<ca::nameresolution::SymbolTable const> symbols,
                           std::vector<ca::clients::CustomAttribute> addedAttributes)
    : symbols_(std::move(symbols)), customAttributes_(std::move(addedAttributes)) {
  if (type == ca::FileType::Class) {
    for (ast::Node const* node : program.getBody()) {
      if (node->getKind() == NodeKind::Classdef) noteClassMethods(static_cast<ast::Classdef const&>(*node));
    }
  } else if (type == ca::FileType::Function) {
    noteClassFolderMethod(program);
  }
}

void ClassObjects::noteClassMethods(ast::Classdef const& classdef) {
  for (ast::Node const* block : classdef.getBlocks()) {
    if (block->getKind() != NodeKind::MethodsBlock) continue;
    auto const& methods = static_cast<ast::MethodsBlock const&>(*block);
    bool const isStaticBlock = isStatic(methods);
    for (ast::Method const* method : methods.getMembers()) {
      // A declaration has no body in which an object could be used.
      if (method->getKind() != NodeKind::MethodDefinition || method->getName() == nullptr) continue;
      bool const constructs =
          classdef.getName() != nullptr && textOf(*method->getName()) == textOf(*classdef.getName());
      if (constructs || !isStaticBlock) noteObject(*method, constructs);
    }
  }
}

void ClassObjects::noteClassFolderMethod(ast::Program const& program) {
  std::u16string const className = ast::getClassFolderName(program);
  if (className.empty()) return;
  // The main function, the file's first; the local functions after it are
  // helpers of that file, no methods.
  for (ast::Node const* node : program.getBody()) {
    if (node->getKind() != NodeKind::Function) continue;
    auto const& function = static_cast<ast::Function const&>(*node);
    if (function.getName() != nullptr) noteObject(function, textOf(*function.getName()) == className);
    return;
  }
}

void ClassObjects::noteObject(ast::Function const& method, bool constructs) {
  ast::Identifier const* object = nullptr;
  if (constructs) {
    if (!method.getOutputs().empty()) object = method.getOutputs()[0];
  } else if (!method.getInputs().empty()) {
    object = method.getInputs()[0]->getIdentifier();  // null for `~`
  }
  if (object == nullptr) return;
  if (auto const* symbol = symbols_->getSymbol(*object)) objects_.insert(symbol);
}

bool ClassObjects::hasAnnotation(ast::Identifier const& identifier, ca::core::ToskAnnotation annotation) const {
  switch (annotation) {
    case ca::core::ToskAnnotation::ObjectParameter: {
      auto const* symbol = symbols_->getSymbol(identifier);
      return symbol != nullptr && objects_.count(symbol) != 0;
    }
  }
  return false;
}

bool ClassObjects::isCustomAttribute(ast::Attribute const& attribute) const {
  return customAttributes_.isCustom(attribute);
}

bool ClassObjects::isLogicalCustomAttribute(ast::Attribute const& attribute) const {
  return customAttributes_.isLogicalCustom(attribute);
}

}  // namespace frontend
