#include "tools/check/suppressions.hpp"

#include <boost/algorithm/string/classification.hpp>
#include <boost/algorithm/string/split.hpp>
#include <boost/algorithm/string/trim.hpp>
#include <vector>

namespace plexus::check {

namespace {

constexpr std::string_view directive = "plexus:";

// The text after "% plexus:" in the last comment of a line that holds one,
// and whether the comment is all the line holds.
struct Directive {
  std::string_view text;
  bool ownLine = false;
};

bool directiveAt(std::string_view line, std::size_t percent, Directive& found) {
  std::string_view rest = line.substr(percent + 1);
  while (!rest.empty() && (rest.front() == ' ' || rest.front() == '\t')) rest.remove_prefix(1);
  if (!rest.starts_with(directive)) return false;
  found.text = rest.substr(directive.size());
  std::string_view before = line.substr(0, percent);
  found.ownLine = before.find_first_not_of(" \t") == std::string_view::npos;
  return true;
}

}  // namespace

Suppressions Suppressions::of(std::string_view source) {
  Suppressions result;
  std::uint32_t lineNumber = 0;
  std::size_t start = 0;
  while (start <= source.size()) {
    std::size_t end = source.find_first_of("\r\n", start);
    if (end == std::string_view::npos) end = source.size();
    std::string_view const line = source.substr(start, end - start);
    ++lineNumber;
    std::size_t const percent = line.rfind('%');
    Directive found;
    if (percent != std::string_view::npos && directiveAt(line, percent, found)) {
      std::string text(found.text);
      boost::algorithm::trim(text);
      bool const wholeFile = text.starts_with("ignore-file");
      bool const oneLine = !wholeFile && text.starts_with("ignore");
      if (oneLine || (wholeFile && found.ownLine && lineNumber <= fileDirectiveLines)) {
        std::vector<std::string> ids;
        std::string const list = text.substr(wholeFile ? 11 : 6);
        boost::algorithm::split(ids, list, boost::algorithm::is_any_of(", \t"), boost::algorithm::token_compress_on);
        for (std::string const& id : ids) {
          if (id.empty()) continue;
          result.named_.emplace(lineNumber, id);
          if (wholeFile) {
            result.file_.insert(id);
          } else {
            result.lines_.emplace(lineNumber, id);
          }
        }
      }
    }
    if (end == source.size()) break;
    start = end + (source[end] == '\r' && end + 1 < source.size() && source[end + 1] == '\n' ? 2 : 1);
  }
  return result;
}

bool Suppressions::silences(std::string_view ruleId, std::uint32_t line) const {
  if (file_.find(ruleId) != file_.end()) return true;
  return lines_.find(std::pair<std::uint32_t, std::string>(line, std::string(ruleId))) != lines_.end();
}

}  // namespace plexus::check
