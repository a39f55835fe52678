#pragma once

#include <functional>
#include <memory>
#include <type_traits>
#include <unordered_map>
#include <utility>

#include "platform/analysis/analysis_impl.hpp"
#include "platform/ast/string_id.hpp"

namespace ca::clients {

/// A provider made of one factory per analysis, found by the analysis's id:
/// adding an analysis to a provider is one `add` line. Each factory is called
/// by `Analysis::get<T>` (through `T::Create`), at most once per analysis
/// object, and may ask that object for the analyses it builds on.
///
///     AnalysisRegistry registry;
///     registry.add<ca::controlflow::ControlFlowAnalysis>(
///         [](AnalysisImpl const& analysis) { return frontend::buildControlFlow(*analysis.getProgram()); });
///
/// Invariants: one factory per id; a registry is not changed once it is
/// shared with analyses.
class AnalysisRegistry final : public AnalysisProvider {
 public:
  using Factory = std::function<std::shared_ptr<void>(AnalysisImpl const&)>;

  /// Registers `make` as the factory of analysis T: called with the analysis
  /// being asked, it returns a shared handle to a T (or to a class derived
  /// from it). std::logic_error when T's id has a factory already.
  template <class T, class Make>
  AnalysisRegistry& add(Make make) {
    static_assert(std::is_invocable_v<Make const&, AnalysisImpl const&>,
                  "an analysis factory is called with the AnalysisImpl being asked");
    insert(T::GetAnalysisId(), [make = std::move(make)](AnalysisImpl const& analysis) -> std::shared_ptr<void> {
      // Converted to T first: the cache hands the handle out as a T.
      std::shared_ptr<T> made = make(analysis);
      return made;
    });
    return *this;
  }

  /// Whether an analysis with this id has a factory here.
  bool provides(astapi::StringId analysisId) const { return factories_.count(analysisId) != 0; }

  /// Calls the factory registered under `analysisId`; std::logic_error
  /// "this analysis provider computes no " and the id when there is none.
  std::shared_ptr<void> makeAnalysis(astapi::StringId analysisId, AnalysisImpl const& analysis) const override;

 private:
  void insert(astapi::StringId analysisId, Factory factory);

  std::unordered_map<astapi::StringId, Factory> factories_;
};

}  // namespace ca::clients
