#pragma once

// Questions about the syntax of classes that need no analysis: what kind of
// value an attribute takes, which class a class folder holds methods of, and
// whether `obj@Base(...)` calls a superclass constructor.

#include <cstdint>
#include <iosfwd>
#include <string>

#include "platform/ast/ast.hpp"

namespace ca::ast {

/// The kind of value an attribute of a class, a property, method, event or
/// arguments block takes, by its name and where it stands.
enum class AttributeValueType : std::uint32_t {
  Label = 0,                    // one word of a fixed set: ParameterCombination = 'pairwise'
  Logical = 1,                  // true or false, or the name alone: Abstract, Constant, Sealed
  Numeric = 2,                  // a number: PartialMatchPriority
  MetaClass = 3,                // classes, as ?Name: AllowedSubclasses, InferiorClasses
  AccessModifier = 4,           // public, protected, private or classes: Access, GetAccess
  ImmutableAccessModifier = 5,  // the same or immutable: SetAccess of a property
  Text = 6,                     // free text: Description, DetailedDescription
  Unknown = 7,                  // a name that the language does not define there
};

/// The kind of value `attribute` takes. Names compare case-sensitively, as
/// the language reads them; a name that the block it stands on does not
/// define, or an attribute outside any class, is `Unknown`.
AttributeValueType getAttributeValueType(Attribute const& attribute);

std::ostream& operator<<(std::ostream& out, AttributeValueType type);

/// The class whose methods the file of `program` defines by standing directly
/// in a folder `@Name`: "Name"; empty for a file anywhere else. Both '/' and
/// '\' separate the parts of the path.
std::u16string getClassFolderName(Program const& program);

}  // namespace ca::ast

namespace ca::astapi {

/// Whether `operation` is `obj@Base` in `obj@Base(args)` calling the
/// constructor of a superclass: the `@` operator, with on its left an output
/// of the enclosing function, which is the constructor of its class (a
/// method named like the classdef, or the function `Name` of a file in a
/// folder `@Name`). `method@Base(obj)`, which calls a superclass method, is
/// not one.
bool isSuperclassConstructorCall(ca::ast::BinaryOperation const& operation);

}  // namespace ca::astapi
