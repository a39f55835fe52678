#include "rulesystem/rulesystem.hpp"
#include "tests/rulesystem/reference/reference_pipelines.hpp"

namespace plexus::testing {

using namespace ca::rulesystem;

std::vector<ReferencePipeline> attributePipelines() {
  return {
      PLEXUS_PIPELINE(all.attribute | isLabelAttribute()),
      PLEXUS_PIPELINE(all.attribute | isMetaClassAttribute()),
      // One stage class with two values, printed apart.
      PLEXUS_PIPELINE(all.attribute | isAccessAttributeWithoutImmutable()),
      PLEXUS_PIPELINE(all.attribute | isAccessAttributeWithImmutable()),
      PLEXUS_PIPELINE(all.attribute | isLogicalAttribute()),
      PLEXUS_PIPELINE(all.attribute | isUnknownAttribute()),
      PLEXUS_PIPELINE(all.attribute | !isAccessAttributeWithImmutable() | isLogicalAttribute()),
      PLEXUS_PIPELINE(all.argument | isNamedArgumentByClass()),
      PLEXUS_PIPELINE(all.argument | isNamedArgumentByField()),
      PLEXUS_PIPELINE(all.argument | !isNamedArgumentByField() | !isNamedArgumentByClass()),
      PLEXUS_PIPELINE(all.argument | isIgnoredArgument()),
  };
}

}  // namespace plexus::testing
