#pragma once

// Attributes of classes and blocks by the sort of value they take, the
// selection of attributes by name, and the entries of arguments blocks: named
// by field, named by class, or ignored.

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include <boost/range/iterator_range.hpp>

#include "platform/ast/ast.hpp"
#include "rulesystem/graph/stage.hpp"
#include "rulesystem/graph/tree_types.hpp"

namespace ca::rulesystem {

/// Keeps the attributes that take one word of a fixed set, such as `TestTags`.
///   all.attribute | isLabelAttribute()
std::unique_ptr<Predicate<Attribute const&>> isLabelAttribute();

/// Keeps the attributes that take classes written `?Name`, such as
/// `InferiorClasses`.
///   all.attribute | isMetaClassAttribute()
std::unique_ptr<Predicate<Attribute const&>> isMetaClassAttribute();

/// Keeps the plain access attributes, such as `Access` or `GetAccess`; the
/// ones that also take `immutable` are not among them.
///   all.attribute | isAccessAttributeWithoutImmutable()
std::unique_ptr<Predicate<Attribute const&>> isAccessAttributeWithoutImmutable();

/// Keeps the access attributes that also take `immutable`, such as the
/// `SetAccess` of a property; the plain ones are not among them.
///   all.attribute | isAccessAttributeWithImmutable()
std::unique_ptr<Predicate<Attribute const&>> isAccessAttributeWithImmutable();

/// Keeps the attributes that take true or false: those the language defines
/// so, and outside arguments blocks the custom ones that the class-object
/// analysis knows to be logical. It asks that analysis only for the others.
///   all.attribute | isLogicalAttribute()
std::unique_ptr<Predicate<Attribute const&>> isLogicalAttribute();

/// Keeps the attributes that neither the language defines where they stand
/// nor, outside arguments blocks, the class-object analysis knows as custom.
///   all.attribute | isUnknownAttribute()
std::unique_ptr<Predicate<Attribute const&>> isUnknownAttribute();

/// Keeps the arguments-block entries named by class, `opts.?pkg.Class`.
///   all.argument | isNamedArgumentByClass()
std::unique_ptr<Predicate<Argument const&>> isNamedArgumentByClass();

/// Keeps the arguments-block entries named by field, `opts.Name`.
///   all.argument | isNamedArgumentByField()
std::unique_ptr<Predicate<Argument const&>> isNamedArgumentByField();

/// Keeps the arguments-block entries whose name is the ignore mark `~`.
/// Throws std::logic_error for an entry whose name holds neither a name nor
/// the mark, which only a malformed tree has.
///   all.argument | isIgnoredArgument()
std::unique_ptr<Predicate<Argument const&>> isIgnoredArgument();

/// The attributes of `attributes` named exactly `name`, all of them, in their
/// order: with `list = block.getAttributes()`,
/// `getAttributesWithName(boost::make_iterator_range(list.begin(), list.end()), u"Access")`.
std::vector<Attribute const*> getAttributesWithName(
    boost::iterator_range<lf::astapi::NodeList<Attribute>::iterator> attributes, std::u16string name);

namespace detail {
/// How a classification of attributes prints in a description: its name for
/// the eight known values, "New Attribute value" for any other.
std::u16string attributeClassificationName(std::int32_t classification);
}  // namespace detail

}  // namespace ca::rulesystem
