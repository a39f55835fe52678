#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>

#include "frontend/diagnostic.hpp"
#include "frontend/limits.hpp"

namespace frontend {

/// Reads source files, one at a time, into one buffer kept from file to file:
/// open, fstat and (mostly) one read per file. Only regular files are read,
/// and their size is checked on the opened file before anything is read: a
/// FIFO, a device or a folder is refused by name rather than waited on or
/// read without end.
class SourceFileReader {
 public:
  explicit SourceFileReader(std::size_t maxBytes = maxSourceBytes) : maxBytes_(maxBytes) {}

  /// The bytes of a file, which stay valid until the next read, or why the
  /// file could not be read ("cannot open: Permission denied", "is a folder,
  /// not a file", ...), in the system's own words where it gave a reason.
  struct Result {
    std::string_view bytes;
    std::string error;
    DiagnosticKind errorKind = DiagnosticKind::CannotOpen;  // the kind of `error`

    bool ok() const { return error.empty(); }
    /// The error as a diagnostic about `path`, which has no place in it.
    Diagnostic diagnostic(std::string path) const;
  };

  Result read(char const* path);

 private:
  // Makes room for `bytes`, keeping the first `keep` bytes held.
  void reserve(std::size_t bytes, std::size_t keep);

  std::size_t maxBytes_;
  std::unique_ptr<char[]> buffer_;
  std::size_t capacity_ = 0;
};

}  // namespace frontend
