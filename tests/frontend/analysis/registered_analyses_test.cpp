// The front end's analyses, each made through `Analysis::get<T>` from its
// registered factory: once per file, one resolution of names for symbols,
// identifier uses and calls, an analysis added by a test beside them, and the
// analyses still to come named when asked for.

#include <gtest/gtest.h>

#include <memory>
#include <stdexcept>
#include <string>

#include "frontend/analysis/name_resolution.hpp"
#include "frontend/analysis/registered_analyses.hpp"
#include "frontend/parse.hpp"
#include "platform/abstractinterpretation/abstract_interpretation_analysis.hpp"
#include "platform/callresolution/call.hpp"
#include "platform/codegeneration/code_generation_analysis.hpp"
#include "platform/context/context_analysis.hpp"
#include "platform/controlflow/control_flow.hpp"
#include "platform/parfor/parfor_analysis.hpp"
#include "platform/tosk/tosk_analysis.hpp"
#include "platform/typevalue/type_value_analysis.hpp"
#include "platform/usedef/usedef_analysis.hpp"
#include "tests/support/analysis_text.hpp"

namespace {

using plexus::testing::analyzed;

constexpr char const* kSource =
    "function r = f(x)\n"
    "  r = g(x) + 1;\n"
    "end\n";

TEST(RegisteredAnalyses, EachIsMadeOnceThroughGetAndNamesAreResolvedOnce) {
  auto result = analyzed(kSource, "f.m");
  ca::clients::AnalysisImpl const& analysis = *result.analysis;

  // The symbol table and the identifier uses are one resolution of names,
  // the one `get<FileSymbols>` made.
  frontend::FileSymbols const& symbols = analysis.get<frontend::FileSymbols>();
  EXPECT_EQ(analysis.getSymbolTable(), static_cast<ca::nameresolution::SymbolTable const*>(&symbols));
  EXPECT_EQ(&analysis.get<ca::nameresolution::SymbolTable>(), analysis.getSymbolTable());
  EXPECT_EQ(analysis.getSymbolTableImpl().get(), analysis.getSymbolTable());
  EXPECT_EQ(analysis.getIdUseAnalysis().get(), static_cast<ca::nameresolution::IdUseAnalysis const*>(&symbols));
  EXPECT_EQ(&analysis.get<ca::nameresolution::IdUseAnalysis>(), analysis.getIdUseAnalysis().get());

  // Every analysis is the one instance of `get`, however it is asked for.
  EXPECT_EQ(analysis.getCallResolutionAnalysis().get(), &analysis.get<ca::callresolution::CallResolutionAnalysis>());
  EXPECT_EQ(analysis.getCallResolutionAnalysis().get(), analysis.getCallResolutionAnalysis().get());
  auto& flow = analysis.get<ca::controlflow::ControlFlowAnalysis>();
  EXPECT_EQ(&analysis.get<ca::controlflow::ControlFlowAnalysis>(), &flow);
  EXPECT_EQ(flow.getGraphs().size(), 2u);  // the file's and f's
  EXPECT_EQ(analysis.getToskAnalysis().get(), &analysis.get<ca::tosk::ToskAnalysis>());
  auto& useDefs = analysis.get<ca::usedef::UseDefAnalysis>();
  EXPECT_EQ(&analysis.get<ca::usedef::UseDefAnalysis>(), &useDefs);
  EXPECT_EQ(useDefs.getAllUseDefs().size(), 3u);  // x defined and used, r defined

  // Another file has its own.
  auto other = analyzed(kSource, "f.m");
  EXPECT_NE(&other.analysis->get<frontend::FileSymbols>(), &symbols);
}

// An analysis that only this test declares, registered beside the front
// end's: made through `get` once, from the analyses it builds on.
struct FunctionCount {
  std::size_t functions = 0;
  static ca::astapi::StringId GetAnalysisId() { return ca::astapi::StringId(u"test::FunctionCount"); }
  static std::shared_ptr<FunctionCount> Create(ca::Analysis const& analysis) {
    return ca::clients::createByProvider<FunctionCount>(analysis);
  }
};

TEST(RegisteredAnalyses, AnAnalysisAddedByATestIsMadeOnceThroughGet) {
  int made = 0;
  auto registry = std::make_shared<ca::clients::AnalysisRegistry>(*frontend::registeredAnalyses());
  registry->add<FunctionCount>([&made](ca::clients::AnalysisImpl const& analysis) {
    ++made;
    auto count = std::make_shared<FunctionCount>();
    for (auto const* symbol : analysis.getSymbolTable()->getSymbols()) count->functions += symbol->isFunction();
    return count;
  });
  frontend::ParseResult parsed = frontend::parse(kSource, "f.m");
  ASSERT_FALSE(parsed.hasErrors());
  ca::clients::AnalysisImpl const analysis(parsed.tree, registry);
  EXPECT_EQ(made, 0);
  FunctionCount const& count = analysis.get<FunctionCount>();
  EXPECT_EQ(count.functions, 1u);  // f; g is external
  EXPECT_EQ(&analysis.get<FunctionCount>(), &count);
  EXPECT_EQ(made, 1);
  // The front end's own registry is left as it was.
  EXPECT_FALSE(frontend::registeredAnalyses()->provides(FunctionCount::GetAnalysisId()));
  EXPECT_THROW(analyzed(kSource, "f.m").analysis->get<FunctionCount>(), std::logic_error);
}

template <class T>
std::string failureOf(ca::clients::AnalysisImpl const& analysis) {
  try {
    analysis.get<T>();
  } catch (std::logic_error const& e) {
    return e.what();
  }
  return "no failure";
}

TEST(RegisteredAnalyses, AnalysesStillToComeAreNamedWhenAskedFor) {
  auto result = analyzed(kSource, "f.m");
  ca::clients::AnalysisImpl const& analysis = *result.analysis;
  EXPECT_EQ(failureOf<ca::typevalue::TypeValueAnalysis>(analysis),
            "this analysis provider computes no ca::typevalue::TypeValueAnalysis");
  EXPECT_EQ(failureOf<ca::abstractinterpretation::AbstractInterpretationAnalysis>(analysis),
            "this analysis provider computes no ca::abstractinterpretation::AbstractInterpretationAnalysis");
  EXPECT_EQ(failureOf<ca::parfor::ParforAnalysis>(analysis),
            "this analysis provider computes no ca::parfor::ParforAnalysis");
  EXPECT_EQ(failureOf<ca::codegeneration::CodeGenerationAnalysis>(analysis),
            "this analysis provider computes no ca::codegeneration::CodeGenerationAnalysis");
  EXPECT_EQ(failureOf<ca::context::ContextAnalysis>(analysis),
            "this analysis provider computes no ca::context::ContextAnalysis");
  // The getters fail alike, and a failure leaves the analyses that work alone.
  EXPECT_THROW(analysis.getContextAnalysis(), std::logic_error);
  EXPECT_NE(analysis.getSymbolTable(), nullptr);
}

}  // namespace
