#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <unordered_map>
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
/// Every node of the symbols' program is resolved once, when the analysis is
/// made, in one walk that hands each node the context its ancestors give
/// (the method around it, whether it lies in a script's own statements,
/// whether names are only named there) and its closest call: `getCallInfo`
/// is then one lookup, and `getClosestCall` at most a few, however deep the
/// node lies. The walk keeps its own stack, so a deep tree costs heap, not
/// call stack.
///
/// Invariants: answers for the nodes of the symbols' program (any other node
/// is no call); the symbols outlive it.
class FileCalls final : public ca::callresolution::CallResolutionAnalysis {
 public:
  explicit FileCalls(std::shared_ptr<FileSymbols const> symbols);

  ca::callresolution::Call getCallInfo(ca::ast::Node const& node) const override;
  std::optional<ca::callresolution::Call> getClosestCall(ca::ast::Node const& node) const override;

 private:
  // The call at a node, given the method around it (if any), whether it lies
  // in a script's own statements and whether names are only named there.
  ca::callresolution::Call resolve(ca::ast::Node const& node, ca::ast::Method const* method, bool inScript,
                                   bool nameOnly) const;

  std::shared_ptr<FileSymbols const> symbols_;
  std::unordered_set<ca::astapi::StringId> methods_;  // the methods the file's class defines
  std::unordered_map<ca::ast::Node const*, ca::callresolution::Call> calls_;  // the nodes that are calls
  // The closest call (or none) of every kClosestCallStride-th expression on
  // the way up from a node to a call or a statement: a question climbs no
  // further than that, and ordinary code, whose expressions lie a step or
  // two below a call or a statement, notes next to nothing.
  static constexpr std::uint32_t kClosestCallStride = 8;
  std::unordered_map<ca::ast::Node const*, ca::ast::Node const*> closest_;
};

}  // namespace frontend
