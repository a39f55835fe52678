#include "tools/check/timed_analyses.hpp"

#include <algorithm>
#include <array>
#include <string_view>

#include "frontend/analysis/name_resolution.hpp"
#include "platform/callresolution/call.hpp"
#include "platform/controlflow/control_flow.hpp"
#include "platform/i18n/i18n.hpp"
#include "platform/nameresolution/symbol_table.hpp"
#include "platform/tosk/tosk_analysis.hpp"
#include "platform/usedef/usedef_analysis.hpp"

namespace plexus::check {

namespace {

using std::chrono::nanoseconds;

constexpr std::array<std::string_view, 5> kFrontEndAnalyses{"names", "calls", "control flow", "use-def",
                                                            "class objects"};

std::string nameOf(ca::astapi::StringId analysisId) {
  // Symbols and identifier uses are one resolution of names in the front end.
  if (analysisId == ca::nameresolution::SymbolTable::GetAnalysisId()) return "names";
  if (analysisId == ca::nameresolution::IdUseAnalysis::GetAnalysisId()) return "names";
  if (analysisId == ca::callresolution::CallResolutionAnalysis::GetAnalysisId()) return "calls";
  if (analysisId == ca::controlflow::ControlFlowAnalysis::GetAnalysisId()) return "control flow";
  if (analysisId == ca::usedef::UseDefAnalysis::GetAnalysisId()) return "use-def";
  if (analysisId == ca::tosk::ToskAnalysis::GetAnalysisId()) return "class objects";
  return fl::i18n::to_utf8(analysisId.getString());
}

}  // namespace

void AnalysisTimes::add(std::string const& name, nanoseconds spent) {
  auto found = std::find_if(times_.begin(), times_.end(), [&](auto const& entry) { return entry.first == name; });
  if (found == times_.end()) {
    times_.emplace_back(name, spent);
  } else {
    found->second += spent;
  }
}

void AnalysisTimes::merge(AnalysisTimes const& other) {
  for (auto const& [name, spent] : other.times_) add(name, spent);
}

std::vector<std::pair<std::string, nanoseconds>> AnalysisTimes::byName() const {
  std::vector<std::pair<std::string, nanoseconds>> listed;
  for (std::string_view name : kFrontEndAnalyses) listed.emplace_back(std::string(name), nanoseconds{0});
  std::vector<std::pair<std::string, nanoseconds>> others;
  for (auto const& [name, spent] : times_) {
    auto known = std::find_if(listed.begin(), listed.end(), [&](auto const& entry) { return entry.first == name; });
    if (known != listed.end()) {
      known->second += spent;
    } else {
      others.emplace_back(name, spent);
    }
  }
  std::sort(others.begin(), others.end());
  listed.insert(listed.end(), others.begin(), others.end());
  return listed;
}

template <class Make>
auto TimedAnalysisProvider::timed(std::string const& name, Make make) const {
  // Closes the measurement also when the analysis throws, so that the
  // stack of analyses being made stays that of the frames still running.
  struct Measure {
    TimedAnalysisProvider const& provider;
    std::string const& name;
    ca::rulesystem::Profiler::Clock::time_point start = ca::rulesystem::Profiler::Clock::now();
    ~Measure() {
      auto const inclusive =
          std::chrono::duration_cast<nanoseconds>(ca::rulesystem::Profiler::Clock::now() - start);
      nanoseconds const below = provider.below_.back();
      provider.below_.pop_back();
      provider.times_.add(name, inclusive - below);
      if (!provider.below_.empty()) {
        provider.below_.back() += inclusive;
      } else if (provider.profiler_ != nullptr) {
        provider.profiler_->addForeignTime(inclusive);
      }
    }
  };
  below_.push_back(nanoseconds{0});
  Measure const measure{*this, name};
  return make();
}

std::shared_ptr<void> TimedAnalysisProvider::makeAnalysis(ca::astapi::StringId analysisId,
                                                          ca::clients::AnalysisImpl const& analysis) const {
  if (!namesMade_) {
    namesMade_ = true;
    timed("names", [&] { return &analysis.get<frontend::FileSymbols>(); });
  }
  return timed(nameOf(analysisId), [&] { return made_->makeAnalysis(analysisId, analysis); });
}

}  // namespace plexus::check
