#pragma once

#include <memory>
#include <optional>
#include <unordered_set>

#include "frontend/analysis/name_resolution.hpp"
#include "platform/callresolution/call.hpp"

namespace frontend {

/// Which nodes of a file are calls, by the names its symbols give:
///
/// - `f(x)` and `f` alone are calls when `f` is no variable: of a function
///   of the file, a method, the class, or an external function;
/// - `a.b.c(x)` and `a.b.c` with `a` no variable are calls of the package
///   function `a.b.c`;
/// - `obj.m(x)` and `obj.m` are calls of the method `m` when `obj` is the
///   object input of a method of the class that defines `m`;
/// - `obj@Base(x)` calls a superclass method or constructor;
/// - command syntax is always a call;
/// - in a script's own statements, a call of a name that the script does not
///   define is only potential: earlier code may have made it a variable.
///
/// A name in a function handle (`@f`), a metaclass query, a superclass list,
/// a validation, a definition or an assignment target is no call.
///
/// Invariants: answers from the tree and the symbols alone, computing nothing
/// ahead; the symbols outlive it.
class FileCalls final : public ca::callresolution::CallResolutionAnalysis {
 public:
  explicit FileCalls(std::shared_ptr<FileSymbols const> symbols);

  ca::callresolution::Call getCallInfo(ca::ast::Node const& node) const override;
  std::optional<ca::callresolution::Call> getClosestCall(ca::ast::Node const& node) const override;

 private:
  std::shared_ptr<FileSymbols const> symbols_;
  std::unordered_set<ca::astapi::StringId> methods_;  // the methods the file's class defines
};

}  // namespace frontend
