#pragma once

// The question "is this a call to one of these names?" asked through a
// switch: every rule that asks it, whatever names it asks for, hangs below the
// one switch on the called name, which computes the name once per call.

#include <memory>
#include <set>
#include <stdexcept>
#include <string>
#include <utility>

#include "platform/ast/ast.hpp"
#include "platform/ast/string_id.hpp"
#include "rulesystem/graph/stage_of.hpp"
#include "rulesystem/graph/switch.hpp"

namespace plexus::bench {

/// The key of a call: its called name when the called expression is a plain
/// name (`f(x)`), else the empty name (`s.f(x)`, `c{1}(x)`), which no rule
/// asks for since no name is empty. Every instance equals every other, so
/// that all rules on one producer share one switch.
class CalledNameKey final
    : public ca::rulesystem::StageOf<CalledNameKey,
                                     ca::rulesystem::Transform<ca::ast::ParenOperation const&, ca::astapi::StringId>> {
 public:
  std::u16string description() const override { return u"CalledNameKey"; }
  ca::astapi::StringId transform(ca::ast::ParenOperation const& call, ca::Analysis const&) const override {
    ca::ast::Expression const* function = call.getFunction();
    if (function->getKind() != lf::astapi::NodeKind::Identifier) return {};
    return static_cast<ca::ast::Identifier const*>(function)->getStringId();
  }
};

/// Passes calls to any of the given names, which must not be empty.
///
///     all.parenOperation | std::make_unique<IsCallNamed>(std::set{StringId(u"eval")}) | ...
class IsCallNamed final : public ca::rulesystem::Switchable<ca::ast::ParenOperation const&, ca::astapi::StringId> {
 public:
  explicit IsCallNamed(std::set<ca::astapi::StringId> names) : names_(std::move(names)) {
    if (names_.empty()) throw std::invalid_argument("IsCallNamed: no name to look for");
    if (names_.contains(ca::astapi::StringId())) throw std::invalid_argument("IsCallNamed: the empty name");
  }
  std::unique_ptr<ca::rulesystem::Transform<ca::ast::ParenOperation const&, ca::astapi::StringId>> getTransform()
      const override {
    return std::make_unique<CalledNameKey>();
  }
  std::set<ca::astapi::StringId> getKeys() const override { return names_; }

 private:
  std::set<ca::astapi::StringId> names_;
};

}  // namespace plexus::bench
