#include "rulesystem/syntax/attributes.hpp"

#include <stdexcept>

#include "platform/analysis/analysis_impl.hpp"
#include "platform/ast/class_syntax.hpp"
#include "platform/tosk/tosk_analysis.hpp"
#include "rulesystem/graph/stage_of.hpp"

namespace ca::rulesystem {

namespace {

using ca::ast::AttributeValueType;

AttributeValueType classificationOf(Attribute const& attribute) { return ca::ast::getAttributeValueType(attribute); }

bool standsInArgumentsBlock(Attribute const& attribute) {
  Node const* const holder = attribute.getParent();
  return holder != nullptr && holder->getKind() == lf::astapi::NodeKind::ArgumentsBlock;
}

// The class-object analysis of the file; only an AnalysisImpl has one, and
// any other analysis fails the cast with std::bad_cast.
std::shared_ptr<ca::tosk::ToskAnalysis> toskAnalysisOf(ca::Analysis const& analysis) {
  return dynamic_cast<ca::clients::AnalysisImpl const&>(analysis).getToskAnalysis();
}

// One class for the classifications that match by value alone, so that the
// fixed factories below are told apart by the value they hold. The value is
// held as the signed 32-bit number the classification is, and compared so.
class IsAttributeClassification final
    : public StageOf<IsAttributeClassification, Predicate<Attribute const&>, std::int32_t> {
 public:
  using StageOf::StageOf;
  std::int32_t classification() const { return parameter<0>(); }
  std::u16string description() const override {
    return u"IsAttributeClassification: " + detail::attributeClassificationName(classification());
  }
  bool test(Attribute const& attribute, ca::Analysis const&) override {
    return static_cast<std::int32_t>(classificationOf(attribute)) == classification();
  }
};

std::unique_ptr<Predicate<Attribute const&>> isClassification(AttributeValueType classification) {
  return std::make_unique<IsAttributeClassification>(static_cast<std::int32_t>(classification));
}

}  // namespace

std::u16string detail::attributeClassificationName(std::int32_t classification) {
  switch (classification) {
    case 0: return u"Label";
    case 1: return u"Logical";
    case 2: return u"Numeric";
    case 3: return u"MetaClass";
    case 4: return u"AccessModifier";
    case 5: return u"ImmutableAccessModifier";
    case 6: return u"Text";
    case 7: return u"Unknown";
    default: return u"New Attribute value";
  }
}

std::unique_ptr<Predicate<Attribute const&>> isLabelAttribute() { return isClassification(AttributeValueType::Label); }

std::unique_ptr<Predicate<Attribute const&>> isMetaClassAttribute() {
  return isClassification(AttributeValueType::MetaClass);
}

std::unique_ptr<Predicate<Attribute const&>> isAccessAttributeWithoutImmutable() {
  return isClassification(AttributeValueType::AccessModifier);
}

std::unique_ptr<Predicate<Attribute const&>> isAccessAttributeWithImmutable() {
  return isClassification(AttributeValueType::ImmutableAccessModifier);
}

std::unique_ptr<Predicate<Attribute const&>> isLogicalAttribute() {
  class IsLogicalAttribute final : public StageOf<IsLogicalAttribute, Predicate<Attribute const&>> {
   public:
    std::u16string description() const override { return u"IsLogicalAttribute"; }
    bool test(Attribute const& attribute, ca::Analysis const& analysis) override {
      // The cheap answers first: the class-object analysis is made only for
      // an attribute that the tree cannot settle.
      if (classificationOf(attribute) == AttributeValueType::Logical) return true;
      // Arguments blocks take no custom attributes.
      if (standsInArgumentsBlock(attribute)) return false;
      return toskAnalysisOf(analysis)->isLogicalCustomAttribute(attribute);
    }
  };
  return std::make_unique<IsLogicalAttribute>();
}

std::unique_ptr<Predicate<Attribute const&>> isUnknownAttribute() {
  class IsUnknownAttribute final : public StageOf<IsUnknownAttribute, Predicate<Attribute const&>> {
   public:
    std::u16string description() const override { return u"IsUnknownAttribute"; }
    bool test(Attribute const& attribute, ca::Analysis const& analysis) override {
      if (classificationOf(attribute) != AttributeValueType::Unknown) return false;
      // Arguments blocks take no custom attributes: what the tree does not
      // know there is unknown.
      if (standsInArgumentsBlock(attribute)) return true;
      return !toskAnalysisOf(analysis)->isCustomAttribute(attribute);
    }
  };
  return std::make_unique<IsUnknownAttribute>();
}

std::unique_ptr<Predicate<Argument const&>> isNamedArgumentByClass() {
  class IsNamedArgumentByClass final : public StageOf<IsNamedArgumentByClass, Predicate<Argument const&>> {
   public:
    std::u16string description() const override { return u"IsNamedArgumentByClass"; }
    bool test(Argument const& argument, ca::Analysis const&) override { return argument.getClassPart() != nullptr; }
  };
  return std::make_unique<IsNamedArgumentByClass>();
}

std::unique_ptr<Predicate<Argument const&>> isNamedArgumentByField() {
  class IsNamedArgumentByField final : public StageOf<IsNamedArgumentByField, Predicate<Argument const&>> {
   public:
    std::u16string description() const override { return u"IsNamedArgumentByField"; }
    bool test(Argument const& argument, ca::Analysis const&) override { return argument.getFieldPart() != nullptr; }
  };
  return std::make_unique<IsNamedArgumentByField>();
}

std::unique_ptr<Predicate<Argument const&>> isIgnoredArgument() {
  class IsIgnoredArgument final : public StageOf<IsIgnoredArgument, Predicate<Argument const&>> {
   public:
    std::u16string description() const override { return u"IsIgnoredArgument"; }
    bool test(Argument const& argument, ca::Analysis const&) override {
      InputArgument const& name = *argument.getName();
      if (name.getIdentifier() != nullptr) return false;
      if (name.getIgnored() != nullptr) return true;
      throw std::logic_error("InputArgument has neither an Identifier nor an Ignored");
    }
  };
  return std::make_unique<IsIgnoredArgument>();
}

std::vector<Attribute const*> getAttributesWithName(
    boost::iterator_range<lf::astapi::NodeList<Attribute>::iterator> attributes, std::u16string name) {
  std::vector<Attribute const*> named;
  for (Attribute const* attribute : attributes) {
    // Interned per attribute rather than once up front, so that an empty
    // range costs no interning.
    if (attribute->getName()->getStringId() == ca::astapi::StringId(name)) named.push_back(attribute);
  }
  return named;
}

}  // namespace ca::rulesystem
