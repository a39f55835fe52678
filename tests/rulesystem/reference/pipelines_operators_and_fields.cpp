#include "rulesystem/rulesystem.hpp"
#include "tests/rulesystem/reference/reference_pipelines.hpp"

namespace plexus::testing {

using namespace ca::rulesystem;

std::vector<ReferencePipeline> operatorAndFieldPipelines() {
  return {
      PLEXUS_PIPELINE(upcast<Node const&>(all.assignment) | isa<Assignment>()),
  };
}

}  // namespace plexus::testing
