#include "tests/rulesystem/reference/reference_pipelines.hpp"

namespace plexus::testing {

std::vector<ReferencePipeline> allReferencePipelines() {
  std::vector<ReferencePipeline> all;
  for (auto family : {callPipelines, nodeRelationPipelines, identifierAndSymbolPipelines,
                      operatorAndFieldPipelines, signatureCountPipelines, attributePipelines}) {
    for (ReferencePipeline& pipeline : family()) all.push_back(std::move(pipeline));
  }
  return all;
}

}  // namespace plexus::testing
