#include "platform/MemoryPropertyStore.h"

namespace fyn::productionrules {

std::optional<std::string> MemoryPropertyStore::get(const std::string& key) const {
  const MutexLock lock(mMutex);
  const auto found = mValues.find(key);
  return found == mValues.end() ? std::nullopt : std::optional(found->second);
}

bool MemoryPropertyStore::set(const std::string& key, const std::string& value) {
  const MutexLock lock(mMutex);
  mValues[key] = value;
  return true;
}

void MemoryPropertyStore::forEach(
    const std::function<void(const std::string& key, const std::string& value)>& visit) const {
  const std::map<std::string, std::string> copy = [this] {
    const MutexLock lock(mMutex);
    return mValues;
  }();
  for (const auto& [key, value] : copy) {
    visit(key, value);
  }
}

}  // namespace fyn::productionrules
