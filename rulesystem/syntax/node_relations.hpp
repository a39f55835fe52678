#pragma once

// Where a syntax node stands: its parent, its position in the list that holds
// it, what control reaches after it, and the sort of file and folder it lies
// in. The class of a node itself is asked with `isa<T>` (isa.hpp).

#include <cstdint>
#include <functional>
#include <memory>
#include <string>

#include "platform/analysis/file_type.hpp"
#include "platform/ast/ast.hpp"
#include "platform/utils/type_names.hpp"
#include "rulesystem/graph/stage.hpp"
#include "rulesystem/graph/stage_of.hpp"
#include "rulesystem/graph/tree_types.hpp"

namespace ca::rulesystem {

/// Gives the parent of a node when that parent is of class T; nothing for the
/// root or for a parent of another class. At most one item per node.
///   upcast<Node const&>(all.numberLiteral) | getParent<Node>()
template <class T>
std::unique_ptr<SelectMany<Node const&, T const&>> getParent() {
  class GetParent final : public StageOf<GetParent, SelectMany<Node const&, T const&>> {
   public:
    std::u16string description() const override {
      std::u16string text = u"GetParent ";
      text += ca::utils::prettyTypeName<T>();
      return text;
    }
    void select(Node const& node, ca::Analysis const&, std::function<void(T const&)> const& yield) const override {
      Node const* const parent = node.getParent();
      // The class test reads the parent's kind; no checked cast on the walk.
      if (parent != nullptr && lf::astapi::isA<T>(*parent)) yield(static_cast<T const&>(*parent));
    }
  };
  return std::make_unique<GetParent>();
}

/// Keeps the nodes whose parent is of class T; the root is the child of
/// nothing.
///   all.charVectorLiteral | isDirectChildOf<CommandInvocation>()
template <class T>
std::unique_ptr<Predicate<Node const&>> isDirectChildOf() {
  class IsDirectChildOf final : public StageOf<IsDirectChildOf, Predicate<Node const&>> {
   public:
    std::u16string description() const override {
      std::u16string text = u"IsDirectChildOf ";
      text += ca::utils::prettyTypeName<T>();
      return text;
    }
    bool test(Node const& node, ca::Analysis const&) override {
      Node const* const parent = node.getParent();
      return parent != nullptr && lf::astapi::isA<T>(*parent);
    }
  };
  return std::make_unique<IsDirectChildOf>();
}

/// Keeps the nodes that are item number `index`, counted from 1, of the
/// argument list of the paren or brace operation or command around them, or
/// of the parts of an import. The called or indexed base is in no list.
/// `index` 0 is no position: checked builds stop at it, others keep nothing.
///   all.numberLiteral | isNthItemInList(2)
std::unique_ptr<Predicate<Node const&>> isNthItemInList(std::uint64_t index);

/// Keeps the statements after which control goes on unconditionally to a
/// statement of `kind`; an expression printed by its statement stands for
/// that statement. The end of a body is followed by its function or program.
/// Only for statements whose control does not branch.
///   upcast<Node const&>(all.assignment) | isFollowedBy(lf::astapi::NodeKind::PrintStatement)
std::unique_ptr<Predicate<Node const&>> isFollowedBy(lf::astapi::NodeKind kind);

/// Keeps every node of a file that lies directly in a folder whose name
/// starts with "@" (a class folder); the node itself does not matter.
///   all.program | isInAtDirectory()
std::unique_ptr<Predicate<Node const&>> isInAtDirectory();

/// Keeps the program when the analysed file is of the sort `fileType`.
///   all.program | isFileType(ca::FileType::Class)
std::unique_ptr<Predicate<Program const&>> isFileType(ca::FileType fileType);

}  // namespace ca::rulesystem
