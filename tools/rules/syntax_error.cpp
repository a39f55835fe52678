// syntax-error: built in; the checker reports what the front end found wrong
// with a file that it could not read or parse.

#include "tools/rules/rule_table.hpp"

namespace plexus::rules {

RuleBody const& body::SyntaxError() {
  static RuleBody const rule{
      .documentation =
          {
              .finds = "A file that cannot be read (missing, unreadable, not a regular file, larger than 1 GiB, "
                       "not text) or that does not parse, with each diagnostic of the parser; and warnings about "
                       "how a file was read, such as a legacy encoding.",
              .why = "No other rule looks at a file that does not parse: its findings would all be missing. The "
                     "language itself refuses to run such a file.",
              .example = "    function y = f(x)\n"
                         "      y = (x + 1;\n"
                         "    end",
              .instead = "Fix the syntax:\n\n"
                         "    function y = f(x)\n"
                         "      y = (x + 1);\n"
                         "    end",
              .limits = "After the first error of a statement the parser skips to the end of the statement, so "
                        "an error can hide another in the same statement. This rule cannot be disabled for a "
                        "file that does not parse: there is nothing else to report on it.",
          },
      .options = {},
      .declare = nullptr,
  };
  return rule;
}

}  // namespace plexus::rules
