// Every stage class of the project, through the real graph: equal parameters
// give one vertex, a change in any one compared parameter gives another, and
// a change in an `Uncompared` one does not. And a scan of the sources, so that
// no stage class escapes the list and no stage writes its own identity.

#include <gtest/gtest.h>

#include <array>
#include <cstddef>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <limits>
#include <map>
#include <memory>
#include <optional>
#include <regex>
#include <set>
#include <sstream>
#include <string>
#include <tuple>
#include <type_traits>
#include <typeinfo>
#include <utility>
#include <vector>

#include <boost/core/demangle.hpp>

#include "bench/call_name_predicate.hpp"
#include "bench/call_name_switch.hpp"
#include "bench/rule_stages.hpp"
#include "rulesystem/execution/all_nodes.hpp"
#include "rulesystem/graph/combinators.hpp"
#include "rulesystem/graph/stage_of.hpp"
#include "rulesystem/graph/subrule.hpp"
#include "rulesystem/syntax/isa.hpp"
#include "tests/examples/doc_example_stages.hpp"
#include "tests/support/fragile_key.hpp"
#include "tests/support/source_scan.hpp"
#include "tests/support/stages.hpp"
#include "tests/support/switchables.hpp"

namespace {

using namespace ca::rulesystem;
using ca::astapi::StringId;
using lf::astapi::NodeKind;

using examples::HasArgumentCount;

/// Which of its two samples each parameter of a stage takes: the first for
/// every parameter, or the second for the one being changed. It notes which
/// parameters the samples gave, so that a parameter without samples is seen.
class SampleChoice {
 public:
  SampleChoice() = default;
  explicit SampleChoice(std::size_t changed) : changed_(changed) {}

  /// The value of parameter `index`: `first`, or `second` when it changes.
  template <class V>
  V pick(std::size_t index, V first, V second) {
    covered_.insert(index);
    return changed_ == index ? std::move(second) : std::move(first);
  }

  /// Notes a parameter whose value the stage makes for itself, new in every
  /// instance: there is nothing to choose, and two instances never share it.
  void madeByTheStage(std::size_t index) {
    covered_.insert(index);
    madeByTheStage_.insert(index);
  }

  std::set<std::size_t> const& covered() const { return covered_; }
  bool isMadeByTheStage(std::size_t index) const { return madeByTheStage_.contains(index); }

 private:
  std::optional<std::size_t> changed_;
  std::set<std::size_t> covered_;
  std::set<std::size_t> madeByTheStage_;
};

// Call counters for the stages that count: two, so that the samples differ.
int firstCounter = 0;
int secondCounter = 0;

template <class S, class... Arguments>
std::unique_ptr<Predicate<typename S::Item>> predicate(Arguments&&... arguments) {
  return std::make_unique<S>(std::forward<Arguments>(arguments)...);
}

/// `Samples<S>::make(all, choice)`: a new stage of class S with the samples
/// that `choice` picks, two for each parameter.
template <class S>
struct Samples {
  static std::unique_ptr<S> make(AllNodes&, SampleChoice&) { return std::make_unique<S>(); }
};

template <>
struct Samples<NotPredicate<Node const&>> {
  static auto make(AllNodes&, SampleChoice& choice) {
    return std::make_unique<NotPredicate<Node const&>>(
        choice.pick(0, predicate<plexus::testing::HasKind>(NodeKind::Row), predicate<plexus::testing::AcceptAll>()));
  }
};

template <>
struct Samples<OrPredicate<Node const&, Node const&, Node const&>> {
  static auto make(AllNodes&, SampleChoice& choice) {
    using plexus::testing::HasKind;
    return std::make_unique<OrPredicate<Node const&, Node const&, Node const&>>(
        choice.pick(0, predicate<HasKind>(NodeKind::Row), predicate<HasKind>(NodeKind::Matrix)),
        choice.pick(1, predicate<HasKind>(NodeKind::Field), predicate<HasKind>(NodeKind::Program)));
  }
};

template <>
struct Samples<SubrulePredicate<Row const&>> {
  static auto make(AllNodes& all, SampleChoice& choice) {
    choice.madeByTheStage(1);
    return std::make_unique<SubrulePredicate<Row const&>>(
        choice.pick(0, all.row | std::make_unique<plexus::testing::HasNumber>(),
                    all.row | std::make_unique<plexus::testing::AcceptAll>()));
  }
};

template <>
struct Samples<plexus::testing::AcceptAll> {
  static auto make(AllNodes&, SampleChoice& choice) {
    return std::make_unique<plexus::testing::AcceptAll>(choice.pick(0, &firstCounter, &secondCounter));
  }
};

template <>
struct Samples<plexus::testing::HasKind> {
  static auto make(AllNodes&, SampleChoice& choice) {
    return std::make_unique<plexus::testing::HasKind>(choice.pick(0, NodeKind::Row, NodeKind::Matrix),
                                                      choice.pick(1, &firstCounter, &secondCounter));
  }
};

template <>
struct Samples<plexus::testing::ComparisonSpy> {
  static auto make(AllNodes&, SampleChoice& choice) {
    return std::make_unique<plexus::testing::ComparisonSpy>(choice.pick(0, 1, 2), &firstCounter);
  }
};

template <>
struct Samples<plexus::testing::FunctionOf> {
  static auto make(AllNodes&, SampleChoice& choice) {
    return std::make_unique<plexus::testing::FunctionOf>(choice.pick(0, &firstCounter, &secondCounter));
  }
};

template <>
struct Samples<plexus::testing::FieldName> {
  static auto make(AllNodes&, SampleChoice& choice) {
    return std::make_unique<plexus::testing::FieldName>(choice.pick(0, &firstCounter, &secondCounter));
  }
};

template <>
struct Samples<HasArgumentCount> {
  static auto make(AllNodes&, SampleChoice& choice) {
    return std::make_unique<HasArgumentCount>(choice.pick(0, std::size_t{1}, std::size_t{2}));
  }
};

template <>
struct Samples<examples::CountedCalls> {
  static auto make(AllNodes&, SampleChoice& choice) {
    return std::make_unique<examples::CountedCalls>(choice.pick(0, &firstCounter, &secondCounter));
  }
};

template <>
struct Samples<plexus::bench::NameIs> {
  static auto make(AllNodes&, SampleChoice& choice) {
    return std::make_unique<plexus::bench::NameIs>(choice.pick(0, StringId(u"plot"), StringId(u"eval")));
  }
};

template <>
struct Samples<plexus::bench::OperatorIs> {
  static auto make(AllNodes&, SampleChoice& choice) {
    return std::make_unique<plexus::bench::OperatorIs>(
        choice.pick(0, lf::astapi::BinaryOperator::Plus, lf::astapi::BinaryOperator::Minus));
  }
};

template <>
struct Samples<plexus::bench::CallNameIs> {
  static auto make(AllNodes&, SampleChoice& choice) {
    return std::make_unique<plexus::bench::CallNameIs>(choice.pick(0, StringId(u"plot"), StringId(u"eval")));
  }
};

/// A producer of items of type Item in `all`.
template <class Item>
Producer<Item> producerOf(AllNodes& all) {
  if constexpr (std::is_same_v<Item, Node const&>) {
    return Producer<Node const&>(all.row->upcast<Node const&>());
  } else if constexpr (std::is_same_v<Item, StringId>) {
    return all.parenOperation | std::make_unique<plexus::bench::CalledName>();
  } else if constexpr (std::is_same_v<Item, lf::astapi::BinaryOperator>) {
    return all.binaryOperation | std::make_unique<plexus::bench::OperatorOf>();
  } else {
    return all.rootOf<std::remove_cvref_t<Item>>();
  }
}

/// The producer that a stage of class S is piped onto: one of its item type,
/// and for a predicate that looks only at the analysis, any.
template <class S>
auto sourceFor(AllNodes& all) {
  if constexpr (!std::derived_from<S, PredicateBase>) {
    return producerOf<typename S::Input>(all);
  } else if constexpr (std::is_same_v<typename S::Item, Typeless>) {
    return all.row;
  } else {
    return producerOf<typename S::Item>(all);
  }
}

template <class P>
struct IsUncompared : std::false_type {};
template <class T>
struct IsUncompared<Uncompared<T>> : std::true_type {};

/// Which parameters of the tuple type Parameters are `Uncompared`.
template <class Parameters, std::size_t... Index>
constexpr auto uncomparedParameters(std::index_sequence<Index...>) {
  return std::array<bool, sizeof...(Index)>{IsUncompared<std::tuple_element_t<Index, Parameters>>::value...};
}

/// The name of a class without its namespaces and template arguments, as its
/// definition spells it.
template <class S>
std::string bareClassName() {
  std::string name = boost::core::demangle(typeid(S).name());
  name = name.substr(0, name.find('<'));
  if (std::size_t const colons = name.rfind("::"); colons != std::string::npos) name = name.substr(colons + 2);
  return name;
}

template <class... Stages>
struct StageList {
  using Types = ::testing::Types<Stages...>;
  static std::vector<std::string> names() { return {bareClassName<Stages>()...}; }
};

// Every stage class of the project, one instance of each class template.
using EveryStageClass = StageList<
    // The library.
    detail::UpcastTransform<Row const&, Node const&>, detail::DowncastTransform<Node const&, Row const&>,
    NotPredicate<Node const&>, OrPredicate<Node const&, Node const&, Node const&>, SubrulePredicate<Row const&>,
    // The tests.
    plexus::testing::AcceptAll, plexus::testing::HasKind, plexus::testing::HasNumber, plexus::testing::IsScript,
    plexus::testing::ComparisonSpy, plexus::testing::FunctionOf, plexus::testing::StatementExpression,
    plexus::testing::ArgumentsOf, plexus::testing::FieldName, plexus::testing::ConstantKey,
    // The doc examples.
    HasArgumentCount, examples::RightSide, examples::CallArguments, examples::ArgumentCount,
    examples::CountedCalls,
    // The benchmarks.
    plexus::bench::CallsByName, plexus::bench::CalledName, plexus::bench::AssignsName, plexus::bench::AssignedName,
    plexus::bench::OperatorOf, plexus::bench::NameIs, plexus::bench::OperatorIs, plexus::bench::CallNameIs,
    plexus::bench::CalledNameKey>;

struct StageName {
  template <class S>
  static std::string GetName(int) {
    return bareClassName<S>();
  }
};

template <class S>
class EveryStage : public ::testing::Test {};
TYPED_TEST_SUITE(EveryStage, EveryStageClass::Types, StageName);

TYPED_TEST(EveryStage, EqualParametersAreOneVertexAndEachComparedParameterTellsVerticesApart) {
  using S = TypeParam;
  using Parameters = typename S::ParameterTypes;
  constexpr std::size_t count = std::tuple_size_v<Parameters>;
  constexpr auto uncompared = uncomparedParameters<Parameters>(std::make_index_sequence<count>{});

  AllNodes all;
  auto const source = sourceFor<S>(all);
  SampleChoice firstSamples;
  auto const first = (source | Samples<S>::make(all, firstSamples)).impl.get();
  std::set<std::size_t> everyParameter;
  for (std::size_t i = 0; i < count; ++i) everyParameter.insert(i);
  ASSERT_EQ(firstSamples.covered(), everyParameter) << "Samples<" << bareClassName<S>() << "> must give each parameter";

  SampleChoice sameSamples;
  EXPECT_EQ((source | Samples<S>::make(all, sameSamples)).impl.get(), first) << "equal parameters, made apart";

  for (std::size_t i = 0; i < count; ++i) {
    if (firstSamples.isMadeByTheStage(i)) {
      // Every instance made its own value, and still the two above were one.
      EXPECT_TRUE(uncompared[i]) << "parameter " << i << " is made by the stage but compared";
      continue;
    }
    SampleChoice changed(i);
    auto const vertex = (source | Samples<S>::make(all, changed)).impl.get();
    if (uncompared[i]) {
      EXPECT_EQ(vertex, first) << "parameter " << i << " is Uncompared, outside the identity";
    } else {
      EXPECT_NE(vertex, first) << "parameter " << i << " changed, and still one vertex";
      SampleChoice changedAgain(i);
      EXPECT_EQ((source | Samples<S>::make(all, changedAgain)).impl.get(), vertex) << "parameter " << i;
    }
  }
}

// --- The scan of the sources ---

struct SourceScan {
  /// The classes that derive from StageOf, by name, once per definition.
  std::multiset<std::string> stageClasses;
  /// The declarations of a `lessThan`, by file relative to the source tree.
  std::map<std::string, int> lessThanDeclarations;
};

/// Scans the C++ sources under `root`, except build trees (folders with a
/// CMakeCache.txt), hidden folders, and the stage classes that a test
/// expects not to compile.
SourceScan scanSources(std::filesystem::path const& root) {
  std::regex const lessThan(R"(\bbool\s+lessThan\s*\()");
  std::set<std::string> const extensions{".hpp", ".cpp", ".h", ".cc"};
  SourceScan scan;
  for (auto entry = std::filesystem::recursive_directory_iterator(root);
       entry != std::filesystem::recursive_directory_iterator(); ++entry) {
    std::filesystem::path const& path = entry->path();
    if (entry->is_directory()) {
      bool const hidden = path.filename().string().starts_with(".");
      bool const buildTree = std::filesystem::exists(path / "CMakeCache.txt");
      // Sources that must not compile, each for the flaw its test names.
      bool const rejected = path.filename() == "stage_of_rejects";
      // A project of its own, built against the installed package: its
      // stages cannot be linked into this test.
      bool const outsideProject = path.filename() == "package" && path.parent_path().filename() == "tests";
      if (hidden || buildTree || rejected || outsideProject) entry.disable_recursion_pending();
      continue;
    }
    if (!entry->is_regular_file() || !extensions.contains(path.extension().string())) continue;
    std::ifstream in(path, std::ios::binary);
    std::string const text{std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
    if (text.find("StageOf") == std::string::npos && text.find("lessThan") == std::string::npos) continue;
    std::string const code = plexus::testing::codeOnly(text);
    // The vocabulary's stage classes are local to their factories, out of
    // reach of this list: their families' tests check their identity, and
    // vocabulary_coverage_test.cpp holds every factory to a test. The
    // checker's rules keep their own stages in their files, tested by the
    // rules' annotated cases.
    std::string const relative = std::filesystem::relative(path, root).generic_string();
    bool const vocabulary = relative.starts_with("rulesystem/calls/") || relative.starts_with("rulesystem/syntax/") ||
                            relative.starts_with("tools/rules/");
    if (!vocabulary) {
      for (std::string& name : plexus::testing::stageClassesIn(code)) scan.stageClasses.insert(std::move(name));
    }
    auto const declarations =
        std::distance(std::sregex_iterator(code.begin(), code.end(), lessThan), std::sregex_iterator());
    if (declarations > 0) {
      scan.lessThanDeclarations[relative] = static_cast<int>(declarations);
    }
  }
  return scan;
}

TEST(EveryStageCoverage, TheTypedListNamesEveryStageClassOfTheSourcesAndNoStageWritesItsOwnOrder) {
  SourceScan const scan = scanSources(PLEXUS_SOURCE_DIR);
  std::vector<std::string> const listed = EveryStageClass::names();
  std::multiset<std::string> const inList(listed.begin(), listed.end());
  EXPECT_EQ(scan.stageClasses, inList) << "a stage class in the sources is missing from EveryStageClass, or one "
                                          "listed there is gone";

  // Only the three stage bases declare `lessThan` (pure virtual), and StageOf
  // gives it, final. Any other is a stage that bypasses StageOf, whose order
  // could leave a parameter out of its identity.
  std::map<std::string, int> const allowed{{"rulesystem/graph/stage.hpp", 3}, {"rulesystem/graph/stage_of.hpp", 1}};
  EXPECT_EQ(scan.lessThanDeclarations, allowed);
}

TEST(EveryStageCoverage, TheScanSeesThroughCommentsAndStringsButNotPastAClassHead) {
  std::string const text = R"(
    // class InComment final : public StageOf<InComment, Predicate<Row const&>> {};
    /* class InBlock final : public StageOf<InBlock, Predicate<Row const&>> {}; */
    char const* pattern = "class InString final : public StageOf<InString, Predicate<Row const&>>";
    template <class T>
    class Real final
        : public ca::rulesystem::StageOf<Real<T>, Predicate<T>> {};
    class Other final : public RunState, public StageOf<Other, Predicate<Row const&>> {};
  )";
  std::string const code = plexus::testing::codeOnly(text);
  EXPECT_EQ(code.find("InComment"), std::string::npos);
  EXPECT_EQ(code.find("InBlock"), std::string::npos);
  EXPECT_EQ(code.find("InString"), std::string::npos);
  EXPECT_EQ(plexus::testing::stageClassesIn(code), (std::vector<std::string>{"Real", "Other"}));
}

// --- What the parameter order accepts ---

struct Entry {
  bool isA() const { return true; }
  bool isB() const { return false; }
};

TEST(StageParameterOrder, ValuesAndStagesHaveAnOrderButAddressesDoNot) {
  static_assert(StageParameter<int> && StageParameter<NodeKind> && StageParameter<std::u16string> &&
                StageParameter<StringId> && StageParameter<std::set<StringId>> && StageParameter<double>);
  static_assert(StageParameter<std::unique_ptr<Predicate<Node const&>>> &&
                StageParameter<std::shared_ptr<TransformBase>> && StageParameter<Producer<Row const&>>);
  static_assert(StageParameter<Uncompared<int*>> && StageParameter<bool (Entry::*)() const>);
  static_assert(!StageParameter<int*> && !StageParameter<std::unique_ptr<int>> &&
                !StageParameter<std::shared_ptr<Node const>> && !StageParameter<std::vector<int const*>> &&
                !StageParameter<std::pair<int, Node const*>> && !StageParameter<std::optional<int*>> &&
                !StageParameter<std::u16string const&>);

  // Owned stages go by identity, not address.
  using Owned = std::unique_ptr<Predicate<Node const&>>;
  Owned const row = std::make_unique<plexus::testing::HasKind>(NodeKind::Row);
  Owned const rowAgain = std::make_unique<plexus::testing::HasKind>(NodeKind::Row);
  Owned const matrix = std::make_unique<plexus::testing::HasKind>(NodeKind::Matrix);
  EXPECT_FALSE(ParameterOrder<Owned>::less(row, rowAgain) || ParameterOrder<Owned>::less(rowAgain, row));
  EXPECT_NE(ParameterOrder<Owned>::less(row, matrix), ParameterOrder<Owned>::less(matrix, row));

  // A NaN is one value, not equal to every number.
  double const nan = std::numeric_limits<double>::quiet_NaN();
  EXPECT_TRUE(ParameterOrder<double>::less(1.0, nan) || ParameterOrder<double>::less(nan, 1.0));
  EXPECT_FALSE(ParameterOrder<double>::less(nan, nan));

  // Member-function pointers go by the process-wide comparator.
  using Method = bool (Entry::*)() const;
  EXPECT_FALSE(ParameterOrder<Method>::less(&Entry::isA, &Entry::isA));
  EXPECT_NE(ParameterOrder<Method>::less(&Entry::isA, &Entry::isB),
            ParameterOrder<Method>::less(&Entry::isB, &Entry::isA));
}

// --- The checked build's guard against comparing across classes ---

TEST(StageOfDeathTest, CheckedBuildsStopAComparisonAcrossClasses) {
#ifndef PLEXUS_CHECKED
  GTEST_SKIP() << "only checked builds (debug, sanitizers) check the class of a compared stage";
#else
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  plexus::testing::HasKind const row(NodeKind::Row);
  plexus::testing::AcceptAll const all;
  EXPECT_DEATH(static_cast<void>(row.lessThan(&all)),
               "StageOf::lessThan of plexus::testing::HasKind was given a stage of another class, "
               "plexus::testing::AcceptAll");
  // The same class compares.
  plexus::testing::HasKind const matrix(NodeKind::Matrix);
  EXPECT_NE(row.lessThan(&matrix), matrix.lessThan(&row));
#endif
}

}  // namespace
