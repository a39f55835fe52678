#pragma once

#include <memory>
#include <string>
#include <vector>

#include "platform/analysis/analysis.hpp"
#include "platform/ast/syntax_tree.hpp"

namespace ca::nameresolution {
class IdUseAnalysis;
}
namespace ca::callresolution {
class CallResolutionAnalysis;
}
namespace ca::typevalue {
class TypeValueAnalysis;
}
namespace ca::tosk {
class ToskAnalysis;
}
namespace ca::codegeneration {
class CodeGenerationAnalysis;
}
namespace ca::context {
class ContextAnalysis;
}

namespace ca::clients {

class AnalysisImpl;
class UnsupportedFeatures;

/// An attribute name that the caller accepts on one place of a class where
/// the language itself does not define it, as the class-object analysis's
/// own table of custom attributes does (frontend/analysis/custom_attributes.hpp).
struct CustomAttribute {
  std::u16string name;  // compared case-sensitively, as the language reads names
  /// The node whose attribute list it stands in: `Classdef`,
  /// `PropertiesBlock`, `MethodsBlock` or `EventsBlock`.
  lf::astapi::NodeKind place = lf::astapi::NodeKind::PropertiesBlock;
  /// Whether it takes a logical value (`Name`, `~Name`, `Name = true`).
  bool logical = true;
};

/// The options a file is analysed with. Rules read which features code
/// generation does not support; the class-object analysis reads the custom
/// attributes.
struct AnalysisOptions {
  /// What code generation does not support, and why; null when the caller
  /// gives no such table.
  UnsupportedFeatures const* unsupportedFeatures = nullptr;
  /// Custom attributes beyond those the class-object analysis knows, such as
  /// a checker's configuration names; none by default.
  std::vector<CustomAttribute> customAttributes;
};

/// Makes the analyses of one file on behalf of an `AnalysisImpl`, each when
/// `Analysis::get<T>` first asks for it under `T::GetAnalysisId()`. The front
/// end supplies the real one (a registry of factories); tests supply their
/// own answers. A provider may make only some analyses: asking one of the
/// others raises std::logic_error naming it.
class AnalysisProvider {
 public:
  virtual ~AnalysisProvider() = default;
  /// Makes the analysis whose class has `analysisId` as its `GetAnalysisId`,
  /// as a handle to that class converted to void (see `createByProvider`).
  /// This one makes none: std::logic_error "this analysis provider computes
  /// no " and the id.
  virtual std::shared_ptr<void> makeAnalysis(astapi::StringId analysisId, AnalysisImpl const& analysis) const;
};

/// The analysis of a file that owns its syntax tree and hands out the analyses
/// computed with it. Each is made through `Analysis::get<T>` and its cache, by
/// the provider, when first asked; the getters below are short ways to ask.
///
/// Invariants: the tree is never null and outlives every analysis handed out.
class AnalysisImpl : public Analysis {
 public:
  AnalysisImpl(std::shared_ptr<astapi::SyntaxTree const> tree, std::shared_ptr<AnalysisProvider const> provider,
               AnalysisOptions options = {});

  ast::Program const* getProgram() const override { return tree_->getProgram(); }
  FileType getFileType() const override { return tree_->getFileType(); }
  /// The symbol table, made on first use; never null.
  nameresolution::SymbolTable const* getSymbolTable() const override;

  std::shared_ptr<astapi::SyntaxTree const> const& getTree() const noexcept { return tree_; }
  AnalysisProvider const& getProvider() const noexcept { return *provider_; }
  AnalysisOptions const& getAnalysisOptions() const noexcept { return options_; }

  /// The analyses as shared handles, each the instance of `get<T>`.
  std::shared_ptr<nameresolution::SymbolTable const> getSymbolTableImpl() const;
  /// How identifiers are used.
  std::shared_ptr<nameresolution::IdUseAnalysis const> getIdUseAnalysis() const;
  /// Which nodes are calls.
  std::shared_ptr<callresolution::CallResolutionAnalysis const> getCallResolutionAnalysis() const;
  std::shared_ptr<typevalue::TypeValueAnalysis> getTypeValueAnalysis() const;
  std::shared_ptr<tosk::ToskAnalysis> getToskAnalysis() const;
  std::shared_ptr<codegeneration::CodeGenerationAnalysis> getCodeGenerationAnalysis() const;
  std::shared_ptr<context::ContextAnalysis> getContextAnalysis() const;

 private:
  std::shared_ptr<astapi::SyntaxTree const> tree_;
  std::shared_ptr<AnalysisProvider const> provider_;
  AnalysisOptions options_;
};

}  // namespace ca::clients
