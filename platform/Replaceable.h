#pragma once

#include <atomic>
#include <memory>
#include <utility>
#include <vector>

#include "platform/Mutex.h"

namespace fyn::productionrules {

/** An object that may be replaced while other threads use it: each one that it ever was lives as long as this
 * does. */
template <typename Object>
class Replaceable {
 public:
  explicit Replaceable(std::shared_ptr<Object> object) { set(std::move(object)); }

  Object& get() const { return *mCurrent.load(std::memory_order_acquire); }

  void set(std::shared_ptr<Object> object) {
    const MutexLock lock(mMutex);
    mCurrent.store(object.get(), std::memory_order_release);
    mEver.push_back(std::move(object));
  }

 private:
  std::atomic<Object*> mCurrent{nullptr};
  Mutex mMutex;
  std::vector<std::shared_ptr<Object>> mEver PR_GUARDED_BY(mMutex);
};

}  // namespace fyn::productionrules
