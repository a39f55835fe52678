#include "rulesystem/calls/call_selection.hpp"

#include <optional>

namespace ca::rulesystem {

std::unique_ptr<SelectMany<Node const&, ca::callresolution::Call const&>> getClosestCall() {
  using ca::callresolution::Call;

  // What "closest" means is call resolution's: this stage only asks.
  class GetClosestCall final : public StageOf<GetClosestCall, SelectMany<Node const&, Call const&>> {
   public:
    std::u16string description() const override { return u"GetClosestCall"; }
    void select(Node const& node, ca::Analysis const& analysis,
                std::function<void(Call const&)> const& yield) const override {
      auto const& analysed = dynamic_cast<ca::clients::AnalysisImpl const&>(analysis);
      std::optional<Call> const closest = analysed.getCallResolutionAnalysis()->getClosestCall(node);
      if (closest.has_value()) yield(*closest);
    }
  };
  return std::make_unique<GetClosestCall>();
}

}  // namespace ca::rulesystem
