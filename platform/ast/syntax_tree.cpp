#include "platform/ast/syntax_tree.hpp"

#include <algorithm>
#include <stdexcept>

namespace ca::astapi {

void* TreeBuilder::allocateInNewBlock(std::size_t size, std::size_t alignment) {
  if (!tree_) throw std::logic_error("TreeBuilder used after finish");
  constexpr std::size_t blockSize = 256 * 1024;
  std::size_t const needed = size + alignment;
  std::size_t const length = needed > blockSize ? needed : blockSize;
  cursor_ = static_cast<std::byte*>(tree_->arena_.allocate(length, alignof(std::max_align_t)));
  limit_ = cursor_ + length;
  return allocate(size, alignment);
}

TextView TreeBuilder::text(std::u16string_view text) {
  if (text.empty()) return {};
  auto* memory = static_cast<char16_t*>(allocate(text.size() * sizeof(char16_t), alignof(char16_t)));
  std::copy(text.begin(), text.end(), memory);
  return {memory, text.size()};
}

TextView TreeBuilder::asciiText(std::string_view ascii) {
  if (ascii.empty()) return {};
  auto* memory = static_cast<char16_t*>(allocate(ascii.size() * sizeof(char16_t), alignof(char16_t)));
  std::copy(ascii.begin(), ascii.end(), memory);
  return {memory, ascii.size()};
}

std::shared_ptr<SyntaxTree const> TreeBuilder::finish(ast::Program const* program, FileType fileType) {
  if (!tree_) throw std::logic_error("TreeBuilder::finish called twice");
  tree_->program_ = program;
  tree_->fileType_ = fileType;
  cursor_ = limit_ = nullptr;
  return std::shared_ptr<SyntaxTree const>(tree_.release());
}

}  // namespace ca::astapi
