#include "rulesystem/syntax/node_relations.hpp"

#include <typeinfo>

#include "platform/analysis/analysis_impl.hpp"
#include "platform/ast/text.hpp"
#include "platform/controlflow/control_flow.hpp"
#include "platform/filesystem/paths.hpp"
#include "platform/i18n/i18n.hpp"
#include "platform/utils/invariant.hpp"

namespace ca::rulesystem {

namespace {

/// Whether `node` is element number `index` (from 1) of `list`: the very
/// node, not one equal to it.
template <class List>
bool standsAt(List const& list, std::uint64_t index, Node const& node) {
  return index >= 1 && index <= list.size() && static_cast<Node const*>(list[index - 1]) == &node;
}

}  // namespace

std::unique_ptr<Predicate<Node const&>> isNthItemInList(std::uint64_t index) {
  class IsNthItemInList final : public StageOf<IsNthItemInList, Predicate<Node const&>, std::uint64_t> {
   public:
    using StageOf::StageOf;
    std::uint64_t index() const { return parameter<0>(); }

    std::u16string description() const override {
      fl::i18n::TextStream text;
      text << u"isNthItemInList " << index();
      return text.str();
    }
    bool test(Node const& node, ca::Analysis const&) override {
      Node const* const parent = node.getParent();
      if (parent == nullptr) return false;
      switch (parent->getKind()) {
        case lf::astapi::NodeKind::BraceOperation:
          return standsAt(static_cast<BraceOperation const&>(*parent).getArguments(), index(), node);
        case lf::astapi::NodeKind::ImportCommand:
          return standsAt(static_cast<ImportCommand const&>(*parent).getParts(), index(), node);
        case lf::astapi::NodeKind::ParenOperation:
          return standsAt(static_cast<ParenOperation const&>(*parent).getArguments(), index(), node);
        case lf::astapi::NodeKind::CommandInvocation:
          return standsAt(static_cast<CommandInvocation const&>(*parent).getArguments(), index(), node);
        default:
          return false;
      }
    }
  };
  PLEXUS_INVARIANT(index >= 1, "isNthItemInList counts positions from 1");
  return std::make_unique<IsNthItemInList>(index);
}

std::unique_ptr<Predicate<Node const&>> isFollowedBy(lf::astapi::NodeKind kind) {
  class IsFollowedBy final : public StageOf<IsFollowedBy, Predicate<Node const&>, lf::astapi::NodeKind> {
   public:
    using StageOf::StageOf;
    lf::astapi::NodeKind kind() const { return parameter<0>(); }

    // Without the kind, so that the stages for different kinds print alike.
    std::u16string description() const override { return u"IsFollowedBy"; }
    bool test(Node const& node, ca::Analysis const& analysis) override {
      auto const& flow = analysis.get<ca::controlflow::ControlFlowAnalysis>();
      // A printed expression is not a statement of the graph; its statement
      // is. For the root, which has no parent, the graph's own refusal of a
      // node that is no statement of it says what went wrong.
      Node const* statement = &node;
      if (Node const* const parent = node.getParent();
          parent != nullptr && parent->getKind() == lf::astapi::NodeKind::PrintStatement) {
        statement = parent;
      }
      return flow.getEnclosingGraph(statement).getUnconditionalEdge(statement).getKind() == kind();
    }
  };
  return std::make_unique<IsFollowedBy>(kind);
}

std::unique_ptr<Predicate<Node const&>> isInAtDirectory() {
  class IsInAtDirectory final : public StageOf<IsInAtDirectory, Predicate<Node const&>> {
   public:
    std::u16string description() const override { return u"IsInAtDirectory"; }
    bool test(Node const&, ca::Analysis const& analysis) override {
      namespace paths = fl::filesystem::detail;
      // Raises std::bad_cast for an analysis that is no AnalysisImpl.
      auto const& analysed = dynamic_cast<ca::clients::AnalysisImpl const&>(analysis);
      std::u16string path(ca::astapi::toStdView(analysed.getProgram()->getFilePath()));
      // Both separators count, so that a path written on another system
      // splits the same way.
      if (!path.empty()) path = paths::make_native_form(path, 1);
      std::u16string folder = paths::extract_parent_path(path);
      if (!folder.empty()) folder = paths::make_native_form(folder, 1);
      std::u16string const folderName = paths::extract_filename(folder);
      return !folderName.empty() && folderName.front() == u'@';
    }
  };
  return std::make_unique<IsInAtDirectory>();
}

std::unique_ptr<Predicate<Program const&>> isFileType(ca::FileType fileType) {
  class IsFileType final : public StageOf<IsFileType, Predicate<Program const&>, ca::FileType> {
   public:
    using StageOf::StageOf;
    ca::FileType fileType() const { return parameter<0>(); }

    std::u16string description() const override {
      fl::i18n::TextStream text;
      text << u"IsInFileType " << fileType();
      return text.str();
    }
    // The analysis knows the sort of its file; the program adds nothing.
    bool test(Program const&, ca::Analysis const& analysis) override { return analysis.getFileType() == fileType(); }
  };
  return std::make_unique<IsFileType>(fileType);
}

}  // namespace ca::rulesystem
