#include "platform/ast/syntax_tree.hpp"

#include <algorithm>
#include <stdexcept>

namespace ca::astapi {

std::pmr::memory_resource& TreeBuilder::arena() {
  if (!tree_) throw std::logic_error("TreeBuilder used after finish");
  return tree_->arena_;
}

TextView TreeBuilder::text(std::u16string_view text) {
  if (text.empty()) return {};
  auto* memory = static_cast<char16_t*>(arena().allocate(text.size() * sizeof(char16_t), alignof(char16_t)));
  std::copy(text.begin(), text.end(), memory);
  return {memory, text.size()};
}

std::shared_ptr<SyntaxTree const> TreeBuilder::finish(ast::Program const* program, FileType fileType) {
  if (!tree_) throw std::logic_error("TreeBuilder::finish called twice");
  tree_->program_ = program;
  tree_->fileType_ = fileType;
  return std::shared_ptr<SyntaxTree const>(tree_.release());
}

}  // namespace ca::astapi
