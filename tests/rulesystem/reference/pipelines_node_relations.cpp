#include "rulesystem/rulesystem.hpp"
#include "tests/rulesystem/reference/reference_pipelines.hpp"

namespace plexus::testing {

using namespace ca::rulesystem;

std::vector<ReferencePipeline> nodeRelationPipelines() {
  return {
      // Parents: of any class, of one class, and the class dispatch after it.
      PLEXUS_PIPELINE(upcast<Node const&>(all.numberLiteral) | getParent<Node>()),
      PLEXUS_PIPELINE(upcast<Node const&>(all.numberLiteral) | getParent<Node>() | isa<Expression>()),
      PLEXUS_PIPELINE(upcast<Node const&>(all.field) | getParent<Node>()),
      PLEXUS_PIPELINE(upcast<Node const&>(all.field) | getParent<DotOperation>()),
      PLEXUS_PIPELINE(upcast<Node const&>(all.field) | getParent<DotOperation>() | isDirectChildOf<DotOperation>()),
      PLEXUS_PIPELINE(upcast<Node const&>(all.dotParenOperation) | getParent<Node>()),
      // Children of one class of parent, several classes on one producer.
      PLEXUS_PIPELINE(all.charVectorLiteral | isDirectChildOf<CommandInvocation>()),
      PLEXUS_PIPELINE(upcast<Node const&>(all.field) | isDirectChildOf<DotOperation>()),
      PLEXUS_PIPELINE(upcast<Node const&>(all.parenOperation) | isDirectChildOf<Assignment>()),
      PLEXUS_PIPELINE(upcast<Node const&>(all.parenOperation) | isDirectChildOf<MultiLhsAssignment>()),
      PLEXUS_PIPELINE(upcast<Node const&>(all.dotParenOperation) | isDirectChildOf<Assignment>()),
      // Positions in argument lists, command arguments and brace indexes.
      PLEXUS_PIPELINE(all.numberLiteral | isNthItemInList(1)),
      PLEXUS_PIPELINE(all.numberLiteral | isNthItemInList(2)),
      PLEXUS_PIPELINE(all.charVectorLiteral | isNthItemInList(1)),
      PLEXUS_PIPELINE(all.charVectorLiteral | isNthItemInList(2)),
      PLEXUS_PIPELINE(all.colonIndex | isNthItemInList(1)),
      // What follows a statement: two kinds that print alike, and a printed
      // expression that stands for its statement.
      PLEXUS_PIPELINE(upcast<Node const&>(all.assignment) | isFollowedBy(lf::astapi::NodeKind::PrintStatement)),
      PLEXUS_PIPELINE(upcast<Node const&>(all.assignment) | isFollowedBy(lf::astapi::NodeKind::Assignment)),
      PLEXUS_PIPELINE(upcast<Node const&>(all.parenOperation) | isDirectChildOf<PrintStatement>() |
                      isFollowedBy(lf::astapi::NodeKind::Assignment)),
      // The file: its folder and its sort.
      PLEXUS_PIPELINE(all.program | isInAtDirectory()),
      PLEXUS_PIPELINE(upcast<Node const&>(all.assignment) | isInAtDirectory()),
      PLEXUS_PIPELINE(all.program | isFileType(ca::FileType::Class)),
      PLEXUS_PIPELINE(all.program | isFileType(ca::FileType::Script)),
      PLEXUS_PIPELINE(all.program | isFileType(ca::FileType::Function) | isInAtDirectory()),
  };
}

}  // namespace plexus::testing
