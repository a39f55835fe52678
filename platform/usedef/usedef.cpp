#include <ostream>

#include "platform/analysis/provided_analysis.hpp"
#include "platform/usedef/usedef_analysis.hpp"

namespace ca::usedef {

std::ostream& operator<<(std::ostream& out, UseDefBase::Kind kind) {
  switch (kind) {
    case UseDefBase::Kind::FullAssignmentDef: return out << "FullAssignmentDef";
    case UseDefBase::Kind::PartialAssignmentUseDef: return out << "PartialAssignmentUseDef";
    case UseDefBase::Kind::InputDef: return out << "InputDef";
    case UseDefBase::Kind::LoopVariableDef: return out << "LoopVariableDef";
    case UseDefBase::Kind::CatchDef: return out << "CatchDef";
    case UseDefBase::Kind::GlobalDef: return out << "GlobalDef";
    case UseDefBase::Kind::PersistentDef: return out << "PersistentDef";
    case UseDefBase::Kind::VariableUse: return out << "VariableUse";
  }
  return out << "Kind(" << static_cast<int>(kind) << ')';
}

astapi::StringId UseDefAnalysis::GetAnalysisId() {
  static astapi::StringId const id(u"ca::usedef::UseDefAnalysis");
  return id;
}

std::shared_ptr<UseDefAnalysis> UseDefAnalysis::Create(Analysis const& analysis) {
  return clients::createByProvider<UseDefAnalysis>(analysis);
}

std::vector<UseDefBase const*> UseDefAnalysis::getAllUseDefs() const {
  std::vector<UseDefBase const*> all;
  all.reserve(records_.size());
  for (auto const& record : records_) all.push_back(record.get());
  return all;
}

}  // namespace ca::usedef
