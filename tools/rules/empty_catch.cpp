// empty-catch: a `catch` block with no statements and no comment, which
// silently drops every error of its `try` block.

#include <algorithm>
#include <string>

#include "tools/rules/file_text.hpp"
#include "tools/rules/rule_table.hpp"

namespace plexus::rules {

namespace {

using namespace ca::rulesystem;

// Keeps the catch blocks whose body holds no statement; a lone `;` or `,` is
// an empty statement and does nothing either.
class HasNoStatements final : public StageOf<HasNoStatements, Predicate<CatchBlock const&>> {
 public:
  std::u16string description() const override { return u"HasNoStatements"; }
  bool test(CatchBlock const& block, ca::Analysis const&) override {
    auto const body = block.getBody();
    return std::all_of(body.begin(), body.end(), [](Node const* statement) {
      return statement->getKind() == lf::astapi::NodeKind::EmptyStatement;
    });
  }
};

// Keeps the empty catch blocks without a comment on a line between `catch`
// and the `end` of their try statement: a comment there says why the error is
// let go, which is a decision, not an oversight. The `catch` line itself is
// left out, because it is where a finding's suppression comment goes. With no
// statement in the block, the stretch holds only separators and comments, so
// any `%` in it starts a comment. A file that can no longer be read counts as
// having none.
class HasNoComment final : public StageOf<HasNoComment, Predicate<CatchBlock const&>> {
 public:
  std::u16string description() const override { return u"HasNoComment"; }
  bool test(CatchBlock const& block, ca::Analysis const& analysis) override {
    auto const* statement = lf::astapi::dynCast<TryStatement>(block.getParent());
    if (statement == nullptr) return true;
    std::optional<std::string_view> const text = analysis.get<FileText>().text();
    if (!text) return true;
    std::size_t const to = statement->getSourceRange().last.offset;
    std::size_t const from = text->find_first_of("\r\n", block.getSourceRange().first.offset);
    if (from >= to || to > text->size()) return true;
    return text->substr(from, to - from).find('%') == std::string_view::npos;
  }
};

void declare(RuleDeclaration const& rule) {
  rule.all().catchBlock | std::make_unique<HasNoStatements>() | std::make_unique<HasNoComment>() |
      rule.report<CatchBlock const&>([](CatchBlock const& block) {
        if (Identifier const* caught = block.getIdentifier()) {
          return "the error caught in '" + utf8(ca::astapi::toStdView(caught->getText())) +
                 "' is dropped: the catch block is empty";
        }
        return std::string("the catch block is empty: every error of its try block is dropped");
      });
}

}  // namespace

RuleBody const& body::EmptyCatch() {
  static RuleBody const rule{
      .documentation =
          {
              .finds = "A `catch` block that holds no statement and no comment, with or without a name for the "
                       "error caught.",
              .why = "An empty catch block swallows every error of its `try` block, also those nobody thought "
                     "of: a misspelt name, a missing file, an out-of-memory error. The program goes on with "
                     "whatever state the failed code left behind, and the failure shows up later, far from "
                     "its cause, or not at all.",
              .example = "    try\n"
                         "      settings = readSettings(path);\n"
                         "    catch err\n"
                         "    end",
              .instead = "Handle the error, or let it go on purpose and say why in a comment; the rule takes a "
                         "comment on a line of its own in the catch block as that decision and does not report it:\n\n"
                         "    try\n"
                         "      settings = readSettings(path);\n"
                         "    catch err\n"
                         "      warning('app:settings', 'using default settings: %s', err.message);\n"
                         "      settings = defaultSettings();\n"
                         "    end\n"
                         "\n"
                         "    try\n"
                         "      delete(tempFile);\n"
                         "    catch\n"
                         "      % the file may already be gone; nothing to clean up then\n"
                         "    end",
              .limits = "Any comment on a line between `catch` and `end` silences the rule, whatever it says, "
                        "also one left over from deleted code; a comment at the end of the `catch` line itself "
                        "does not, since that is where `% plexus: ignore empty-catch` goes. A catch block that does "
                        "something but still ignores the "
                        "error, such as one that only sets a flag nobody reads, is not reported, nor is a "
                        "`try` without `catch`, which also drops its errors. Comments are read from the file "
                        "on disk: if it changed or went away after it was parsed, the block is reported as "
                        "though it had none.",
          },
      .options = {},
      .declare = &declare,
  };
  return rule;
}

}  // namespace plexus::rules
