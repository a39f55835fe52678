#include "rulesystem/graph/method_comparator.hpp"

namespace ca::rulesystem {

std::unordered_map<std::string, std::shared_ptr<MethodComparatorBase>>& getComparatorMap() {
  static std::unordered_map<std::string, std::shared_ptr<MethodComparatorBase>> map;
  return map;
}

std::mutex& getComparatorMapMutex() {
  static std::mutex mutex;
  return mutex;
}

}  // namespace ca::rulesystem
