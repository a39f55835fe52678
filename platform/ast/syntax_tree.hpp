#pragma once

#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <memory>
#include <memory_resource>
#include <new>
#include <span>
#include <string_view>
#include <type_traits>
#include <vector>

#include "platform/analysis/file_type.hpp"
#include "platform/ast/ast.hpp"

namespace ca::astapi {

/// One syntax tree and the arena that owns its nodes and texts.
///
/// Invariants: every node and every text of the tree lies in the arena and
/// lives exactly as long as this object; nodes are trivially destructible, so
/// the arena frees them all at once. A finished tree is never written again.
class SyntaxTree {
 public:
  SyntaxTree(SyntaxTree const&) = delete;
  SyntaxTree& operator=(SyntaxTree const&) = delete;

  ast::Program const* getProgram() const noexcept { return program_; }
  FileType getFileType() const noexcept { return fileType_; }
  /// How many nodes the builder made for this tree.
  std::size_t getNodeCount() const noexcept { return nodeCount_; }

 private:
  friend class TreeBuilder;
  SyntaxTree() = default;

  std::pmr::monotonic_buffer_resource arena_{64 * 1024};
  ast::Program const* program_ = nullptr;
  FileType fileType_ = FileType::Script;
  std::size_t nodeCount_ = 0;
};

/// Makes the nodes of one tree, bottom up: children first, then the node that
/// adopts them, then `finish` with the root.
///
///     TreeBuilder b;
///     auto* x = b.identifier(u"x");
///     auto* one = b.make<ast::NumberLiteral>(1.0, b.text(u"1"));
///     auto* stmt = b.make<ast::Assignment>(x, one);
///     auto tree = b.finish(b.make<ast::Program>(b.text(u"a.m"), b.list<ast::Node>({stmt})));
class TreeBuilder {
 public:
  TreeBuilder() : tree_(new SyntaxTree) {}

  /// Constructs a node of class T in the arena.
  template <class T, class... Args>
  T* make(Args&&... args) {
    static_assert(std::is_trivially_destructible_v<T>, "tree nodes must be trivially destructible");
    void* memory = allocate(sizeof(T), alignof(T));
    ++tree_->nodeCount_;
    return ::new (memory) T(std::forward<Args>(args)...);
  }

  /// Copies a list of children into the arena.
  template <class T>
  lf::astapi::NodeList<T> list(std::initializer_list<T const*> items) {
    return copyList<T>(items.begin(), items.size());
  }
  template <class T, class U>
  lf::astapi::NodeList<T> list(std::vector<U*> const& items) {
    static_assert(std::is_convertible_v<U*, T const*>);
    T const** array = allocateArray<T>(items.size());
    for (std::size_t i = 0; i < items.size(); ++i) array[i] = items[i];
    return {array, items.size()};
  }

  /// Copies nodes into a list of class T; each node must be a T.
  template <class T>
  lf::astapi::NodeList<T> listFrom(std::span<ast::Node const* const> nodes) {
    T const** array = allocateArray<T>(nodes.size());
    for (std::size_t i = 0; i < nodes.size(); ++i) array[i] = static_cast<T const*>(nodes[i]);
    return {array, nodes.size()};
  }

  /// Copies text into the arena.
  TextView text(std::u16string_view text);
  /// Copies ASCII text into the arena, widening each byte.
  TextView asciiText(std::string_view ascii);

  /// An identifier with an interned name.
  ast::Identifier* identifier(std::u16string_view name) { return make<ast::Identifier>(StringId(name)); }
  /// A field with an interned name.
  ast::Field* field(std::u16string_view name) { return make<ast::Field>(StringId(name)); }

  /// Hands the tree over. The builder must not be used afterwards.
  std::shared_ptr<SyntaxTree const> finish(ast::Program const* program, FileType fileType = FileType::Script);

 private:
  /// Bump allocation from the current block of the arena: the common case is
  /// a few instructions inline; a new block comes from the arena when this
  /// one is full (and throws std::logic_error after `finish`).
  void* allocate(std::size_t size, std::size_t alignment) {
    auto const address = reinterpret_cast<std::uintptr_t>(cursor_);
    std::uintptr_t const aligned = (address + alignment - 1) & ~(std::uintptr_t{alignment} - 1);
    if (aligned + size > reinterpret_cast<std::uintptr_t>(limit_)) return allocateInNewBlock(size, alignment);
    cursor_ = reinterpret_cast<std::byte*>(aligned + size);
    return reinterpret_cast<void*>(aligned);
  }
  void* allocateInNewBlock(std::size_t size, std::size_t alignment);

  template <class T>
  T const** allocateArray(std::size_t count) {
    if (count == 0) return nullptr;
    return static_cast<T const**>(allocate(count * sizeof(T const*), alignof(T const*)));
  }
  template <class T>
  lf::astapi::NodeList<T> copyList(T const* const* items, std::size_t count) {
    T const** array = allocateArray<T>(count);
    for (std::size_t i = 0; i < count; ++i) array[i] = items[i];
    return {array, count};
  }

  std::unique_ptr<SyntaxTree> tree_;
  std::byte* cursor_ = nullptr;
  std::byte* limit_ = nullptr;
};

}  // namespace ca::astapi
