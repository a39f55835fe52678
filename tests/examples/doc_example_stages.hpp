#pragma once

// The stages and the consumer that the doc examples of the headers and the
// README use, word for word as those show them (doc_examples_sync_test.cpp
// reads this file with doc_examples_test.cpp). The stage identity test covers
// the stages here like every other stage class.

#include <cstddef>
#include <functional>
#include <memory>
#include <set>
#include <string>
#include <vector>

#include "rulesystem/rulesystem.hpp"

namespace examples {

using namespace ca::rulesystem;

// rulesystem/rulesystem.hpp, step 1.
class RightSide final : public StageOf<RightSide, Transform<Assignment const&, Node const&>> {
 public:
  std::u16string description() const override { return u"RightSide"; }
  Node const& transform(Assignment const& assignment, ca::Analysis const&) const override {
    return *assignment.getRight();
  }
};

// rulesystem/rulesystem.hpp, step 2.
struct Findings final : MessageSink {
  std::vector<std::u16string> lines;
};

template <class NodeClass>
class Report final : public Consumer<NodeClass const&> {
 public:
  explicit Report(std::u16string text) : text_(std::move(text)) {}
  std::u16string kindDescription() const override { return u"Report"; }
  std::u16string detailsDescription() const override { return text_; }
  void consume(NodeClass const& node, ca::Analysis const&, MessageHelper const* helper) const override {
    fl::i18n::TextStream line;
    line << node.getSourceRange().first.line << u": " << text_;
    static_cast<Findings*>(helper->sink)->lines.push_back(line.str());
  }

 private:
  std::u16string text_;
};

// rulesystem/graph/stage_of.hpp
class HasArgumentCount final
    : public StageOf<HasArgumentCount, Predicate<ParenOperation const&>, std::size_t> {
 public:
  using StageOf::StageOf;
  std::size_t count() const { return parameter<0>(); }
  std::u16string description() const override { return u"HasArgumentCount"; }
  bool test(ParenOperation const& call, ca::Analysis const&) override {
    return call.getArguments().size() == count();
  }
};

// rulesystem/graph/stage.hpp
class CallArguments final : public StageOf<CallArguments, SelectMany<ParenOperation const&, Node const&>> {
 public:
  std::u16string description() const override { return u"CallArguments"; }
  void select(ParenOperation const& call, ca::Analysis const&, std::function<void(Node const&)> const& yield) const override {
    for (Expression const* argument : call.getArguments()) yield(*argument);
  }
};

// rulesystem/graph/switch.hpp
class ArgumentCount final : public StageOf<ArgumentCount, Transform<ParenOperation const&, std::size_t>> {
 public:
  std::u16string description() const override { return u"ArgumentCount"; }
  std::size_t transform(ParenOperation const& call, ca::Analysis const&) const override {
    return call.getArguments().size();
  }
};

class ArgumentCountIs final : public Switchable<ParenOperation const&, std::size_t> {
 public:
  explicit ArgumentCountIs(std::set<std::size_t> counts) : counts_(std::move(counts)) {}
  std::unique_ptr<Transform<ParenOperation const&, std::size_t>> getTransform() const override {
    return std::make_unique<ArgumentCount>();
  }
  std::set<std::size_t> getKeys() const override { return counts_; }

 private:
  std::set<std::size_t> counts_;
};

// rulesystem/graph/uncompared.hpp
class CountedCalls final : public StageOf<CountedCalls, Predicate<ParenOperation const&>, Uncompared<int*>> {
 public:
  using StageOf::StageOf;
  std::u16string description() const override { return u"CountedCalls"; }
  bool test(ParenOperation const&, ca::Analysis const&) override {
    ++*parameter<0>().value;
    return true;
  }
};

}  // namespace examples
