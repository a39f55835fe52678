#pragma once

#include <memory>

#include "platform/analysis/provided_analysis.hpp"
#include "platform/ast/ast.hpp"
#include "platform/ast/string_id.hpp"
#include "platform/tosk/tosk_annotation.hpp"

namespace ca::tosk {

/// The class-object model of a code base as one file sees it: classes, their
/// bases, methods and properties, and whether an object is a handle.
/// Reached through `Analysis::get<ToskAnalysis>()` (and `AnalysisImpl`'s getter),
/// which makes it once per analysis through the analysis provider.
///
/// A provider that does not compute it raises std::logic_error when it is
/// asked for. The questions about classes across files (bases, methods and
/// properties elsewhere) come with the model of the code base.
class ToskAnalysis {
 public:
  virtual ~ToskAnalysis() = default;

  /// The key of this analysis in an analysis's cache.
  static astapi::StringId GetAnalysisId() {
    static astapi::StringId const id(u"ca::tosk::ToskAnalysis");
    return id;
  }
  /// Asks the provider of `analysis`, an `AnalysisImpl`, to make it.
  static std::shared_ptr<ToskAnalysis> Create(Analysis const& analysis) {
    return clients::createByProvider<ToskAnalysis>(analysis);
  }

  /// Whether `identifier` bears `annotation`.
  virtual bool hasAnnotation(ast::Identifier const& identifier, core::ToskAnnotation annotation) const = 0;
  /// Whether `attribute` is one that the language does not define where it
  /// stands but that the class-object model accepts there (a custom attribute).
  virtual bool isCustomAttribute(ast::Attribute const& attribute) const = 0;
  /// Whether `attribute` is a custom attribute that takes a logical value.
  virtual bool isLogicalCustomAttribute(ast::Attribute const& attribute) const = 0;
};

}  // namespace ca::tosk
