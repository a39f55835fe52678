#pragma once

// The question "is this a call to this name?" asked as a plain predicate, one
// stage per name: rules that ask for different names keep different vertices,
// and every call meets all of them.

#include <string>

#include "platform/ast/ast.hpp"
#include "platform/ast/string_id.hpp"
#include "rulesystem/graph/stage.hpp"

namespace plexus::bench {

/// Passes calls whose called expression is the plain name `name`.
class CallNameIs final : public ca::rulesystem::Predicate<ca::ast::ParenOperation const&> {
 public:
  explicit CallNameIs(ca::astapi::StringId name) : name_(name) {}
  std::u16string description() const override { return u"CallNameIs " + name_.getString(); }
  bool dependsOn(ca::rulesystem::ConsumerBase const*) const override { return false; }
  bool lessThan(ca::rulesystem::PredicateBase const* other) const override {
    return name_ < static_cast<CallNameIs const*>(other)->name_;
  }
  bool test(ca::ast::ParenOperation const& call, ca::Analysis const&) override {
    ca::ast::Expression const* function = call.getFunction();
    return function->getKind() == lf::astapi::NodeKind::Identifier &&
           static_cast<ca::ast::Identifier const*>(function)->getStringId() == name_;
  }

 private:
  ca::astapi::StringId name_;
};

}  // namespace plexus::bench
