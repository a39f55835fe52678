#pragma once

#include <memory>
#include <set>
#include <string>
#include <type_traits>
#include <typeinfo>
#include <unordered_map>
#include <vector>

#include <boost/core/demangle.hpp>

#include "platform/i18n/i18n.hpp"
#include "rulesystem/graph/checked_precondition.hpp"
#include "rulesystem/graph/combine.hpp"
#include "rulesystem/graph/producer.hpp"

namespace ca::rulesystem {

/// A question with many answers, asked as a filter: "is the name of this call
/// one of these?". Not a stage but a recipe for one: `where` turns it into a
/// branch of the one `Switch` that computes the key behind a producer, so the
/// cost per item does not grow with the number of rules that ask. It has no
/// identity of its own to compare: the switch is found by that of its key
/// transform, a stage, and the keys pick the cases.
///
///     class ArgumentCount final : public StageOf<ArgumentCount, Transform<ParenOperation const&, std::size_t>> {
///      public:
///       std::u16string description() const override { return u"ArgumentCount"; }
///       std::size_t transform(ParenOperation const& call, ca::Analysis const&) const override {
///         return call.getArguments().size();
///       }
///     };
///
///     class ArgumentCountIs final : public Switchable<ParenOperation const&, std::size_t> {
///      public:
///       explicit ArgumentCountIs(std::set<std::size_t> counts) : counts_(std::move(counts)) {}
///       std::unique_ptr<Transform<ParenOperation const&, std::size_t>> getTransform() const override {
///         return std::make_unique<ArgumentCount>();
///       }
///       std::set<std::size_t> getKeys() const override { return counts_; }
///
///      private:
///       std::set<std::size_t> counts_;
///     };
///
/// Both rules below share one switch behind `all.parenOperation`: the count
/// is computed once per call.
///
///     auto unary = all.parenOperation | std::make_unique<ArgumentCountIs>(std::set<std::size_t>{1});
///     auto binary = all.parenOperation | std::make_unique<ArgumentCountIs>(std::set<std::size_t>{2});
template <class T, class Key>
class Switchable {
 public:
  using Item = T;
  using KeyType = Key;

  virtual ~Switchable() = default;
  /// A new transform that computes the key of an item.
  virtual std::unique_ptr<Transform<T, Key>> getTransform() const = 0;
  /// The keys that pass; never empty (checked builds stop at an empty set).
  virtual std::set<Key> getKeys() const = 0;
};

/// Computes a key once per item and hands the item to the one case that
/// listens for that key, with a single hash lookup. Items whose key has no
/// case end here, silently.
///
/// Invariants: owns its key transform and its cases; cases are only added,
/// during declaration, and never during a run. A case's consumers are reached
/// only through the switch, so the cases stand in `extraChildren`, not among
/// anyone's consumers.
template <class In, class Out, class Key>
class Switch final : public Consumer<In> {
 public:
  /// One branch of the switch: a complete producer, under which stages share
  /// as under any other.
  class CaseProducer final : public ProducerImpl<Out>, public ConsumerDependent {
   public:
    CaseProducer(Switch const* owner, Key caseKey) : parent(owner), key(std::move(caseKey)) {}

    std::u16string kindDescription() const override { return u"Case"; }
    std::u16string detailsDescription() const override {
      if constexpr (std::is_same_v<Key, std::u16string>) {
        return key;
      } else {
        fl::i18n::TextStream text;
        text << key;
        return text.str();
      }
    }
    /// A case depends on what its switch depends on.
    bool dependsOn(ConsumerBase const* other) const override { return parent->dependsOn(other); }

    Switch const* const parent;
    Key const key;
  };

  explicit Switch(std::unique_ptr<Transform<In, Key>> keyTransform) : transform(std::move(keyTransform)) {
    cases.max_load_factor(1.0f);
  }

  std::u16string kindDescription() const override { return u"Switch"; }
  std::u16string detailsDescription() const override { return transform->description(); }
  std::vector<ConsumerDependent const*> extraChildren() const override {
    std::vector<ConsumerDependent const*> children;
    children.reserve(cases.size());
    for (auto const& [key, branch] : cases) children.push_back(branch.get());
    return children;
  }

  void consume(In item, ca::Analysis const& analysis, MessageHelper const* helper) const override {
    Key const key = transform->transform(item, analysis);
    if (auto found = cases.find(key); found != cases.end()) found->second->produce(item, analysis, helper);
  }

  /// The case for `key`, made when it is not there yet.
  std::shared_ptr<CaseProducer> getCase(Key const& key) {
    if (auto found = cases.find(key); found != cases.end()) return found->second;
    PLEXUS_CHECK_DECLARING("a case was added to a switch");
    // The case is made before the key is entered: should making it fail, the
    // map holds no key without a case for `consume` to meet.
    auto made = std::make_shared<CaseProducer>(this, key);
    cases.emplace(key, made);
    return made;
  }

  /// The cases for `keys`, made where missing, as plain pointers; the switch
  /// keeps them alive.
  std::set<ProducerImpl<Out>*> getCases(std::set<Key> const& keys) {
    std::set<ProducerImpl<Out>*> branches;
    for (Key const& key : keys) branches.insert(getCase(key).get());
    return branches;
  }

  std::unique_ptr<Transform<In, Key>> const transform;
  std::unordered_map<Key, std::shared_ptr<CaseProducer>> cases;
};

template <class T>
template <class Out, class Key>
std::shared_ptr<Switch<T, Out, Key>> ProducerImpl<T>::getSwitch(std::unique_ptr<Transform<T, Key>> keyTransform) {
  if (auto found = switches_.find(keyTransform.get()); found != switches_.end()) {
    return std::dynamic_pointer_cast<Switch<T, Out, Key>>(found->second);
  }
  auto made = std::make_shared<Switch<T, Out, Key>>(std::move(keyTransform));
  attach(made);
  switches_.emplace(made->transform.get(), made);
  return made;
}

template <class T>
template <class Out, class Key>
std::shared_ptr<ProducerImpl<Out>> ProducerImpl<T>::where(std::unique_ptr<Switchable<T, Key>> switchable) {
  std::shared_ptr<Switch<T, Out, Key>> const branching = getSwitch<Out, Key>(switchable->getTransform());
  std::set<Key> const keys = switchable->getKeys();
  PLEXUS_CHECK_PRECONDITION(!keys.empty(), boost::core::demangle(typeid(*switchable).name()) +
                                               " gave no keys; a Switchable selects at least one");
  if (keys.size() == 1) return branching->getCase(*keys.begin());
  return combine(branching->getCases(keys));
}

/// `producer | switchable`: the branch of the keys asked for.
template <class T, class S>
requires std::derived_from<S, Switchable<typename S::Item, typename S::KeyType>> && std::same_as<typename S::Item, T>
    Producer<T>
operator|(Producer<T> producer, std::unique_ptr<S> switchable) {
  using Key = typename S::KeyType;
  return Producer<T>(producer.impl->template where<T, Key>(std::unique_ptr<Switchable<T, Key>>(std::move(switchable))));
}

}  // namespace ca::rulesystem
