#include "platform/tosk/tosk_annotation.hpp"

#include <ostream>

namespace ca::core {

std::ostream& operator<<(std::ostream& out, ToskAnnotation annotation) {
  switch (annotation) {
    case ToskAnnotation::ObjectParameter: return out << "ObjectParameter";
  }
  return out << "ToskAnnotation(" << static_cast<std::int32_t>(annotation) << ")";
}

}  // namespace ca::core
