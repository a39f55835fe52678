#include "tools/check/reports/streamed_json.hpp"

#include <stdexcept>
#include <string>

namespace plexus::check::reports {

namespace {

std::string dumped(nlohmann::ordered_json const& value) {
  return value.dump(2, ' ', false, nlohmann::ordered_json::error_handler_t::replace);
}

}  // namespace

void writeJson(std::ostream& out, nlohmann::ordered_json const& document) { out << dumped(document) << '\n'; }

void writeJsonStreamingArray(std::ostream& out, nlohmann::ordered_json const& skeleton, std::string_view key,
                             std::size_t count, std::function<nlohmann::ordered_json(std::size_t)> const& element) {
  std::string const text = dumped(skeleton);
  std::string const marker = nlohmann::ordered_json(key).dump() + ": []";
  // A string of the document that holds the marker has its quotes escaped
  // (\"key\": []), so the last match is the member itself.
  std::size_t const at = text.rfind(marker);
  if (at == std::string::npos) throw std::logic_error("the JSON skeleton has no empty array " + marker);
  if (count == 0) {
    out << text << '\n';
    return;
  }
  std::size_t const lineStart = text.rfind('\n', at) + 1;  // npos + 1 == 0
  std::string const indent = text.substr(lineStart, at - lineStart);
  std::string const inner = indent + "  ";
  out << std::string_view(text).substr(0, at + marker.size() - 1);  // up to and with '['
  std::string item;
  for (std::size_t i = 0; i < count; ++i) {
    item = dumped(element(i));
    out << (i == 0 ? "\n" : ",\n") << inner;
    // An element's lines are indented from its own depth; strings hold no
    // raw line ends, so each one starts a line.
    std::size_t from = 0;
    for (std::size_t end = item.find('\n'); end != std::string::npos; end = item.find('\n', from)) {
      out << std::string_view(item).substr(from, end + 1 - from) << inner;
      from = end + 1;
    }
    out << std::string_view(item).substr(from);
  }
  out << '\n' << indent << ']' << std::string_view(text).substr(at + marker.size()) << '\n';
}

}  // namespace plexus::check::reports
