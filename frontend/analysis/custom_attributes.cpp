#include "frontend/analysis/custom_attributes.hpp"

#include <algorithm>
#include <array>
#include <string>
#include <utility>

#include "platform/ast/class_syntax.hpp"

namespace frontend {

namespace {

using lf::astapi::NodeKind;

constexpr std::array kKnown{
    KnownCustomAttribute{u"ContinuousState", NodeKind::PropertiesBlock, true},
    KnownCustomAttribute{u"DiscreteState", NodeKind::PropertiesBlock, true},
    KnownCustomAttribute{u"Logical", NodeKind::PropertiesBlock, true},
    KnownCustomAttribute{u"Nontunable", NodeKind::PropertiesBlock, true},
    KnownCustomAttribute{u"PositiveInteger", NodeKind::PropertiesBlock, true},
};

}  // namespace

std::span<KnownCustomAttribute const> knownCustomAttributes() { return kKnown; }

CustomAttributes::CustomAttributes(std::vector<ca::clients::CustomAttribute> added) {
  entries_.reserve(kKnown.size() + added.size());
  for (KnownCustomAttribute const& known : knownCustomAttributes()) {
    entries_.push_back({std::u16string(known.name), known.place, known.logical});
  }
  for (ca::clients::CustomAttribute& name : added) {
    entries_.push_back({std::move(name.name), name.place, name.logical});
  }
}

bool CustomAttributes::isLogicalCustom(ca::ast::Attribute const& attribute) const {
  Entry const* const entry = find(attribute);
  return entry != nullptr && entry->logical;
}

CustomAttributes::Entry const* CustomAttributes::find(ca::ast::Attribute const& attribute) const {
  ca::ast::Node const* const holder = attribute.getParent();
  // An arguments block takes only what the language defines; a name the
  // language already gives a meaning keeps it.
  if (holder == nullptr || holder->getKind() == NodeKind::ArgumentsBlock || attribute.getName() == nullptr) {
    return nullptr;
  }
  if (ca::ast::getAttributeValueType(attribute) != ca::ast::AttributeValueType::Unknown) return nullptr;
  std::u16string_view const name = ca::astapi::toStdView(attribute.getName()->getText());
  NodeKind const place = holder->getKind();
  auto const found = std::find_if(entries_.begin(), entries_.end(),
                                  [&](Entry const& entry) { return entry.place == place && entry.name == name; });
  return found == entries_.end() ? nullptr : &*found;
}

}  // namespace frontend
