#include "platform/analysis/file_type.hpp"

#include <ostream>

namespace ca {

std::ostream& operator<<(std::ostream& out, FileType type) {
  switch (type) {
    case FileType::Script: return out << "Script";
    case FileType::Function: return out << "Function";
    case FileType::Class: return out << "Class";
  }
  return out << "FileType(" << static_cast<int>(type) << ')';
}

}  // namespace ca
