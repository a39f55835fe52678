#pragma once

// The question "is this a call to this name?" asked as a plain predicate, one
// stage per name: rules that ask for different names keep different vertices,
// and every call meets all of them.

#include <string>

#include "platform/ast/ast.hpp"
#include "platform/ast/string_id.hpp"
#include "rulesystem/graph/stage.hpp"
#include "rulesystem/graph/stage_of.hpp"

namespace plexus::bench {

/// Passes calls whose called expression is the plain name `name`.
class CallNameIs final
    : public ca::rulesystem::StageOf<CallNameIs, ca::rulesystem::Predicate<ca::ast::ParenOperation const&>,
                                     ca::astapi::StringId> {
 public:
  using StageOf::StageOf;
  ca::astapi::StringId name() const { return parameter<0>(); }
  std::u16string description() const override { return u"CallNameIs " + name().getString(); }
  bool test(ca::ast::ParenOperation const& call, ca::Analysis const&) override {
    ca::ast::Expression const* function = call.getFunction();
    return function->getKind() == lf::astapi::NodeKind::Identifier &&
           static_cast<ca::ast::Identifier const*>(function)->getStringId() == name();
  }
};

}  // namespace plexus::bench
