// The analysis object: its cache of analyses, the providers and registries
// that make them, the lazily made symbol table, and the use-def records.

#include <gtest/gtest.h>

#include <stdexcept>
#include <typeinfo>

#include "platform/abstractinterpretation/abstract_interpretation_analysis.hpp"
#include "platform/analysis/analysis_registry.hpp"
#include "platform/codegeneration/code_generation_analysis.hpp"
#include "platform/context/context_analysis.hpp"
#include "platform/nameresolution/symbol_table.hpp"
#include "platform/parfor/parfor_analysis.hpp"
#include "platform/tosk/tosk_analysis.hpp"
#include "platform/typevalue/type_value_analysis.hpp"
#include "platform/usedef/usedef_analysis.hpp"
#include "tests/support/test_analysis.hpp"
#include "tests/support/tree_maker.hpp"

namespace {

using plexus::testing::TreeMaker;

// An analysis class reached through get<T>, counting how often it is made.
struct Counted {
  static inline int made = 0;
  static inline bool fail = false;
  static inline bool reenter = false;
  int serial = 0;
  static ca::astapi::StringId GetAnalysisId() { return ca::astapi::StringId(u"test::Counted"); }
  static std::shared_ptr<Counted> Create(ca::Analysis const& analysis) {
    if (fail) throw std::runtime_error("analysis failed");
    if (reenter) {
      // Asks for itself while being made: the inner instance is entered first.
      reenter = false;
      analysis.get<Counted>();
    }
    auto made_now = std::make_shared<Counted>();
    made_now->serial = ++made;
    return made_now;
  }
};

struct AnalysisTest : ::testing::Test {
  void SetUp() override {
    Counted::made = 0;
    Counted::fail = false;
    Counted::reenter = false;
  }
  TreeMaker t;
  std::shared_ptr<plexus::testing::TestProvider> provider = std::make_shared<plexus::testing::TestProvider>();
  std::unique_ptr<ca::clients::AnalysisImpl> analysis = plexus::testing::makeAnalysis(t.program({}), provider);
};

TEST_F(AnalysisTest, GetMakesAnAnalysisOnceAndReturnsTheCachedOne) {
  Counted& first = analysis->get<Counted>();
  Counted& second = analysis->get<Counted>();
  EXPECT_EQ(&first, &second);
  EXPECT_EQ(Counted::made, 1);
  // Another analysis object has its own cache.
  auto other = plexus::testing::makeAnalysis(TreeMaker().program({}));
  EXPECT_NE(&other->get<Counted>(), &first);
  EXPECT_EQ(Counted::made, 2);
}

TEST_F(AnalysisTest, FailedCreateLeavesTheCacheAsItWas) {
  Counted::fail = true;
  EXPECT_THROW(analysis->get<Counted>(), std::runtime_error);
  Counted::fail = false;
  EXPECT_EQ(analysis->get<Counted>().serial, 1);
}

TEST_F(AnalysisTest, AnEntryMadeMeanwhileStaysAndTheNewOneIsDropped) {
  Counted::reenter = true;
  Counted& result = analysis->get<Counted>();
  EXPECT_EQ(Counted::made, 2);
  EXPECT_EQ(result.serial, 1);
  EXPECT_EQ(&analysis->get<Counted>(), &result);
}

TEST_F(AnalysisTest, SymbolTableIsMadeOnFirstUseOnly) {
  EXPECT_EQ(provider->symbolTablesMade, 0);
  EXPECT_NE(analysis->getSymbolTable(), nullptr);
  EXPECT_EQ(analysis->getSymbolTable(), analysis->getSymbolTableImpl().get());
  EXPECT_EQ(provider->symbolTablesMade, 1);
  EXPECT_EQ(analysis->getProgram(), analysis->getTree()->getProgram());
  EXPECT_EQ(analysis->getFileType(), ca::FileType::Script);
}

TEST_F(AnalysisTest, AnalysesThatTheProviderDoesNotMakeAreNamedWhenAsked) {
  try {
    analysis->getCallResolutionAnalysis();
    ADD_FAILURE() << "no exception";
  } catch (std::logic_error const& e) {
    EXPECT_STREQ(e.what(), "this analysis provider computes no ca::callresolution::CallResolutionAnalysis");
  }
  EXPECT_THROW(analysis->getIdUseAnalysis(), std::logic_error);
}

// Analyses made through the provider under their id: one instance per
// analysis, the same through `get<T>` and the getter, and asked only when
// first wanted.
class TypeValuesForTest final : public ca::typevalue::TypeValueAnalysis {
 public:
  int marker = 42;
};
class ParforForTest final : public ca::parfor::ParforAnalysis {};

class ProviderOfTwo final : public ca::clients::AnalysisProvider {
 public:
  std::shared_ptr<void> makeAnalysis(ca::astapi::StringId id, ca::clients::AnalysisImpl const& a) const override {
    ++asked;
    if (id == ca::typevalue::TypeValueAnalysis::GetAnalysisId()) {
      return std::shared_ptr<ca::typevalue::TypeValueAnalysis>(std::make_shared<TypeValuesForTest>());
    }
    if (id == ca::parfor::ParforAnalysis::GetAnalysisId()) {
      return std::shared_ptr<ca::parfor::ParforAnalysis>(std::make_shared<ParforForTest>());
    }
    if (id == ca::tosk::ToskAnalysis::GetAnalysisId()) return nullptr;  // a faulty provider
    return AnalysisProvider::makeAnalysis(id, a);
  }
  mutable int asked = 0;
};

TEST_F(AnalysisTest, ProvidedAnalysesAreMadeOnceUnderTheirIdAndNamedWhenMissing) {
  auto twoProvider = std::make_shared<ProviderOfTwo>();
  ca::clients::AnalysisImpl const impl(TreeMaker().program({}), twoProvider);
  EXPECT_EQ(twoProvider->asked, 0);
  auto const typeValues = impl.getTypeValueAnalysis();
  EXPECT_EQ(typeValues.get(), &impl.get<ca::typevalue::TypeValueAnalysis>());
  EXPECT_EQ(dynamic_cast<TypeValuesForTest&>(*typeValues).marker, 42);
  EXPECT_NE(dynamic_cast<ParforForTest*>(&impl.get<ca::parfor::ParforAnalysis>()), nullptr);
  impl.get<ca::parfor::ParforAnalysis>();
  EXPECT_EQ(twoProvider->asked, 2);

  try {
    impl.getContextAnalysis();
    ADD_FAILURE() << "no exception";
  } catch (std::logic_error const& e) {
    EXPECT_STREQ(e.what(), "this analysis provider computes no ca::context::ContextAnalysis");
  }
  try {
    impl.getToskAnalysis();
    ADD_FAILURE() << "no exception";
  } catch (std::logic_error const& e) {
    EXPECT_STREQ(e.what(), "AnalysisProvider made no ca::tosk::ToskAnalysis");
  }
  EXPECT_THROW(impl.getCodeGenerationAnalysis(), std::logic_error);
  EXPECT_THROW(impl.get<ca::abstractinterpretation::AbstractInterpretationAnalysis>(), std::logic_error);
  EXPECT_EQ(impl.getAnalysisOptions().unsupportedFeatures, nullptr);
}

// An analysis that is not an AnalysisImpl has no provider to ask.
TEST(ProvidedAnalysis, CreateOnAnotherAnalysisIsABadCast) {
  class Bare final : public ca::Analysis {
   public:
    ca::ast::Program const* getProgram() const override { return nullptr; }
    ca::FileType getFileType() const override { return ca::FileType::Script; }
    ca::nameresolution::SymbolTable const* getSymbolTable() const override { return nullptr; }
  } const bare;
  EXPECT_THROW(bare.get<ca::typevalue::TypeValueAnalysis>(), std::bad_cast);
}

// An analysis that only this test declares and registers: made through
// `get<T>` by its registered factory, once per analysis object.
struct NodeCount {
  std::size_t statements = 0;
  static ca::astapi::StringId GetAnalysisId() { return ca::astapi::StringId(u"test::NodeCount"); }
  static std::shared_ptr<NodeCount> Create(ca::Analysis const& analysis) {
    return ca::clients::createByProvider<NodeCount>(analysis);
  }
};

TEST(AnalysisRegistry, ARegisteredAnalysisIsMadeOnceThroughGetAndCached) {
  int made = 0;
  auto registry = std::make_shared<ca::clients::AnalysisRegistry>();
  registry->add<NodeCount>([&made](ca::clients::AnalysisImpl const& analysis) {
    ++made;
    auto count = std::make_shared<NodeCount>();
    count->statements = analysis.getProgram()->getBody().size();
    return count;
  });
  EXPECT_TRUE(registry->provides(NodeCount::GetAnalysisId()));
  EXPECT_FALSE(registry->provides(ca::usedef::UseDefAnalysis::GetAnalysisId()));

  TreeMaker t;
  ca::clients::AnalysisImpl const analysis(t.program({t.stmt(t.num(1)), t.stmt(t.num(2))}), registry);
  EXPECT_EQ(made, 0);  // nothing is made before it is asked for
  NodeCount& first = analysis.get<NodeCount>();
  EXPECT_EQ(first.statements, 2u);
  EXPECT_EQ(&analysis.get<NodeCount>(), &first);
  EXPECT_EQ(analysis.getHandle<NodeCount>().get(), &first);
  EXPECT_EQ(made, 1);
  // Another analysis object with the same registry makes its own.
  ca::clients::AnalysisImpl const other(TreeMaker().program({}), registry);
  EXPECT_EQ(other.get<NodeCount>().statements, 0u);
  EXPECT_EQ(made, 2);

  // What the registry has no factory for is named, as by any provider.
  try {
    analysis.get<ca::usedef::UseDefAnalysis>();
    ADD_FAILURE() << "no exception";
  } catch (std::logic_error const& e) {
    EXPECT_STREQ(e.what(), "this analysis provider computes no ca::usedef::UseDefAnalysis");
  }
}

TEST(AnalysisRegistry, OneFactoryPerAnalysisAndAFactoryThatMakesNothingIsNamed) {
  ca::clients::AnalysisRegistry registry;
  registry.add<NodeCount>([](ca::clients::AnalysisImpl const&) { return std::shared_ptr<NodeCount>(); });
  try {
    registry.add<NodeCount>([](ca::clients::AnalysisImpl const&) { return std::make_shared<NodeCount>(); });
    ADD_FAILURE() << "no exception";
  } catch (std::logic_error const& e) {
    EXPECT_STREQ(e.what(), "two factories registered for test::NodeCount");
  }
  ca::clients::AnalysisImpl const analysis(TreeMaker().program({}),
                                           std::make_shared<ca::clients::AnalysisRegistry>(registry));
  try {
    analysis.get<NodeCount>();
    ADD_FAILURE() << "no exception";
  } catch (std::logic_error const& e) {
    EXPECT_STREQ(e.what(), "AnalysisProvider made no test::NodeCount");
  }
}

// A factory may hand out a class derived from the analysis, and one object
// may serve as two analyses; each is found as its own class.
class BothTables final : public ca::nameresolution::SymbolTable, public ca::nameresolution::IdUseAnalysis {
 public:
  ca::nameresolution::SymbolTableEntry const* getSymbol(ca::ast::Identifier const&) const override { return nullptr; }
  std::vector<ca::nameresolution::SymbolTableEntry const*> getSymbols() const override { return {}; }
  bool isArgumentSignature(ca::ast::Identifier const&) const override { return false; }
  bool isDotAssignment(ca::ast::Identifier const&) const override { return true; }
};

TEST(AnalysisRegistry, OneObjectServesAsTwoAnalysesThroughItsBases) {
  auto const both = std::make_shared<BothTables>();
  auto registry = std::make_shared<ca::clients::AnalysisRegistry>();
  registry->add<ca::nameresolution::SymbolTable>([both](ca::clients::AnalysisImpl const&) { return both; })
      .add<ca::nameresolution::IdUseAnalysis>([both](ca::clients::AnalysisImpl const&) { return both; });
  TreeMaker t;
  ca::ast::Identifier const* x = t.id("x");
  ca::clients::AnalysisImpl const analysis(t.program({t.stmt(x)}), registry);
  EXPECT_EQ(analysis.getSymbolTable(), static_cast<ca::nameresolution::SymbolTable const*>(both.get()));
  EXPECT_EQ(analysis.getIdUseAnalysis().get(), static_cast<ca::nameresolution::IdUseAnalysis const*>(both.get()));
  EXPECT_TRUE(analysis.getIdUseAnalysis()->isDotAssignment(*x));
}

TEST_F(AnalysisTest, RequiresATreeAndAProvider) {
  EXPECT_THROW(ca::clients::AnalysisImpl(nullptr, provider), std::invalid_argument);
  EXPECT_THROW(ca::clients::AnalysisImpl(TreeMaker().program({}), nullptr), std::invalid_argument);
}

TEST(UseDef, RecordKindsDecideDefinitionAndUseAndBothShareOneBase) {
  TreeMaker t;
  auto* x = t.id("x");
  ca::usedef::FullAssignmentDef full(x);
  ca::usedef::PartialAssignmentUseDef partial(x);
  ca::usedef::VariableUse use(x);
  ca::usedef::InputDef input(x);

  EXPECT_TRUE(full.isDefinition());
  EXPECT_FALSE(full.isUse());
  EXPECT_EQ(full.getKind(), ca::usedef::FullAssignmentDef::ClassKind);
  EXPECT_TRUE(partial.isDefinition());
  EXPECT_TRUE(partial.isUse());
  EXPECT_EQ(partial.getKind(), ca::usedef::PartialAssignmentUseDef::ClassKind);
  EXPECT_FALSE(use.isDefinition());
  EXPECT_TRUE(use.isUse());
  EXPECT_EQ(input.getKind(), ca::usedef::UseDefBase::Kind::InputDef);

  ca::usedef::UseDefBase const* base = &partial;
  auto const* asDefinition = dynamic_cast<ca::usedef::Definition const*>(base);
  auto const* asUse = dynamic_cast<ca::usedef::Use const*>(base);
  ASSERT_NE(asDefinition, nullptr);
  ASSERT_NE(asUse, nullptr);
  EXPECT_EQ(static_cast<ca::usedef::UseDefBase const*>(asDefinition), static_cast<ca::usedef::UseDefBase const*>(asUse));
  EXPECT_EQ(asUse->getIdentifier(), x);
  EXPECT_EQ(dynamic_cast<ca::usedef::Use const*>(static_cast<ca::usedef::UseDefBase const*>(&full)), nullptr);
  // The facets agree with the checked casts.
  EXPECT_EQ(base->asDefinition(), asDefinition);
  EXPECT_EQ(base->asUse(), asUse);
  EXPECT_EQ(full.asUse(), nullptr);
  EXPECT_EQ(use.asDefinition(), nullptr);
  EXPECT_EQ(use.asUse(), &use);

  EXPECT_EQ(use.getDefinition(), nullptr);
  use.setDefinitions({&input, &full});
  EXPECT_EQ(use.getDefinition(), &full);
  EXPECT_EQ(use.getDefinitions().size(), 2u);
}

TEST(UseDef, AnalysisHandsOutItsRecordsInOrder) {
  TreeMaker t;
  plexus::testing::UseDefRecords records;
  records.push_back(std::make_unique<ca::usedef::FullAssignmentDef>(t.id("a")));
  records.push_back(std::make_unique<ca::usedef::VariableUse>(t.id("b")));
  ca::usedef::UseDefBase const* first = records[0].get();
  ca::usedef::UseDefBase const* second = records[1].get();
  ca::usedef::UseDefAnalysis analysis(std::move(records));
  EXPECT_EQ(analysis.getAllUseDefs(), (std::vector<ca::usedef::UseDefBase const*>{first, second}));
  EXPECT_EQ(ca::usedef::UseDefAnalysis::GetAnalysisId(), ca::astapi::StringId(u"ca::usedef::UseDefAnalysis"));
}

}  // namespace
