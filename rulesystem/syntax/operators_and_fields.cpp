#include "rulesystem/syntax/operators_and_fields.hpp"

#include "platform/ast/class_syntax.hpp"
#include "platform/ast/node_cast.hpp"
#include "platform/i18n/i18n.hpp"
#include "platform/utils/invariant.hpp"

namespace ca::rulesystem {

using lf::astapi::BinaryOperator;
using lf::astapi::UnaryOperator;

std::unique_ptr<Switchable<BinaryOperation const&, BinaryOperator>> isBinaryOperation(
    std::set<BinaryOperator> operators) {
  class GetBinaryOperator final
      : public StageOf<GetBinaryOperator, Transform<BinaryOperation const&, BinaryOperator>> {
   public:
    std::u16string description() const override { return u"GetBinaryOperator"; }
    BinaryOperator transform(BinaryOperation const& operation, ca::Analysis const&) const override {
      return operation.getOperator();
    }
  };

  class BinaryOperationSwitchable final : public Switchable<BinaryOperation const&, BinaryOperator> {
   public:
    explicit BinaryOperationSwitchable(std::set<BinaryOperator> operators) : operators_(std::move(operators)) {}
    std::unique_ptr<Transform<BinaryOperation const&, BinaryOperator>> getTransform() const override {
      return std::make_unique<GetBinaryOperator>();
    }
    std::set<BinaryOperator> getKeys() const override { return operators_; }

   private:
    std::set<BinaryOperator> operators_;
  };

  return std::make_unique<BinaryOperationSwitchable>(std::move(operators));
}

std::unique_ptr<Switchable<BinaryOperation const&, BinaryOperator>> isBinaryOperation(BinaryOperator op) {
  return isBinaryOperation(std::set<BinaryOperator>{op});
}

std::unique_ptr<Switchable<UnaryOperation const&, UnaryOperator>> isUnaryOperation(std::set<UnaryOperator> operators) {
  class GetUnaryOperator final : public StageOf<GetUnaryOperator, Transform<UnaryOperation const&, UnaryOperator>> {
   public:
    std::u16string description() const override { return u"GetUnaryOperator"; }
    UnaryOperator transform(UnaryOperation const& operation, ca::Analysis const&) const override {
      return operation.getOperator();
    }
  };

  class UnaryOperationSwitchable final : public Switchable<UnaryOperation const&, UnaryOperator> {
   public:
    explicit UnaryOperationSwitchable(std::set<UnaryOperator> operators) : operators_(std::move(operators)) {}
    std::unique_ptr<Transform<UnaryOperation const&, UnaryOperator>> getTransform() const override {
      return std::make_unique<GetUnaryOperator>();
    }
    std::set<UnaryOperator> getKeys() const override { return operators_; }

   private:
    std::set<UnaryOperator> operators_;
  };

  return std::make_unique<UnaryOperationSwitchable>(std::move(operators));
}

std::unique_ptr<Switchable<UnaryOperation const&, UnaryOperator>> isUnaryOperation(UnaryOperator op) {
  return isUnaryOperation(std::set<UnaryOperator>{op});
}

namespace {

/// What `getUnaryOperand` gives for an operand that is no identifier outside
/// checked builds: a real identifier, with an empty name and no parent, so
/// that a stage after it reads defined values instead of another node's
/// memory.
Identifier const& noIdentifier() {
  static Identifier const none{ca::astapi::StringId()};
  return none;
}

}  // namespace

std::unique_ptr<Transform<UnaryOperation const&, Identifier const&>> getUnaryOperand() {
  class GetUnaryOperand final : public StageOf<GetUnaryOperand, Transform<UnaryOperation const&, Identifier const&>> {
   public:
    std::u16string description() const override { return u"GetUnaryOperand"; }
    Identifier const& transform(UnaryOperation const& operation, ca::Analysis const&) const override {
      Identifier const* const operand = lf::astapi::dynCast<Identifier>(operation.getOperand());
      PLEXUS_INVARIANT(operand != nullptr,
                       "getUnaryOperand was given an operation whose operand is no identifier; filter the "
                       "operations first");
      return operand != nullptr ? *operand : noIdentifier();
    }
  };
  return std::make_unique<GetUnaryOperand>();
}

std::unique_ptr<Predicate<BinaryOperation const&>> isSuperclassConstructorCall() {
  class IsSuperclassConstructorCall final
      : public StageOf<IsSuperclassConstructorCall, Predicate<BinaryOperation const&>> {
   public:
    std::u16string description() const override { return u"IsSuperclassConstructorCall"; }
    bool test(BinaryOperation const& operation, ca::Analysis const&) override {
      return ca::astapi::isSuperclassConstructorCall(operation);
    }
  };
  return std::make_unique<IsSuperclassConstructorCall>();
}

std::unique_ptr<Switchable<Field const&, ca::astapi::StringId>> isFieldStringId(std::u16string const& text) {
  class GetStringId final : public StageOf<GetStringId, Transform<Field const&, ca::astapi::StringId>> {
   public:
    std::u16string description() const override { return u"GetStringId"; }
    ca::astapi::StringId transform(Field const& field, ca::Analysis const&) const override {
      return field.getStringId();
    }
  };

  class IsFieldStringId final : public Switchable<Field const&, ca::astapi::StringId> {
   public:
    explicit IsFieldStringId(ca::astapi::StringId name) : name_(name) {}
    std::unique_ptr<Transform<Field const&, ca::astapi::StringId>> getTransform() const override {
      return std::make_unique<GetStringId>();
    }
    std::set<ca::astapi::StringId> getKeys() const override { return {name_}; }

   private:
    ca::astapi::StringId name_;
  };

  // Interned here, once: the switch then compares one word per field.
  return std::make_unique<IsFieldStringId>(ca::astapi::StringId(text));
}

std::unique_ptr<Predicate<Field const&>> isFieldLongerThan(std::uint64_t limit) {
  class IsFieldLongerThan final : public StageOf<IsFieldLongerThan, Predicate<Field const&>, std::uint64_t> {
   public:
    using StageOf::StageOf;
    std::uint64_t limit() const { return parameter<0>(); }

    std::u16string description() const override {
      fl::i18n::TextStream text;
      text << u"Field name contains more characters than specified limit of " << limit();
      return text.str();
    }
    bool test(Field const& field, ca::Analysis const&) override {
      // The length is taken as 32 bits, as the rules that use this were
      // written against; a field of 2^32 units or more wraps.
      auto const length = static_cast<std::uint32_t>(field.getSourceText().getText().size());
      return limit() < std::uint64_t{length};
    }
  };
  return std::make_unique<IsFieldLongerThan>(limit);
}

std::unique_ptr<Predicate<Field const&>> isFieldTextCaseInsensitive(std::u16string text) {
  class IsFieldTextCaseInsensitive final
      : public StageOf<IsFieldTextCaseInsensitive, Predicate<Field const&>, std::u16string> {
   public:
    using StageOf::StageOf;
    std::u16string const& text() const { return parameter<0>(); }

    std::u16string description() const override {
      std::u16string description = u"isFieldTextCaseInsensitive ";
      description += text();
      return description;
    }
    bool test(Field const& field, ca::Analysis const&) override {
      std::u16string const& name = field.getStringId().getString();
      return fl::i18n::detail::compare(name.data(), name.size(), text().data(), text().size(),
                                       fl::i18n::case_insensitive{}) == 0;
    }
  };
  return std::make_unique<IsFieldTextCaseInsensitive>(std::move(text));
}

}  // namespace ca::rulesystem
