#pragma once

#include <string>
#include <string_view>

#include <boost/utility/string_ref.hpp>

namespace ca::astapi {

/// A view of 16-bit text: a pointer and a length in 16-bit units. It does not
/// own what it shows; text in a tree lives as long as the tree's arena.
using TextView = boost::basic_string_ref<char16_t, std::char_traits<char16_t>>;

inline std::u16string_view toStdView(TextView text) noexcept { return {text.data(), text.size()}; }

inline TextView toTextView(std::u16string_view text) noexcept { return {text.data(), text.size()}; }

/// The source text of a node, as the tree recorded it.
class SourceText {
 public:
  SourceText() = default;
  explicit SourceText(TextView text) noexcept : text_(text) {}

  /// A copy of the text.
  std::u16string getText() const { return std::u16string(text_.data(), text_.size()); }
  TextView getView() const noexcept { return text_; }

 private:
  TextView text_;
};

}  // namespace ca::astapi
