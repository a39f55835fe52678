#pragma once

// The table of reference pipelines: pipelines over the vocabulary, each
// written once and run two ways. The comparison test declares all of them on
// one `AllNodes`, runs it over every reference snippet, and requires that each
// consumer receives exactly what the naive evaluator gives for its pipeline
// alone; the vocabulary benchmark runs the same table. Each family of the
// vocabulary keeps its pipelines in a file of its own here.

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "rulesystem/execution/all_nodes.hpp"
#include "tests/support/hits.hpp"

namespace plexus::testing {

/// One pipeline of the table, declarable on a graph and runnable naively.
struct ReferencePipeline {
  /// The pipeline as written, from its first root to its last stage.
  std::string text;
  /// Declares the pipeline on `all`, with a recorder at its end that appends
  /// to `lines` and describes items from `*source`.
  std::function<void(ca::rulesystem::AllNodes& all, Lines& lines, std::string const* source)> declare;
  /// The pipeline by itself, run naively over `analysis`.
  std::function<Lines(ca::Analysis const& analysis, std::string const* source)> naive;
  /// Declares the pipeline on `all` with a consumer that only counts, in
  /// `*count`, what reaches it: for measuring the graph, not the recording.
  std::function<void(ca::rulesystem::AllNodes& all, std::size_t* count)> declareCounted;
};

/// A terminal consumer that counts its items.
template <class T>
class ItemCounter final : public ca::rulesystem::Consumer<T> {
 public:
  explicit ItemCounter(std::size_t* count) : count_(count) {}
  std::u16string kindDescription() const override { return u"ItemCounter"; }
  std::u16string detailsDescription() const override { return u""; }
  void consume(T, ca::Analysis const&, ca::rulesystem::MessageHelper const*) const override { ++*count_; }

 private:
  std::size_t* count_;
};

template <class Pipeline>
ReferencePipeline makeReferencePipeline(std::string text, Pipeline pipeline) {
  return {std::move(text),
          [pipeline](ca::rulesystem::AllNodes& all, Lines& lines, std::string const* source) {
            recordHits(pipeline(all), lines, ItemDescriber(source));
          },
          [pipeline](ca::Analysis const& analysis, std::string const* source) {
            NaiveRoots roots;
            return naiveHits(pipeline(roots), analysis, ItemDescriber(source));
          },
          [pipeline](ca::rulesystem::AllNodes& all, std::size_t* count) {
            auto const producer = pipeline(all);
            using Item = typename decltype(producer)::Item;
            producer | std::make_shared<ItemCounter<Item>>(count);
          }};
}

/// A pipeline of the table, written on the roots `all`:
/// `PLEXUS_PIPELINE(all.parenOperation | getCalls{} | getArgument{1})`.
#define PLEXUS_PIPELINE(...) \
  ::plexus::testing::makeReferencePipeline(#__VA_ARGS__, [](auto& all) { return __VA_ARGS__; })

/// A snippet of the analysed language that the table runs over.
struct ReferenceSnippet {
  std::string name;  // what it shows, as a test name
  std::string path;  // the file it stands in (a class file, a folder `@Name`, a package)
  std::string source;
};

// The families, one file each.
std::vector<ReferencePipeline> callPipelines();
std::vector<ReferencePipeline> nodeRelationPipelines();
std::vector<ReferencePipeline> identifierAndSymbolPipelines();
std::vector<ReferencePipeline> operatorAndFieldPipelines();
std::vector<ReferencePipeline> signatureCountPipelines();
std::vector<ReferencePipeline> attributePipelines();

/// Every pipeline of the table, the families in order.
std::vector<ReferencePipeline> allReferencePipelines();

/// Every snippet.
std::vector<ReferenceSnippet> referenceSnippets();

}  // namespace plexus::testing
