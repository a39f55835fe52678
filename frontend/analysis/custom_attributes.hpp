#pragma once

// Custom attributes: names that a class may put on its attribute lists
// although the language does not define them there, because a framework of
// the language's standard library reads them from the classes derived from
// its base classes. A rule that flags unknown attributes must not flag
// these, and one that checks logical attributes must treat the logical ones
// alike.

#include <span>
#include <string_view>
#include <vector>

#include "platform/analysis/analysis_impl.hpp"
#include "platform/ast/ast.hpp"

namespace frontend {

/// One custom attribute of the table below.
struct KnownCustomAttribute {
  std::u16string_view name;
  lf::astapi::NodeKind place;  // the node whose attribute list it stands in
  bool logical;
};

/// The custom attributes that the class-object analysis knows of itself: the
/// property attributes of the standard library's base class for objects that
/// process data one step at a time (set up, stepped, reset), which its
/// subclasses put on their properties blocks, and which the simulation
/// environment that runs such objects reads too. All take a logical value.
///
/// | Name              | Where            | Logical | Says of the properties of the block      |
/// |-------------------|------------------|---------|------------------------------------------|
/// | `ContinuousState` | properties block | yes     | they hold continuous state of the object |
/// | `DiscreteState`   | properties block | yes     | they hold discrete state of the object   |
/// | `Logical`         | properties block | yes     | they hold a logical scalar               |
/// | `Nontunable`      | properties block | yes     | they cannot change while the object runs |
/// | `PositiveInteger` | properties block | yes     | they hold a positive integer             |
std::span<KnownCustomAttribute const> knownCustomAttributes();

/// The custom attributes of one analysis: the known ones, and those the
/// caller adds through `AnalysisOptions::customAttributes`.
///
/// Invariants: fixed once made.
class CustomAttributes {
 public:
  explicit CustomAttributes(std::vector<ca::clients::CustomAttribute> added);

  /// Whether `attribute` is a custom attribute: one whose name the language
  /// does not define on the block it stands on (`getAttributeValueType` is
  /// Unknown), and which the table or the added names give for that place.
  /// Never one of an arguments block, which takes only the language's own.
  bool isCustom(ca::ast::Attribute const& attribute) const { return find(attribute) != nullptr; }
  /// Whether `attribute` is a custom attribute that takes a logical value.
  bool isLogicalCustom(ca::ast::Attribute const& attribute) const;

 private:
  struct Entry {
    std::u16string name;
    lf::astapi::NodeKind place;
    bool logical;
  };
  Entry const* find(ca::ast::Attribute const& attribute) const;

  std::vector<Entry> entries_;  // the known ones first; a few entries: searched in order
};

}  // namespace frontend
