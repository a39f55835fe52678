#include "frontend/source_file_reader.hpp"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <system_error>

#include "frontend/diagnostic_message.hpp"
#include "frontend/size_text.hpp"

namespace frontend {

namespace {

std::string systemReason(int error) { return std::error_code(error, std::system_category()).message(); }

template <DiagnosticKind kind, class... Args>
SourceFileReader::Result failure(Args const&... args) {
  return {{}, diagnosticMessage<kind>(args...), kind};
}

char const* kindOf(mode_t mode) {
  if (S_ISFIFO(mode)) return "a FIFO";
  if (S_ISCHR(mode)) return "a character device";
  if (S_ISBLK(mode)) return "a block device";
  if (S_ISSOCK(mode)) return "a socket";
  return "not a regular file";
}

// Closes a descriptor on every way out.
class OpenFile {
 public:
  explicit OpenFile(int descriptor) : descriptor_(descriptor) {}
  OpenFile(OpenFile const&) = delete;
  OpenFile& operator=(OpenFile const&) = delete;
  ~OpenFile() {
    if (descriptor_ >= 0) ::close(descriptor_);
  }
  int get() const { return descriptor_; }

 private:
  int descriptor_;
};

}  // namespace

Diagnostic SourceFileReader::Result::diagnostic(std::string path) const {
  return makeDiagnostic(errorKind, std::move(path), wholeFileSpan(DiagnosticExtent::Path), error);
}

void SourceFileReader::reserve(std::size_t bytes, std::size_t keep) {
  if (bytes <= capacity_) return;
  auto grown = std::make_unique_for_overwrite<char[]>(bytes);
  if (keep > 0) std::memcpy(grown.get(), buffer_.get(), keep);
  buffer_ = std::move(grown);
  capacity_ = bytes;
}

SourceFileReader::Result SourceFileReader::read(char const* path) {
  // Non-blocking, so that opening a FIFO does not wait for a writer; it has
  // no effect on reading a regular file.
  int descriptor;
  do {
    descriptor = ::open(path, O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC);
  } while (descriptor < 0 && errno == EINTR);
  if (descriptor < 0) return failure<DiagnosticKind::CannotOpen>(systemReason(errno));
  OpenFile const file(descriptor);

  struct stat status {};
  if (::fstat(file.get(), &status) != 0) return failure<DiagnosticKind::CannotRead>(systemReason(errno));
  if (S_ISDIR(status.st_mode)) return failure<DiagnosticKind::IsAFolder>();
  if (!S_ISREG(status.st_mode)) return failure<DiagnosticKind::NotARegularFile>(kindOf(status.st_mode));
  auto const size = static_cast<std::size_t>(status.st_size);
  if (size > maxBytes_) return failure<DiagnosticKind::FileTooLarge>(sizeText(maxBytes_), size);

  // One byte more than the size, to see a file that grew in one read.
  reserve(size + 1, 0);
  std::size_t total = 0;
  for (;;) {
    if (total == capacity_) {
      if (total > maxBytes_) return failure<DiagnosticKind::FileGrewTooLarge>(sizeText(maxBytes_));
      reserve(std::min(std::max(capacity_ * 2, std::size_t{4096}), maxBytes_ + 1), total);
    }
    ssize_t const count = ::read(file.get(), buffer_.get() + total, capacity_ - total);
    if (count < 0) {
      if (errno == EINTR) continue;
      return failure<DiagnosticKind::CannotRead>(systemReason(errno));
    }
    if (count == 0) break;
    total += static_cast<std::size_t>(count);
    // A regular file that gave as many bytes as its size, and no more than
    // asked, is at its end: no second read to hear so. A file whose size
    // says nothing (zero, as in /proc) is read until a read gives nothing.
    if (total == size && size > 0) break;
  }
  return {std::string_view(buffer_.get(), total), {}};
}

}  // namespace frontend
