#include "rulesystem/rulesystem.hpp"
#include "tests/rulesystem/reference/reference_pipelines.hpp"

namespace plexus::testing {

using namespace ca::rulesystem;

std::vector<ReferencePipeline> signatureCountPipelines() {
  return {
      PLEXUS_PIPELINE(all.function | (functionInputs{} >= 2)),
      // Same behaviour as the one above, yet a stage of its own.
      PLEXUS_PIPELINE(all.function | (functionInputs{} > 1)),
      PLEXUS_PIPELINE(all.function | (functionInputs{} == 2)),
      PLEXUS_PIPELINE(all.function | (functionInputs{} != 2)),
      PLEXUS_PIPELINE(all.function | (functionInputs{} <= 1)),
      PLEXUS_PIPELINE(all.function | (functionInputs{} < 3)),
      PLEXUS_PIPELINE(all.function | (functionOutputs{} == 0)),
      PLEXUS_PIPELINE(all.function | (functionOutputs{} == 1)),
      PLEXUS_PIPELINE(all.function | (functionOutputs{} == 1) | (functionInputs{} >= 2)),
      PLEXUS_PIPELINE(all.method | (methodInputs{} > 1)),
      // Prints like the function stage of the same comparison, and is another.
      PLEXUS_PIPELINE(all.method | (methodInputs{} == 2)),
      PLEXUS_PIPELINE(all.method | (methodOutputs{} != 1)),
      PLEXUS_PIPELINE(all.methodDefinition | (methodOutputs{} == 1)),
      PLEXUS_PIPELINE(all.methodDefinition | (methodOutputs{} == 1) | (methodInputs{} == 1)),
  };
}

}  // namespace plexus::testing
