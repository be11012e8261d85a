#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

#include "platform/Mutex.h"

namespace fyn::productionrules {

/** How a service is doing, for whoever watches over it from outside. The service writes it, any thread reads
 * it. */
class ServiceHealth {
 public:
  struct Reading {
    /** The tracking mode's text. */
    std::string mode;
    /** Whether it holds a camera provider. */
    bool provider = false;
    /** Vision results handled since the start. */
    std::uint64_t results = 0;
    /** Messages dropped since the start because they were too large or too many. */
    std::uint64_t droppedMessages = 0;
  };

  Reading read() const {
    const MutexLock lock(mMutex);
    return mNow;
  }
  void setMode(const std::string& mode) {
    const MutexLock lock(mMutex);
    mNow.mode = mode;
  }
  void setProvider(bool held) {
    const MutexLock lock(mMutex);
    mNow.provider = held;
  }
  void countResult() {
    const MutexLock lock(mMutex);
    ++mNow.results;
  }
  void countDropped(std::size_t messages) {
    const MutexLock lock(mMutex);
    mNow.droppedMessages += messages;
  }

 private:
  mutable Mutex mMutex;
  Reading mNow PR_GUARDED_BY(mMutex);
};

}  // namespace fyn::productionrules
