#pragma once

// From syntax nodes to the calls they stand for. Whether a node is a call is
// the call-resolution analysis's answer, not its class's, and this is the
// gate through which every question about calls goes. The called name is the
// main key of the network: all names asked for behind one selection meet in
// one switch, so N rules on N names cost one analysis lookup and one hash
// lookup per node.

#include <concepts>
#include <cstdint>
#include <functional>
#include <memory>
#include <set>
#include <string>

#include "platform/analysis/analysis_impl.hpp"
#include "platform/ast/string_id.hpp"
#include "platform/callresolution/call.hpp"
#include "rulesystem/graph/pipe_handle.hpp"
#include "rulesystem/graph/switch.hpp"
#include "rulesystem/graph/tree_types.hpp"

namespace ca::rulesystem {

/// Tag for `nodes | getCalls{...}`: the calls at the nodes, of `name` (the
/// default name means every name), known ones only or potential ones too.
/// Every name asked for behind one selection is a case of one switch.
///   all.parenOperation | getCalls{StringId(u"max")}
struct getCalls {
  /// Which answers of call resolution count as calls.
  enum Mode : std::uint32_t {
    /// Known calls and the calls that are only potential (names in scripts).
    GetAllPotentialCalls = 0,
    /// Known calls alone.
    GetStrictlyKnownCalls = 1,
  };

  ca::astapi::StringId name{};
  Mode mode = GetAllPotentialCalls;
};

template <template <class> class P>
requires isPipeHandle<P> P<ca::callresolution::Call const&>
operator|(P<Node const&> producer, getCalls calls) {
  using ca::callresolution::Call;

  // One selector per mode behind a producer: call resolution is asked once
  // per node and mode, however many names the rules want.
  class CallNodeSelector final : public StageOf<CallNodeSelector, SelectMany<Node const&, Call const&>, getCalls::Mode> {
    using Base = StageOf<CallNodeSelector, SelectMany<Node const&, Call const&>, getCalls::Mode>;

   public:
    using Base::Base;
    getCalls::Mode mode() const { return this->template parameter<0>(); }
    std::u16string description() const override {
      return mode() != getCalls::GetAllPotentialCalls ? u"GetCalls: GetStrictlyKnownCalls"
                                                       : u"GetCalls: GetAllPotentialCalls";
    }
    void select(Node const& node, ca::Analysis const& analysis,
                std::function<void(Call const&)> const& yield) const override {
      auto const& analysed = dynamic_cast<ca::clients::AnalysisImpl const&>(analysis);
      // The analysis handle is a temporary: it is gone before the call is used.
      Call const call = analysed.getCallResolutionAnalysis()->getCallInfo(node);
      if (call.isCall() == Call::KnownCall) {
        yield(call);
      } else if (mode() == getCalls::GetAllPotentialCalls && call.isCall() == Call::PotentialCall) {
        yield(call);
      }
    }
  };

  // The key of the switch on the called name. It carries nothing, so every
  // name asked for behind one selector finds the same switch.
  class SwitchOnCallName final : public Switchable<Call const&, ca::astapi::StringId> {
   public:
    explicit SwitchOnCallName(ca::astapi::StringId name) : name_(name) {}
    std::unique_ptr<Transform<Call const&, ca::astapi::StringId>> getTransform() const override {
      class GetCallName final : public StageOf<GetCallName, Transform<Call const&, ca::astapi::StringId>> {
       public:
        std::u16string description() const override { return u"GetCallName"; }
        ca::astapi::StringId transform(Call const& call, ca::Analysis const&) const override { return call.getName(); }
      };
      return std::make_unique<GetCallName>();
    }
    std::set<ca::astapi::StringId> getKeys() const override { return {name_}; }

   private:
    ca::astapi::StringId name_;
  };

  static ca::astapi::StringId const everyName{};
  auto selected = std::move(producer) | std::make_unique<CallNodeSelector>(calls.mode);
  if (calls.name == everyName) return selected;
  return std::move(selected) | std::make_unique<SwitchOnCallName>(calls.name);
}

// The same from nodes of a class below Node (`all.parenOperation`), through
// the producer's one upcast to Node, which every selection on it shares.
template <template <class> class P, class T>
requires isPipeHandle<P> && std::derived_from<T, Node> && (!std::same_as<T, Node>)
P<ca::callresolution::Call const&> operator|(P<T const&> producer, getCalls calls) {
  return upcast<Node const&>(std::move(producer)) | calls;
}

/// The call that most closely encloses a node, the node itself first, as call
/// resolution sees it; nothing for a node outside any call.
///   upcast<Node const&>(all.numberLiteral) | getClosestCall()
std::unique_ptr<SelectMany<Node const&, ca::callresolution::Call const&>> getClosestCall();

}  // namespace ca::rulesystem
