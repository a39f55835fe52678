#include "frontend/size_text.hpp"

#include <fmt/format.h>

namespace frontend {

std::string sizeText(std::size_t bytes) {
  constexpr std::size_t mebibyte = std::size_t{1} << 20, gibibyte = std::size_t{1} << 30;
  if (bytes >= gibibyte && bytes % gibibyte == 0) return fmt::format("{} GiB", bytes / gibibyte);
  if (bytes >= mebibyte && bytes % mebibyte == 0) return fmt::format("{} MiB", bytes / mebibyte);
  return fmt::format("{} bytes", bytes);
}

}  // namespace frontend
