#pragma once

#include <memory>
#include <unordered_set>
#include <vector>

#include "frontend/analysis/custom_attributes.hpp"
#include "platform/analysis/analysis_impl.hpp"
#include "platform/nameresolution/symbol_table.hpp"
#include "platform/tosk/tosk_analysis.hpp"

namespace frontend {

/// What one file tells of class objects, by the rules of the analysed
/// language:
///
/// - the object parameter of a method: in a class file, the first input of a
///   method defined in a methods block that is not static, or the first
///   output of the constructor (the method named like the class); in a
///   function file standing directly in a folder `@Name`, the first input of
///   its main function, or its first output when the function is named
///   `Name`. Every occurrence of that variable bears `ObjectParameter`. Local
///   functions, functions of other files, the own inputs of nested functions
///   and an input written `~` have no object;
/// - custom attributes (see custom_attributes.hpp), with those the analysis
///   options add.
///
/// A methods block is static when it has `Static` alone, `Static = true` or
/// `Static` with any value that is not a plain false (`false`, `0`); `~Static`
/// and `Static = false` are not static. A value that is not a literal is
/// taken as static: the analysis claims an object only where it is sure of
/// one. A method of a class folder is taken as not static, since only the
/// class file could say otherwise.
///
/// Made once per analysis from the symbol table, when the class-object
/// analysis is first asked for.
///
/// Invariants: fixed once made; the symbol table outlives it (it holds it).
class ClassObjects final : public ca::tosk::ToskAnalysis {
 public:
  ClassObjects(ca::ast::Program const& program, ca::FileType type,
               std::shared_ptr<ca::nameresolution::SymbolTable const> symbols,
               std::vector<ca::clients::CustomAttribute> addedAttributes);

  bool hasAnnotation(ca::ast::Identifier const& identifier, ca::core::ToskAnnotation annotation) const override;
  bool isCustomAttribute(ca::ast::Attribute const& attribute) const override;
  bool isLogicalCustomAttribute(ca::ast::Attribute const& attribute) const override;

 private:
  void noteClassMethods(ca::ast::Classdef const& classdef);
  void noteClassFolderMethod(ca::ast::Program const& program);
  // Notes the object of `method`: its first output when it constructs, else
  // its first input.
  void noteObject(ca::ast::Function const& method, bool constructs);

  std::shared_ptr<ca::nameresolution::SymbolTable const> symbols_;
  std::unordered_set<ca::nameresolution::SymbolTableEntry const*> objects_;  // the object parameters
  CustomAttributes customAttributes_;
};

}  // namespace frontend
