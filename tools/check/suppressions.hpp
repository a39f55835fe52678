#pragma once

#include <cstdint>
#include <set>
#include <string>
#include <string_view>
#include <utility>

namespace plexus::check {

/// The findings that a file's own comments silence, such as
/// `x = eval(code);  % plexus: ignore eval-call` and a line
/// `% plexus: ignore-file global-declaration, long-identifier`.
/// `ignore` silences the rules it names on its own line; it must be the last
/// comment of the line. `ignore-file` silences them in the whole file; it
/// must be a comment line of its own among the first `fileDirectiveLines`
/// lines. Ids are separated by commas or blanks. Unknown ids are kept, so
/// that they can be reported.
class Suppressions {
 public:
  static constexpr std::uint32_t fileDirectiveLines = 10;

  static Suppressions of(std::string_view source);

  bool silences(std::string_view ruleId, std::uint32_t line) const;

  /// Every id named, with the line of its comment, for checks of the ids.
  std::set<std::pair<std::uint32_t, std::string>> const& named() const { return named_; }

 private:
  std::set<std::pair<std::uint32_t, std::string>, std::less<>> lines_;
  std::set<std::string, std::less<>> file_;
  std::set<std::pair<std::uint32_t, std::string>> named_;
};

}  // namespace plexus::check
