#pragma once

// The text of an analysed file, for rules that must see what the syntax tree
// leaves out (comments). The tree keeps no text of its own, so the file is
// read again, from the path its program names, once per analysis and only
// when a rule asks.

#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "platform/analysis/analysis.hpp"
#include "platform/ast/string_id.hpp"

namespace plexus::rules {

/// The decoded text of the file that an analysis was made from, in which the
/// tree's byte offsets lie. Reached through `analysis.get<FileText>()`.
class FileText {
 public:
  /// The key of this analysis in an analysis's cache.
  static ca::astapi::StringId GetAnalysisId();
  /// Reads and decodes the file at the path of the analysis's program.
  static std::shared_ptr<FileText> Create(ca::Analysis const& analysis);

  /// The text, or nothing when the file could no longer be read or decoded
  /// (it changed or went away after it was analysed, or the analysis was
  /// made from text that is in no file).
  std::optional<std::string_view> text() const {
    return readable_ ? std::optional<std::string_view>(text_) : std::nullopt;
  }

 private:
  std::string text_;
  bool readable_ = false;
};

}  // namespace plexus::rules
