#include "rulesystem/execution/all_nodes.hpp"

#include <memory>
#include <string>

#include "platform/usedef/usedef_analysis.hpp"
#include "rulesystem/execution/ast_dispatcher.hpp"
#include "rulesystem/graph/run_scope.hpp"

namespace ca::rulesystem {

namespace {
template <class T>
Producer<T> makeRoot(char16_t const* name) {
  return Producer<T>(std::make_shared<RootProducer<T>>(name));
}
}  // namespace

AllNodes::AllNodes()
    : method(makeRoot<Method const&>(u"Method")),
#define PLEXUS_ROOT(member, TreeClass) member(makeRoot<TreeClass const&>(u## #TreeClass)),
#include "rulesystem/execution/root_producers.def"
#undef PLEXUS_ROOT
      definition(makeRoot<ca::usedef::Definition const*>(u"Definition")),
      use(makeRoot<ca::usedef::Use const*>(u"Use")) {
}

std::vector<ProducerConsumerBase const*> AllNodes::allProducers() const {
  std::vector<ProducerConsumerBase const*> roots;
  roots.reserve(treeRootCount);
  roots.push_back(method.impl.get());
#define PLEXUS_ROOT(member, TreeClass) roots.push_back(member.impl.get());
#include "rulesystem/execution/root_producers.def"
#undef PLEXUS_ROOT
  return roots;
}

void AllNodes::execute(ca::Analysis const& analysis, MessageHelper const* helper) const {
  // Ends the run, also by an exception: signals that subrules recorded for
  // this analysis and nobody tested are dropped here.
  RunScope const run(analysis);
  AstDispatcher dispatcher(this, &analysis, helper);
  dispatcher.dispatch(analysis.getProgram());

  // The use-def pass comes second, so that anything that looks at definitions
  // and uses sees what the tree pass delivered for this analysis.
  std::vector<ca::usedef::UseDefBase const*> const records = analysis.get<ca::usedef::UseDefAnalysis>().getAllUseDefs();
  for (ca::usedef::UseDefBase const* record : records) {
    if (record->isDefinition()) {
      definition->produce(record->asDefinition(), analysis, helper);
    }
    if (record->isUse()) {
      use->produce(record->asUse(), analysis, helper);
    }
  }
}

}  // namespace ca::rulesystem
