#pragma once

// End-to-end runs of pipelines over source text, written out as `line:col
// text` lines: a test reads as its snippet and the hits it expects.
//
//     auto const hits = hitsOf("x = f(1, 2);\n", [](auto& all) { return all.parenOperation | getCalls{} | getArgument{2}; });
//     EXPECT_EQ(hits, Lines({"1:10 2"}));

#include <functional>
#include <map>
#include <memory>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

#include "frontend/analyze.hpp"
#include "platform/callresolution/call.hpp"
#include "platform/nameresolution/symbol_table.hpp"
#include "platform/usedef/usedef.hpp"
#include "rulesystem/execution/all_nodes.hpp"
#include "tests/support/analysis_text.hpp"
#include "tests/support/naive_pipeline.hpp"
#include "tests/support/recorder.hpp"

namespace plexus::testing {

using Lines = std::vector<std::string>;

/// The text of the source between the first and the last character of a
/// range, the last one whole.
inline std::string textOf(std::string const& source, lf::astapi::SourceRange const& range) {
  std::size_t const first = range.first.offset;
  std::size_t end = range.last.offset;
  if (first >= source.size() || end < first) return "";
  auto const lead = static_cast<unsigned char>(source[std::min(end, source.size() - 1)]);
  end += lead < 0x80 ? 1 : lead >= 0xF0 ? 4 : lead >= 0xE0 ? 3 : 2;
  return source.substr(first, std::min(end, source.size()) - first);
}

inline std::string positionOf(ca::ast::Node const& node) {
  auto const& at = node.getSourceRange().first;
  return std::to_string(at.line) + ":" + std::to_string(at.column);
}

/// `line:col text` of an item as a consumer receives it: a node with its
/// source text; a call, a use or a definition at its node; a symbol at its
/// first occurrence, with its name.
class ItemDescriber {
 public:
  explicit ItemDescriber(std::string const* source) : source_(source) {}

  std::string operator()(ca::ast::Node const& node) const {
    return positionOf(node) + " " + textOf(*source_, node.getSourceRange());
  }
  std::string operator()(ca::callresolution::Call const& call) const { return (*this)(*call.getNode()); }
  std::string operator()(ca::Symbol const& symbol) const {
    auto const occurrences = symbol.getOccurrences();
    std::string const name = text(symbol.getName());
    return occurrences.empty() ? "-:- " + name : positionOf(*occurrences.front()) + " " + name;
  }
  std::string operator()(ca::usedef::UseDefBase const* record) const { return (*this)(*record->getIdentifier()); }

 private:
  std::string const* source_;
};

/// Attaches to `producer` a recorder that describes each item it receives.
template <class T>
void recordHits(ca::rulesystem::Producer<T> const& producer, Lines& lines, ItemDescriber describe) {
  producer | std::make_shared<Recorder<T>>(lines, [describe](T item) { return describe(item); });
}

/// The items of a naive pipeline for one analysis, described.
template <class T>
Lines naiveHits(Naive<T> const& pipeline, ca::Analysis const& analysis, ItemDescriber describe) {
  Lines lines;
  pipeline.each(analysis, [&](T item) { lines.push_back(describe(item)); });
  return lines;
}

/// A provider that answers some analyses itself and leaves the others to the
/// front end: a test substitutes what the front end cannot yet give.
class SubstitutingProvider final : public ca::clients::AnalysisProvider {
 public:
  using Make = std::function<std::shared_ptr<void>(ca::clients::AnalysisImpl const&)>;

  SubstitutingProvider(ca::clients::AnalysisProvider const& base, std::map<ca::astapi::StringId, Make> made)
      : base_(&base), made_(std::move(made)) {}
  std::shared_ptr<void> makeAnalysis(ca::astapi::StringId id, ca::clients::AnalysisImpl const& analysis) const override {
    if (auto found = made_.find(id); found != made_.end()) return found->second(analysis);
    return base_->makeAnalysis(id, analysis);
  }

 private:
  ca::clients::AnalysisProvider const* base_;
  std::map<ca::astapi::StringId, Make> made_;
};

/// An analysis of another make than the front end's (no `AnalysisImpl`), over
/// the tree and symbols of one that is: the stages that need the front end's
/// analyses must refuse it, the others must not mind.
class ForeignAnalysis final : public ca::Analysis {
 public:
  explicit ForeignAnalysis(ca::Analysis const& wrapped) : wrapped_(&wrapped) {}
  ca::ast::Program const* getProgram() const override { return wrapped_->getProgram(); }
  ca::FileType getFileType() const override { return wrapped_->getFileType(); }
  ca::nameresolution::SymbolTable const* getSymbolTable() const override { return wrapped_->getSymbolTable(); }

 private:
  ca::Analysis const* wrapped_;
};

/// One analysed snippet, kept with its source for the descriptions.
struct AnalysedSnippet {
  std::string source;
  frontend::AnalysisResult result;
  std::shared_ptr<ca::clients::AnalysisImpl> analysis;  // the front end's, or one with substitutes

  ItemDescriber describer() const { return ItemDescriber(&source); }
};

/// Analyses `source`; the analyses `substitutes` names come from there instead
/// of the front end (made with `std::make_shared<T>(...)`, as a handle to T).
inline AnalysedSnippet analyse(std::string source, std::string const& path = "t.m",
                               std::map<ca::astapi::StringId, SubstitutingProvider::Make> substitutes = {}) {
  AnalysedSnippet snippet{std::move(source), {}, nullptr};
  snippet.result = analyzed(snippet.source, path);
  snippet.analysis = snippet.result.analysis;
  if (!substitutes.empty()) {
    auto provider = std::make_shared<SubstitutingProvider>(snippet.result.analysis->getProvider(), std::move(substitutes));
    snippet.analysis = std::make_shared<ca::clients::AnalysisImpl>(snippet.result.analysis->getTree(), provider);
    // The base provider lives in the front end's analysis, kept alive with it.
  }
  return snippet;
}

/// What the consumer at the end of `pipeline` receives when the graph runs
/// over `snippet`. `pipeline` takes the roots and returns the producer to
/// record: `[](auto& all) { return all.program | getAllSymbols(); }`.
template <class Pipeline>
Lines hitsOf(AnalysedSnippet const& snippet, Pipeline pipeline) {
  ca::rulesystem::AllNodes all;
  Lines lines;
  recordHits(pipeline(all), lines, snippet.describer());
  all.execute(*snippet.analysis, nullptr);
  return lines;
}

template <class Pipeline>
Lines hitsOf(std::string source, Pipeline pipeline, std::string const& path = "t.m") {
  return hitsOf(analyse(std::move(source), path), std::move(pipeline));
}

/// The same, from the naive evaluator: the pipeline's stages run alone.
template <class Pipeline>
Lines naiveHitsOf(AnalysedSnippet const& snippet, Pipeline pipeline) {
  NaiveRoots roots;
  return naiveHits(pipeline(roots), *snippet.analysis, snippet.describer());
}

}  // namespace plexus::testing
