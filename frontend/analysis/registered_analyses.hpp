#pragma once

#include <memory>

#include "platform/analysis/analysis_registry.hpp"

namespace frontend {

/// The provider of every analysis that the front end computes: one factory
/// per analysis that the platform declares, each made by `Analysis::get<T>`
/// when first asked. An analysis the front end does not compute yet (type
/// values, abstract interpretation, parallel loops, code generation, context)
/// raises std::logic_error naming it.
///
/// To add one: declare its class with `GetAnalysisId` and a `Create` that
/// calls `createByProvider` (as the platform's declared analyses do), write
/// the code that computes it, and add its line to the table in
/// registered_analyses.cpp.
///
/// One registry serves every file and every thread: it holds nothing but the
/// factories.
std::shared_ptr<ca::clients::AnalysisRegistry const> registeredAnalyses();

}  // namespace frontend
