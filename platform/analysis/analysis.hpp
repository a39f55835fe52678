#pragma once

#include <memory>
#include <unordered_map>

#include "platform/analysis/file_type.hpp"
#include "platform/ast/ast.hpp"
#include "platform/ast/string_id.hpp"

namespace ca::nameresolution {
class SymbolTable;
}

namespace ca {

/// One analysed file: its syntax tree, its symbol table, and the analyses over
/// it, computed when first asked.
///
/// Every analysis is made one way: `get<T>` calls `T::Create` on first use
/// and caches the result under `T::GetAnalysisId()`. The analyses declared in
/// the platform make themselves through the provider of an
/// `ca::clients::AnalysisImpl` (see provided_analysis.hpp).
///
/// Invariants: the tree and every analysis reached from it live as long as this
/// object. An analysis reached through `get<T>` is computed at most once per
/// object. An `Analysis` belongs to one thread at a time; its cache has no
/// lock.
class Analysis {
 public:
  Analysis() = default;
  Analysis(Analysis const&) = delete;
  Analysis& operator=(Analysis const&) = delete;
  virtual ~Analysis() = default;

  /// The root of the tree; the walk starts here.
  virtual ast::Program const* getProgram() const = 0;
  virtual FileType getFileType() const = 0;
  /// The symbol table of the file; never null.
  virtual nameresolution::SymbolTable const* getSymbolTable() const = 0;

  /// The one instance of analysis T for this file, made by `T::Create` on first
  /// use and cached under `T::GetAnalysisId()`.
  ///
  ///     auto const& useDefs = analysis.get<ca::usedef::UseDefAnalysis>();
  template <class T>
  T& get() const {
    return *static_cast<T*>(cachedOrCreated<T>().get());
  }

  /// The same instance as `get<T>`, as a shared handle, for those who hand
  /// it on.
  template <class T>
  std::shared_ptr<T> getHandle() const {
    return std::static_pointer_cast<T>(cachedOrCreated<T>());
  }

 private:
  // The cache entry of T, made by `T::Create` when missing. The entry holds a
  // handle to a T, converted to void.
  template <class T>
  std::shared_ptr<void> const& cachedOrCreated() const {
    astapi::StringId const key = T::GetAnalysisId();
    if (auto found = cache_.find(key); found != cache_.end()) return found->second;
    std::shared_ptr<void> created = std::shared_ptr<T>(T::Create(*this));
    // An entry made meanwhile under the same key (by a Create that asked for
    // this analysis itself) stays; the new one is dropped with `created`.
    return cache_.emplace(key, std::move(created)).first->second;
  }

  struct StringIdHash {
    std::size_t operator()(astapi::StringId id) const noexcept { return id.hash(); }
  };
  mutable std::unordered_map<astapi::StringId, std::shared_ptr<void>, StringIdHash> cache_;
};

}  // namespace ca
