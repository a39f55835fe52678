#include "platform/ast/string_id.hpp"

#include <deque>
#include <mutex>
#include <ostream>
#include <shared_mutex>
#include <unordered_map>

#include "platform/i18n/i18n.hpp"

namespace ca::astapi {

namespace {

// The process-wide pool of interned texts. Texts live in a deque, whose
// elements never move, and the map is keyed by views into them. Lookups of
// known names, the common case, take the shared lock only.
class StringPool {
 public:
  std::u16string const* intern(std::u16string_view text) {
    {
      std::shared_lock lock(mutex_);
      if (auto it = index_.find(text); it != index_.end()) return it->second;
    }
    std::unique_lock lock(mutex_);
    if (auto it = index_.find(text); it != index_.end()) return it->second;
    std::u16string const& stored = texts_.emplace_back(text);
    index_.emplace(std::u16string_view(stored), &stored);
    return &stored;
  }

 private:
  std::shared_mutex mutex_;
  std::deque<std::u16string> texts_;
  std::unordered_map<std::u16string_view, std::u16string const*> index_;
};

StringPool& pool() {
  // Never destroyed: ids may be used from static destructors of other units.
  static StringPool* const instance = new StringPool;
  return *instance;
}

}  // namespace

StringId::StringId()
    : text_([] {
        static std::u16string const* const empty = pool().intern(u"");
        return empty;
      }()) {}

StringId::StringId(std::u16string_view text) : text_(pool().intern(text)) {}

StringId StringId::fromUtf8(std::string_view text) {
  return StringId(std::u16string_view(fl::i18n::to_ustring(std::string(text))));
}

std::ostream& operator<<(std::ostream& out, StringId id) { return out << fl::i18n::to_utf8(id.getString()); }

}  // namespace ca::astapi
