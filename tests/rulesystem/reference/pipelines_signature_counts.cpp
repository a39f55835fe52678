#include "rulesystem/rulesystem.hpp"
#include "tests/rulesystem/reference/reference_pipelines.hpp"

namespace plexus::testing {

using namespace ca::rulesystem;

std::vector<ReferencePipeline> signatureCountPipelines() {
  return {
      PLEXUS_PIPELINE(upcast<Node const&>(all.assignment) | isa<Assignment>()),
      PLEXUS_PIPELINE(upcast<Node const&>(all.parenOperation) | isa<ParenOperation>()),
  };
}

}  // namespace plexus::testing
