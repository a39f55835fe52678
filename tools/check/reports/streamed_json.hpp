#pragma once

// Writing a JSON document whose one long array is written an element at a
// time, so that a report of many findings is never held whole as a tree:
// the output is the same, byte for byte, as writing the whole document.

#include <nlohmann/json.hpp>

#include <cstddef>
#include <functional>
#include <ostream>
#include <string_view>

namespace plexus::check::reports {

/// Writes a JSON document indented by two blanks, with a final line end.
/// Text that is not valid UTF-8 (a file name can be any bytes) is written
/// with U+FFFD in place of each bad sequence rather than stopping the report.
void writeJson(std::ostream& out, nlohmann::ordered_json const& document);

/// Writes `skeleton` as writeJson does, with its member named `key` (an
/// empty array; the last member of that name in the document) holding
/// `element(0)` to `element(count - 1)`, each made as it is written.
void writeJsonStreamingArray(std::ostream& out, nlohmann::ordered_json const& skeleton, std::string_view key,
                             std::size_t count, std::function<nlohmann::ordered_json(std::size_t)> const& element);

}  // namespace plexus::check::reports
