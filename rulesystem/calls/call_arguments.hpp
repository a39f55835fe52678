#pragma once

// The shape of a call: its arguments, how many results its context takes,
// where a result goes, and how the called name is spelled. Questions on
// arguments ask the call; questions on outputs are answered from the syntax
// alone, the call's node and what stands above it.

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "platform/callresolution/call.hpp"
#include "platform/i18n/i18n.hpp"
#include "platform/utils/invariant.hpp"
#include "rulesystem/graph/pipe_handle.hpp"
#include "rulesystem/graph/stage_of.hpp"
#include "rulesystem/graph/tree_types.hpp"

namespace ca::rulesystem {

/// Tag for `calls | getArguments{}`: every argument of each call, in source
/// order.
///   all.parenOperation | getCalls{} | getArguments{}
struct getArguments {};

/// Tag for `calls | getArgument{index}`: the argument at `index`, counted
/// from 1; nothing for a call with fewer arguments.
///   all.parenOperation | getCalls{} | getArgument{2}
struct getArgument {
  unsigned long index;
};

/// Tag for `calls | getNameNode{}`: the expression that names the called
/// function (`f` of `f(x)`, `obj.m` of `obj.m(x)`, `hold` of `hold on`).
///   all.commandInvocation | getCalls{} | getNameNode{}
struct getNameNode {};

/// Tag for comparisons of a call's number of arguments, with the number on
/// either side: `numArguments{} >= 2` and `2 <= numArguments{}` keep the
/// same calls, through one stage.
///   all.parenOperation | getCalls{} | (numArguments{} >= 2)
struct numArguments {};

/// Tag for comparisons of the number of results that a call's context takes:
/// none for a command or a call standing alone as a statement or as the
/// body of an anonymous function, as many as a multi-assignment has
/// targets, and otherwise one.
///   all.parenOperation | getCalls{} | (numOutputArguments{} == 0)
struct numOutputArguments {};

template <template <class> class P>
requires isPipeHandle<P> P<Expression const&>
operator|(P<ca::callresolution::Call const&> producer, getArguments) {
  // Takes the call by value: it hands the arguments on from the call's own
  // view, without copying them out first.
  class GetArguments final : public StageOf<GetArguments, SelectMany<ca::callresolution::Call, Expression const&>> {
   public:
    std::u16string description() const override { return u"GetArguments"; }
    void select(ca::callresolution::Call call, ca::Analysis const&,
                std::function<void(Expression const&)> const& yield) const override {
      call.yieldArguments(yield);
    }
  };
  return upcast<ca::callresolution::Call>(std::move(producer)) | std::make_unique<GetArguments>();
}

template <template <class> class P>
requires isPipeHandle<P> P<Expression const&>
operator|(P<ca::callresolution::Call const&> producer, getArgument argument) {
  class GetArgument final
      : public StageOf<GetArgument, SelectMany<ca::callresolution::Call const&, Expression const&>, unsigned long> {
    using Base = StageOf<GetArgument, SelectMany<ca::callresolution::Call const&, Expression const&>, unsigned long>;

   public:
    using Base::Base;
    unsigned long index() const { return this->template parameter<0>(); }
    std::u16string description() const override {
      fl::i18n::TextStream text;
      text << u"GetArgument " << index();
      return text.str();
    }
    void select(ca::callresolution::Call const& call, ca::Analysis const&,
                std::function<void(Expression const&)> const& yield) const override {
      PLEXUS_INVARIANT(index() != 0, "getArgument counts positions from 1");
      std::vector<Expression const*> const arguments = call.getArguments();
      if (arguments.empty() || arguments.size() < index()) return;
      yield(*arguments[index() - 1]);
    }
  };
  return std::move(producer) | std::make_unique<GetArgument>(argument.index);
}

template <template <class> class P>
requires isPipeHandle<P> P<Expression const&>
operator|(P<ca::callresolution::Call const&> producer, getNameNode) {
  class GetNameNode final : public StageOf<GetNameNode, Transform<ca::callresolution::Call, Expression const&>> {
   public:
    std::u16string description() const override { return u"GetNameNode"; }
    Expression const& transform(ca::callresolution::Call call, ca::Analysis const&) const override {
      Node const& node = *call.getNode();
      switch (node.getKind()) {
        case lf::astapi::NodeKind::CommandInvocation:
          return *lf::astapi::cast<CommandInvocation>(node).getFunctionName();
        case lf::astapi::NodeKind::ParenOperation:
          return *lf::astapi::cast<ParenOperation>(node).getFunction();
        case lf::astapi::NodeKind::BinaryOperation:
        case lf::astapi::NodeKind::DotOperation:
        case lf::astapi::NodeKind::Identifier:
          return lf::astapi::cast<Expression>(node);
        default:
          PLEXUS_INVARIANT(false, "a call stands at a command, a parenthesis, a dot, a name or a superclass call");
          return lf::astapi::cast<Expression>(node);
      }
    }
  };
  return upcast<ca::callresolution::Call>(std::move(producer)) | std::make_unique<GetNameNode>();
}

/// Comparisons of the number of arguments with `count`. The number may stand
/// on the left; the operator is then mirrored, so that `3 < numArguments{}`
/// is `numArguments{} > 3`, one stage.
///   all.parenOperation | getCalls{} | (2 < numArguments{})
std::unique_ptr<Predicate<ca::callresolution::Call const&>> operator==(numArguments const&, unsigned long count);
std::unique_ptr<Predicate<ca::callresolution::Call const&>> operator!=(numArguments const&, unsigned long count);
std::unique_ptr<Predicate<ca::callresolution::Call const&>> operator<(numArguments const&, unsigned long count);
std::unique_ptr<Predicate<ca::callresolution::Call const&>> operator>(numArguments const&, unsigned long count);
std::unique_ptr<Predicate<ca::callresolution::Call const&>> operator<=(numArguments const&, unsigned long count);
std::unique_ptr<Predicate<ca::callresolution::Call const&>> operator>=(numArguments const&, unsigned long count);
std::unique_ptr<Predicate<ca::callresolution::Call const&>> operator==(unsigned long count, numArguments const&);
std::unique_ptr<Predicate<ca::callresolution::Call const&>> operator!=(unsigned long count, numArguments const&);
std::unique_ptr<Predicate<ca::callresolution::Call const&>> operator<(unsigned long count, numArguments const&);
std::unique_ptr<Predicate<ca::callresolution::Call const&>> operator>(unsigned long count, numArguments const&);
std::unique_ptr<Predicate<ca::callresolution::Call const&>> operator<=(unsigned long count, numArguments const&);
std::unique_ptr<Predicate<ca::callresolution::Call const&>> operator>=(unsigned long count, numArguments const&);

/// Comparisons of the number of results a call's context takes with
/// `count`, the number on either side as for `numArguments`.
///   all.parenOperation | getCalls{} | (1 < numOutputArguments{})
std::unique_ptr<Predicate<ca::callresolution::Call const&>> operator==(numOutputArguments const&, unsigned long count);
std::unique_ptr<Predicate<ca::callresolution::Call const&>> operator!=(numOutputArguments const&, unsigned long count);
std::unique_ptr<Predicate<ca::callresolution::Call const&>> operator<(numOutputArguments const&, unsigned long count);
std::unique_ptr<Predicate<ca::callresolution::Call const&>> operator>(numOutputArguments const&, unsigned long count);
std::unique_ptr<Predicate<ca::callresolution::Call const&>> operator<=(numOutputArguments const&, unsigned long count);
std::unique_ptr<Predicate<ca::callresolution::Call const&>> operator>=(numOutputArguments const&, unsigned long count);
std::unique_ptr<Predicate<ca::callresolution::Call const&>> operator==(unsigned long count, numOutputArguments const&);
std::unique_ptr<Predicate<ca::callresolution::Call const&>> operator!=(unsigned long count, numOutputArguments const&);
std::unique_ptr<Predicate<ca::callresolution::Call const&>> operator<(unsigned long count, numOutputArguments const&);
std::unique_ptr<Predicate<ca::callresolution::Call const&>> operator>(unsigned long count, numOutputArguments const&);
std::unique_ptr<Predicate<ca::callresolution::Call const&>> operator<=(unsigned long count, numOutputArguments const&);
std::unique_ptr<Predicate<ca::callresolution::Call const&>> operator>=(unsigned long count, numOutputArguments const&);

/// The target of a plain assignment whose whole right side is the call;
/// parentheses around the call are not looked through.
///   all.parenOperation | getCalls{} | getSingleOutput()
std::unique_ptr<SelectMany<ca::callresolution::Call const&, Expression const&>> getSingleOutput();

/// The target at position `index`, counted from 1, of the multi-assignment
/// whose right side is the call; nothing when there are fewer targets.
///   all.parenOperation | getCalls{} | getOutputInMultiAssignment(2)
std::unique_ptr<SelectMany<ca::callresolution::Call const&, Expression const&>> getOutputInMultiAssignment(
    unsigned long index);

/// Keeps the calls whose result is certainly taken: not a command, and not
/// alone, parentheses aside, as a statement or the body of an anonymous
/// function (whose result may or may not be used).
///   all.parenOperation | getCalls{} | isOutputDefinitelyUsed()
std::unique_ptr<Predicate<ca::callresolution::Call const&>> isOutputDefinitelyUsed();

/// Keeps the calls whose result is certainly dropped: commands, and calls
/// that stand alone, parentheses aside, as a statement ending in `;`.
///   all.parenOperation | getCalls{} | isOutputDefinitelyNotUsed()
std::unique_ptr<Predicate<ca::callresolution::Call const&>> isOutputDefinitelyNotUsed();

/// Keeps the calls named through a dot, `obj.m(x)` and `obj.m` alike.
///   all.parenOperation | getCalls{} | isDotSyntax()
std::unique_ptr<Predicate<ca::callresolution::Call const&>> isDotSyntax();

}  // namespace ca::rulesystem
