#pragma once

/// Everything a rule author needs, in one include.
///
/// A rule is a pipeline: it starts at one of the roots of `AllNodes` (one per
/// tree class, plus the use-def records), passes through stages, and ends in
/// a consumer of the rule's own. Every pipeline declared on one `AllNodes`
/// joins one graph, in which equal stages on the same producer are one
/// vertex; `execute` then walks a file once and drives every rule.
///
/// One rule from start to end: "report each assignment of a number literal".
///
/// 1. A stage of the rule's own. A transform gives one result per item. A
///    stage is written on `StageOf`, which holds its parameters (here none):
///    its identity, which decides which stages are one vertex, is its class
///    and those parameters.
///
///     class RightSide final : public StageOf<RightSide, Transform<Assignment const&, Node const&>> {
///      public:
///       std::u16string description() const override { return u"RightSide"; }
///       Node const& transform(Assignment const& assignment, ca::Analysis const&) const override {
///         return *assignment.getRight();
///       }
///     };
///
/// 2. A consumer, which ends the pipeline, here one for nodes of any class.
///    What it does with an item is the application's business; the
///    `MessageHelper` carries the application's sink to it unchanged.
///
///     struct Findings final : MessageSink {
///       std::vector<std::u16string> lines;
///     };
///
///     template <class NodeClass>
///     class Report final : public Consumer<NodeClass const&> {
///      public:
///       explicit Report(std::u16string text) : text_(std::move(text)) {}
///       std::u16string kindDescription() const override { return u"Report"; }
///       std::u16string detailsDescription() const override { return text_; }
///       void consume(NodeClass const& node, ca::Analysis const&, MessageHelper const* helper) const override {
///         fl::i18n::TextStream line;
///         line << node.getSourceRange().first.line << u": " << text_;
///         static_cast<Findings*>(helper->sink)->lines.push_back(line.str());
///       }
///
///      private:
///       std::u16string text_;
///     };
///
/// 3. The pipeline, declared once, and a run over one analysed file.
///    `isa<NumberLiteral>()` keeps the nodes of that class and hands them on
///    as such; every `isa` on one producer is one switch on the node's kind.
///
///     AllNodes all;
///     all.assignment | std::make_unique<RightSide>() | isa<NumberLiteral>()
///         | std::make_shared<Report<NumberLiteral>>(u"a number assigned");
///
///     auto analysed = frontend::analyze("x = 1;\ny = x;\nz = 2;\n", "a.m");
///     Findings findings;
///     MessageHelper helper{&findings};
///     all.execute(*analysed.analysis, &helper);
///     assert(findings.lines == std::vector<std::u16string>({u"1: a number assigned", u"3: a number assigned"}));
///
/// Where to go next: `rulesystem/graph/stage_of.hpp` and
/// `rulesystem/graph/stage.hpp` (predicates, transforms, select-manys), `rulesystem/graph/combinators.hpp` (`!`, `||`),
/// `rulesystem/graph/switch.hpp` (questions with many answers, asked once per
/// item), `rulesystem/graph/combine.hpp` (one stream from several),
/// `rulesystem/graph/subrule.hpp` (one branch asking another), and
/// `rulesystem/execution/all_nodes.hpp` (the roots and the run).

#include "rulesystem/calls/call_arguments.hpp"
#include "rulesystem/calls/call_selection.hpp"
#include "rulesystem/execution/all_nodes.hpp"
#include "rulesystem/execution/message_helper.hpp"
#include "rulesystem/execution/profiler.hpp"
#include "rulesystem/graph/combinators.hpp"
#include "rulesystem/graph/combine.hpp"
#include "rulesystem/graph/consumer.hpp"
#include "rulesystem/graph/pipe_handle.hpp"
#include "rulesystem/graph/producer.hpp"
#include "rulesystem/graph/stage.hpp"
#include "rulesystem/graph/stage_of.hpp"
#include "rulesystem/graph/uncompared.hpp"
#include "rulesystem/graph/subrule.hpp"
#include "rulesystem/graph/switch.hpp"
#include "rulesystem/graph/tree_types.hpp"
#include "rulesystem/syntax/attributes.hpp"
#include "rulesystem/syntax/identifiers.hpp"
#include "rulesystem/syntax/isa.hpp"
#include "rulesystem/syntax/node_relations.hpp"
#include "rulesystem/syntax/operators_and_fields.hpp"
#include "rulesystem/syntax/signature_counts.hpp"
#include "rulesystem/syntax/symbols.hpp"
