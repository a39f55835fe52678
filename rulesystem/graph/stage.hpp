#pragma once

// Stages: the work of one vertex, apart from its place in the graph. Two
// stages are one when they are of the same dynamic class and `lessThan` holds
// in neither direction; the comparators below are that identity.

#include <cstring>
#include <functional>
#include <string>
#include <typeinfo>

#include "platform/analysis/analysis.hpp"
#include "platform/callresolution/call.hpp"
#include "rulesystem/graph/vertex.hpp"

namespace ca::rulesystem {

/// The item of a predicate that looks only at the analysis.
struct Typeless {};

/// A filter stage. Stage classes derive from `StageOf` (see its example in
/// stage_of.hpp), which holds their parameters and gives `lessThan` and
/// `dependsOn` from them.
class PredicateBase {
 public:
  virtual ~PredicateBase() = default;
  /// The text of this stage in a listing of the graph.
  virtual std::u16string description() const = 0;
  /// Whether this predicate relies on `other` (only one that holds a part of
  /// the graph does, or holds a predicate that does).
  virtual bool dependsOn(ConsumerBase const* other) const = 0;
  /// The order among stages of one dynamic class; `other` is of this class.
  virtual bool lessThan(PredicateBase const* other) const = 0;
};

template <class T>
class Predicate : public PredicateBase {
 public:
  using Item = T;
  /// Whether the item passes.
  virtual bool test(T item, ca::Analysis const& analysis) = 0;
};

/// A one-to-one stage: exactly one result for each item.
class TransformBase {
 public:
  virtual ~TransformBase() = default;
  virtual std::u16string description() const = 0;
  virtual bool lessThan(TransformBase const* other) const = 0;
};

template <class In, class Out>
class Transform : public TransformBase {
 public:
  using Input = In;
  using Output = Out;
  virtual Out transform(In item, ca::Analysis const& analysis) const = 0;
};

/// A one-to-many stage: zero or more results for each item, handed on as they
/// are found.
///
///     class CallArguments final : public StageOf<CallArguments, SelectMany<ParenOperation const&, Node const&>> {
///      public:
///       std::u16string description() const override { return u"CallArguments"; }
///       void select(ParenOperation const& call, ca::Analysis const&, std::function<void(Node const&)> const& yield) const override {
///         for (Expression const* argument : call.getArguments()) yield(*argument);
///       }
///     };
///
/// Equal stages on one producer are one vertex, different ones two:
///
///     auto noArguments = all.parenOperation | std::make_unique<HasArgumentCount>(0);
///     auto arguments = all.parenOperation | std::make_unique<CallArguments>();
///     assert(noArguments == (all.parenOperation | std::make_unique<HasArgumentCount>(0)));
///     assert(noArguments != (all.parenOperation | std::make_unique<HasArgumentCount>(1)));
class SelectManyBase {
 public:
  virtual ~SelectManyBase() = default;
  virtual std::u16string description() const = 0;
  virtual bool lessThan(SelectManyBase const* other) const = 0;
};

template <class In, class Out>
class SelectMany : public SelectManyBase {
 public:
  using Input = In;
  using Output = Out;
  /// Calls `yield` once for each result, in the stage's order.
  virtual void select(In item, ca::Analysis const& analysis, std::function<void(Out)> const& yield) const = 0;
};

namespace detail {
/// The identity rule shared by the three comparators: order by dynamic class
/// first (a null stage raises std::bad_typeid), then by `lessThan`. Classes
/// local to one translation unit, whose run-time names start with '*', are
/// told apart by the address of their name, so that they never equal a
/// namesake from elsewhere.
template <class Base>
bool stageLess(Base const* a, Base const* b) {
  char const* nameA = typeid(*a).name();
  char const* nameB = typeid(*b).name();
  if (nameA[0] == '*' && nameB[0] == '*') {
    if (std::less<char const*>{}(nameA, nameB)) return true;
    if (std::less<char const*>{}(nameB, nameA)) return false;
  } else {
    if (std::strcmp(nameA, nameB) < 0) return true;
    if (std::strcmp(nameB, nameA) < 0) return false;
  }
  return a->lessThan(b);
}
}  // namespace detail

struct PredicateCompare {
  bool operator()(PredicateBase const* a, PredicateBase const* b) const { return detail::stageLess(a, b); }
};
struct TransformCompare {
  bool operator()(TransformBase const* a, TransformBase const* b) const { return detail::stageLess(a, b); }
};
struct SelectManyCompare {
  bool operator()(SelectManyBase const* a, SelectManyBase const* b) const { return detail::stageLess(a, b); }
};

/// How an item of type From reaches a stage over type To: a reference to a
/// base class as it is; a call as the node where it stands; and for
/// `Typeless` a stand-in that does not look at the item.
template <class To, class From>
struct ItemConversion {
  static To convert(From item) { return item; }
};
template <class From>
struct ItemConversion<Typeless, From> {
  static Typeless convert(From) { return {}; }
};
template <>
struct ItemConversion<ca::ast::Node const&, ca::callresolution::Call const&> {
  static ca::ast::Node const& convert(ca::callresolution::Call const& call) { return *call.getNode(); }
};
template <>
struct ItemConversion<ca::ast::Node const&, ca::callresolution::Call> {
  static ca::ast::Node const& convert(ca::callresolution::Call const& call) { return *call.getNode(); }
};

}  // namespace ca::rulesystem
