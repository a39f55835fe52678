#include "rulesystem/rulesystem.hpp"
#include "tests/rulesystem/reference/reference_pipelines.hpp"

namespace plexus::testing {

using namespace ca::rulesystem;
using ca::astapi::StringId;

std::vector<ReferencePipeline> callPipelines() {
  return {
      // Calls by name and mode: every name behind one selector meets in one
      // switch; the two modes are two selectors.
      PLEXUS_PIPELINE(all.parenOperation | getCalls{StringId(u"max")}),
      PLEXUS_PIPELINE(all.parenOperation | getCalls{StringId(u"max"), getCalls::GetStrictlyKnownCalls}),
      PLEXUS_PIPELINE(all.parenOperation | getCalls{StringId(u"disp")}),
      PLEXUS_PIPELINE(all.parenOperation | getCalls{StringId(u"numel"), getCalls::GetStrictlyKnownCalls}),
      PLEXUS_PIPELINE(all.parenOperation | getCalls{StringId(), getCalls::GetStrictlyKnownCalls}),
      PLEXUS_PIPELINE(all.commandInvocation | getCalls{}),
      PLEXUS_PIPELINE(upcast<Node const&>(all.commandInvocation) | getCalls{StringId(u"hold")}),
      PLEXUS_PIPELINE(upcast<Node const&>(all.numberLiteral) | getClosestCall()),
      PLEXUS_PIPELINE(upcast<Node const&>(all.charVectorLiteral) | getClosestCall() | getNameNode{}),

      // Arguments, positions sharing the selection in front of them.
      PLEXUS_PIPELINE(all.parenOperation | getCalls{} | getArguments{}),
      PLEXUS_PIPELINE(all.parenOperation | getCalls{} | getArgument{1}),
      PLEXUS_PIPELINE(all.parenOperation | getCalls{} | getArgument{2}),
      PLEXUS_PIPELINE(all.parenOperation | getCalls{} | getArgument{3}),
      PLEXUS_PIPELINE(all.parenOperation | getCalls{StringId(u"max")} | getArgument{3}),
      PLEXUS_PIPELINE(all.commandInvocation | getCalls{} | getNameNode{}),
      PLEXUS_PIPELINE(all.parenOperation | getCalls{} | getNameNode{}),

      // Counts, in both spellings: `3 < n` and `n > 3` are one stage.
      PLEXUS_PIPELINE(all.parenOperation | getCalls{} | (numArguments{} >= 2)),
      PLEXUS_PIPELINE(all.parenOperation | getCalls{} | (2 < numArguments{})),
      PLEXUS_PIPELINE(all.parenOperation | getCalls{} | (numArguments{} > 2)),
      PLEXUS_PIPELINE(all.parenOperation | getCalls{} | (numArguments{} == 0)),
      PLEXUS_PIPELINE(all.parenOperation | getCalls{} | (numArguments{} != 1)),
      PLEXUS_PIPELINE(all.parenOperation | getCalls{} | (2 > numArguments{})),
      PLEXUS_PIPELINE(all.parenOperation | getCalls{StringId(u"max")} | (numArguments{} <= 2)),
      PLEXUS_PIPELINE(all.parenOperation | getCalls{} | (numOutputArguments{} == 0)),
      PLEXUS_PIPELINE(all.parenOperation | getCalls{} | (1 < numOutputArguments{})),
      PLEXUS_PIPELINE(all.parenOperation | getCalls{} | (numOutputArguments{} != 1)),
      PLEXUS_PIPELINE(all.commandInvocation | getCalls{} | (numOutputArguments{} <= 0)),

      // Outputs: the two multi-assignment positions print alike but are two
      // stages.
      PLEXUS_PIPELINE(all.parenOperation | getCalls{} | getSingleOutput()),
      PLEXUS_PIPELINE(all.parenOperation | getCalls{} | getOutputInMultiAssignment(2)),
      PLEXUS_PIPELINE(all.parenOperation | getCalls{} | getOutputInMultiAssignment(3)),
      PLEXUS_PIPELINE(all.parenOperation | getCalls{} | isOutputDefinitelyUsed()),
      PLEXUS_PIPELINE(all.parenOperation | getCalls{} | isOutputDefinitelyNotUsed()),
      PLEXUS_PIPELINE(all.commandInvocation | getCalls{} | isOutputDefinitelyNotUsed()),
      PLEXUS_PIPELINE(all.parenOperation | getCalls{} | isDotSyntax()),
      PLEXUS_PIPELINE(all.parenOperation | getCalls{StringId(u"disp")} | isOutputDefinitelyNotUsed() |
                      getArgument{1}),
  };
}

}  // namespace plexus::testing
