#pragma once

#include <map>

#include "platform/Mutex.h"
#include "platform/PropertyStore.h"

namespace fyn::productionrules {

/** Properties of this process alone, for tests, replays and an embedded service. */
class MemoryPropertyStore final : public PropertyStore {
 public:
  std::optional<std::string> get(const std::string& key) const override;
  bool set(const std::string& key, const std::string& value) override;
  void forEach(
      const std::function<void(const std::string& key, const std::string& value)>& visit) const override;

 private:
  mutable Mutex mMutex;
  std::map<std::string, std::string> mValues PR_GUARDED_BY(mMutex);
};

}  // namespace fyn::productionrules
