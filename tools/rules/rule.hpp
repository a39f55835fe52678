#pragma once

// What a bundled rule of the checker is: its entry in rules.def (id,
// severity, one line), and its body in a file of its own (documentation,
// options, and the pipelines it declares on the shared graph).

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>
#include <vector>

#include "platform/ast/source_range.hpp"
#include "rulesystem/rulesystem.hpp"

namespace plexus::rules {

enum class Severity : std::uint8_t { Error, Warning, Note };

/// "error", "warning" or "note".
std::string_view severityName(Severity severity);

/// A rule's documentation, always in this order and all of it present:
/// every part is one or more paragraphs of plain text; `example` and
/// `instead` may hold code, each code line indented by four blanks.
struct RuleDocumentation {
  std::string_view finds;    // what it finds
  std::string_view why;      // why it matters
  std::string_view example;  // code that gets a finding
  std::string_view instead;  // what to write instead
  std::string_view limits;   // known limits: what it misses, when it is wrong
};

/// An integer option of a rule, set in plexus.toml under `[rules.<id>]`.
/// Invariant: minimum <= defaultValue <= maximum.
struct RuleOption {
  std::string_view key;  // kebab case, like rule ids
  std::string_view description;
  std::int64_t defaultValue;
  std::int64_t minimum;
  std::int64_t maximum;
};

class RuleDeclaration;

/// The part of a rule that lives in its own file.
struct RuleBody {
  RuleDocumentation documentation;
  std::vector<RuleOption> options;
  /// Declares the rule's pipelines; null for a rule that the checker reports
  /// itself (syntax errors).
  void (*declare)(RuleDeclaration const& rule) = nullptr;
};

/// One row of the rule table: what rules.def says and the rule's body.
struct RuleDefinition {
  std::size_t index;  // position in ruleTable()
  std::string_view id;
  Severity severity;
  std::string_view summary;  // one line, for --list-rules and SARIF
  RuleBody const* body;
};

/// Where a finding is: 1-based lines and columns (columns count
/// characters), the end one past the last character.
struct FindingRange {
  std::uint32_t line = 0;
  std::uint32_t column = 0;
  std::uint32_t endLine = 0;
  std::uint32_t endColumn = 0;

  static FindingRange of(lf::astapi::SourceRange const& range) {
    return {range.first.line, range.first.column, range.last.line, range.last.column + 1};
  }
  friend bool operator==(FindingRange const&, FindingRange const&) = default;
};

/// What a run reports to: the rules' consumers add findings for the file at
/// hand, and ask first whether the file's configuration has the rule on with
/// the options they were declared with.
class FindingSink : public ca::rulesystem::MessageSink {
 public:
  /// Whether findings of `variant` (one set of option values) of `rule` are
  /// wanted for the file at hand.
  virtual bool wants(std::size_t rule, std::size_t variant) const = 0;
  virtual void add(std::size_t rule, FindingRange const& range, std::string message) = 0;
};

/// The terminal consumer of a rule: turns each item into a finding at the
/// item's place with the message that `describe` makes.
template <class T>
class ReportFinding final : public ca::rulesystem::Consumer<T> {
 public:
  using Describe = std::function<std::string(T)>;
  using Locate = std::function<lf::astapi::SourceRange(T)>;

  ReportFinding(std::size_t rule, std::size_t variant, std::u16string id, Describe describe, Locate locate)
      : rule_(rule), variant_(variant), id_(std::move(id)), describe_(std::move(describe)), locate_(std::move(locate)) {}

  void consume(T item, ca::Analysis const&, ca::rulesystem::MessageHelper const* helper) const override {
    if (helper == nullptr || helper->sink == nullptr) return;
    auto& sink = static_cast<FindingSink&>(*helper->sink);
    if (!sink.wants(rule_, variant_)) return;
    sink.add(rule_, FindingRange::of(locate_(item)), describe_(item));
  }

  std::u16string kindDescription() const override { return u"Report"; }
  std::u16string detailsDescription() const override { return id_; }

 private:
  std::size_t rule_;
  std::size_t variant_;
  std::u16string id_;
  Describe describe_;
  Locate locate_;
};

/// What a rule's `declare` is given: the shared graph, its option values for
/// this declaration, and the consumers that report its findings. A rule is
/// declared once for each distinct set of option values that some checked
/// file's configuration asks for.
class RuleDeclaration {
 public:
  RuleDeclaration(ca::rulesystem::AllNodes& all, RuleDefinition const& rule, std::size_t variant,
                  std::vector<std::int64_t> optionValues)
      : all_(all), rule_(rule), variant_(variant), optionValues_(std::move(optionValues)) {}

  ca::rulesystem::AllNodes& all() const { return all_; }
  RuleDefinition const& rule() const { return rule_; }

  /// The value of the option `key` (one of the rule's body's options).
  std::int64_t option(std::string_view key) const;

  /// A consumer that reports each item it gets, at the item's own range:
  /// `all.globalStatement | rule.report<GlobalStatement const&>(describe)`
  /// with `describe` making each finding's message from its item.
  template <class T>
  std::shared_ptr<ca::rulesystem::Consumer<T>> report(typename ReportFinding<T>::Describe describe) const {
    return report<T>(std::move(describe), [](T item) { return item.getSourceRange(); });
  }

  /// A consumer that reports each item at the range that `locate` gives.
  template <class T>
  std::shared_ptr<ca::rulesystem::Consumer<T>> report(typename ReportFinding<T>::Describe describe,
                                                      typename ReportFinding<T>::Locate locate) const {
    return std::make_shared<ReportFinding<T>>(rule_.index, variant_, reportName(), std::move(describe),
                                              std::move(locate));
  }

 private:
  std::u16string reportName() const;

  ca::rulesystem::AllNodes& all_;
  RuleDefinition const& rule_;
  std::size_t variant_;
  std::vector<std::int64_t> optionValues_;
};

/// UTF-8 of a name or text of the tree, for messages.
std::string utf8(std::u16string_view text);

}  // namespace plexus::rules
